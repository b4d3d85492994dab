// Pages: composing, measuring, wrapping, PDF files beside a plain Qt program and cairo where it is installed,
// formatted text of many pages, and what a recorded page holds. Measures in a temporary folder, on the
// platform "offscreen".
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <QAction>
#include <QApplication>
#include <QPainter>
#include <QPdfWriter>
#include <filesystem>

#ifdef TSRTM_CAIRO
#include <cairo-pdf.h>
#endif

#include "desktop/Desktop.hpp"
#include "desktop/preview/PageView.hpp"
#include "desktop/preview/PreviewWindow.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/printing/Druck.hpp"

namespace tsRtm {
namespace {

constexpr int32 kLines = 60;
constexpr int32 kPoints = 10;
constexpr float64 kLeft = 25, kTop = 20, kLineHeight = 4.2;  // millimetres
constexpr const char* kFont = "Liberation Sans";

std::string folder() {
    static const std::string one = [] {
        const auto path = std::filesystem::temp_directory_path() / "tsrtm-paper-bench";
        std::filesystem::create_directories(path);
        return path.string();
    }();
    return one;
}

uint32 drawn() {
    static uint32 seed = 1;
    return (seed = seed * 1664525 + 1013904223) >> 8;
}

const std::vector<Text>& words() {
    static const std::vector<Text> all = {
        u"Grüße",     u"aus",     u"Köln",  u"Rechnung", u"vom",    u"Betrag", u"1.234,50",    u"Straße",
        u"die",       u"Mahnung", u"haben", u"wir",      u"AVERY",  u"heute",  u"To",          u"erhalten,",
        u"Sehr",      u"geehrte", u"Damen", u"und",      u"Herren", u"für",    u"Überweisung", u"2024",
        u"Sparkasse", u"Wunsch",  u"Tafel", u"Vertrag",  u"der",    u"das",    u"(Anlage)",    u"Termin"};
    return all;
}

Text textOf(std::size_t letters) {
    Text text;
    while (text.size() < letters) text += words()[drawn() % words().size()] + u" ";
    text.pop_back();
    return text;
}

// A page's worth of lines, another one for each of a hundred pages.
const std::vector<Text>& page(int32 number) {
    static const auto all = [] {
        std::vector<std::vector<Text>> pages(100);
        for (auto& one : pages)
            for (int32 line = 0; line < kLines; ++line) one.push_back(textOf(80));
        return pages;
    }();
    return all[static_cast<std::size_t>(number) % all.size()];
}

struct Desk {
    desktop::Desktop paper;
    MessagesTopic messages;
    Druck job{messages};

    void start(bool preview = false) {
        job.Device(u"PDF");
        job.DocPath(fromUtf8(folder()));
        job.JobName(u"Seiten");
        job.Init(72, 1, 1, u"A4", preview);
        job.FontName(fromUtf8(kFont));
    }
    void write(int32 number) {
        float64 row = kTop;
        for (const auto& line : page(number)) job.mm(row += kLineHeight, kLeft, line, kPoints, 0);
    }
    // Pages that go nowhere yet.
    void record(int32 pages) {
        job.Modal(true);
        start(true);
        for (int32 number = 0; number < pages; ++number) {
            write(number);
            job.Ausgabe();
        }
    }
    ~Desk() { job.KillDoc(); }
};

// What the goals are measured against where they tell a time: a chain of steps that each wait for the one
// before.
void fixedLoop(benchmark::State& state) {
    uint64 value = 1;
    for (auto _ : state) {
        for (int32 i = 0; i < 1000; ++i) value = value * 6364136223846793005U + 1442695040888963407U;
        benchmark::DoNotOptimize(value);
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}
BENCHMARK(fixedLoop);

// --- A text page as PDF

void pdf(benchmark::State& state) {
    const auto pages = static_cast<int32>(state.range(0));
    Desk desk;
    for (auto _ : state) {
        desk.start();
        for (int32 number = 0; number < pages; ++number) {
            desk.write(number);
            desk.job.Ausgabe();
        }
        desk.job.Ende();
        std::filesystem::remove(folder() + "/Seiten.pdf");
    }
    state.SetItemsProcessed(state.iterations() * pages);
}
BENCHMARK(pdf)->Arg(1)->Arg(100)->Unit(benchmark::kMillisecond);

void pdfByQt(benchmark::State& state) {
    constexpr int perInch = 1200;
    constexpr double dots = perInch / 25.4;
    const auto name = QString::fromStdString(folder() + "/qt.pdf");
    std::vector<std::vector<QString>> texts(static_cast<std::size_t>(state.range(0)));
    for (std::size_t number = 0; number < texts.size(); ++number)
        for (const auto& line : page(static_cast<int32>(number)))
            texts[number].push_back(QString::fromStdU16String(line));
    for (auto _ : state) {
        QPdfWriter writer(name);
        writer.setResolution(perInch);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setPageMargins(QMarginsF());
        QPainter painter(&writer);
        painter.setFont(QFont(QString::fromLatin1(kFont), kPoints));
        for (std::size_t number = 0; number < texts.size(); ++number) {
            if (number > 0) writer.newPage();
            double row = kTop;
            for (const auto& line : texts[number])
                painter.drawText(QPointF(kLeft * dots, (row += kLineHeight) * dots), line);
        }
        painter.end();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(pdfByQt)->Arg(1)->Arg(100)->Unit(benchmark::kMillisecond);

#ifdef TSRTM_CAIRO
void pdfByCairo(benchmark::State& state) {
    constexpr double points = 72 / 25.4;
    std::vector<std::vector<std::string>> texts(static_cast<std::size_t>(state.range(0)));
    for (std::size_t number = 0; number < texts.size(); ++number)
        for (const auto& line : page(static_cast<int32>(number))) texts[number].push_back(toUtf8(line));
    for (auto _ : state) {
        auto* surface =
            cairo_pdf_surface_create((folder() + "/cairo.pdf").c_str(), 210 * points, 297 * points);
        auto* context = cairo_create(surface);
        cairo_select_font_face(context, kFont, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
        cairo_set_font_size(context, kPoints);
        for (const auto& lines : texts) {
            double row = kTop;
            for (const auto& line : lines) {
                cairo_move_to(context, kLeft * points, (row += kLineHeight) * points);
                cairo_show_text(context, line.c_str());
            }
            cairo_show_page(context);
        }
        cairo_destroy(context);
        cairo_surface_finish(surface);
        cairo_surface_destroy(surface);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(pdfByCairo)->Arg(1)->Arg(100)->Unit(benchmark::kMillisecond);
#endif

// --- Composing alone

void recordPages(benchmark::State& state) {
    constexpr int32 pages = 100;
    Desk desk;
    for (auto _ : state) desk.record(pages), desk.job.VorschauEnde(false);
    state.SetItemsProcessed(state.iterations() * pages);
}
BENCHMARK(recordPages)->Unit(benchmark::kMillisecond);

void memoryOfPages(benchmark::State& state) {
    constexpr int32 pages = 10000;
    Desk desk;
    for (auto _ : state) {
        desk.record(1);
        desk.job.VorschauEnde(false);
        const auto before = mallinfo2().uordblks;
        desk.record(pages);
        state.counters["bytes_a_page"] = static_cast<double>(mallinfo2().uordblks - before) / pages;
        desk.job.VorschauEnde(false);
    }
}
BENCHMARK(memoryOfPages)->Iterations(1)->Unit(benchmark::kMillisecond);

void textWidth(benchmark::State& state) {
    Desk desk;
    desk.record(1);
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(desk.job.TextWidth(words()[i]));
        i = i + 1 == words().size() ? 0 : i + 1;
    }
    state.SetItemsProcessed(state.iterations());
    desk.job.VorschauEnde(false);
}
BENCHMARK(textWidth);

void wrap100kB(benchmark::State& state) {
    Desk desk;
    desk.record(1);
    Text text;
    while (text.size() < 100000) text += textOf(600) + u"\r\n";
    for (auto _ : state) {
        int32 row = 0;
        benchmark::DoNotOptimize(desk.job.SetzText(text, row, 0, 65, 10, 4, true));
    }
    desk.job.VorschauEnde(false);
}
BENCHMARK(wrap100kB)->Unit(benchmark::kMillisecond);

// --- Formatted text

// Of so many pages, of one width or of another one for each page.
void formatted(benchmark::State& state) {
    const auto pages = state.range(0);
    const auto narrower = static_cast<int32>(state.range(1));
    Text rtf = u"{\\rtf1\\ansi{\\fonttbl{\\f0 Liberation Sans;}}\\f0\\fs20 ";
    for (int64 n = 0; n < pages * 8; ++n)
        rtf += textOf(500) + (n % 3 == 0 ? u"\\b  fett\\b0" : u"") + u"\\par ";
    rtf += u"}";
    Desk desk;
    int64 made = 0;
    for (auto _ : state) {
        desk.start();
        for (int32 next = 0; next >= 0;) {
            int32 height = 14000;
            const int32 width = 9354 - narrower * (desk.job.PageCount() % 400);
            next = desk.job.PrintRTFTextNeu(rtf, 1417, 1417, width, height, next);
            if (next >= 0) desk.job.Ausgabe();
        }
        made += desk.job.PageCount();
        desk.job.Ende();
        std::filesystem::remove(folder() + "/Seiten.pdf");
    }
    state.SetItemsProcessed(made);
}
BENCHMARK(formatted)
    ->ArgsProduct({{3, 30, 300}, {0, 1}})
    ->ArgNames({"pages", "narrower"})
    ->Unit(benchmark::kMillisecond);

// --- The preview

void previewLastOf1000(benchmark::State& state) {
    Desk desk;
    desk.record(1000);
    desk.job.Modal(false);
    desk.job.Ausgabe();
    desktop::PreviewWindow* window = nullptr;
    for (auto* widget : QApplication::topLevelWidgets())
        if (auto* found = qobject_cast<desktop::PreviewWindow*>(widget); found && found->isVisible())
            window = found;
    if (!window) return state.SkipWithError("no window");
    const auto press = [&](const char* name) {
        for (auto* action : window->findChildren<QAction*>())
            if (action->text() == QString::fromUtf8(name)) action->trigger();
        QApplication::processEvents();
    };
    for (auto _ : state) {
        press("Letzte");
        state.PauseTiming();
        press("Erste");
        state.ResumeTiming();
    }
    desk.job.VorschauEnde(false);
}
BENCHMARK(previewLastOf1000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tsRtm

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::filesystem::remove_all(tsRtm::folder());
}

// Files in bad circumstances: full disks, programs that die, texts that are damaged or endless.
#include <QImage>
#include <QPainter>
#include <chrono>
#include <random>

#include "desktop/paper/FontMeasure.hpp"
#include "desktop/paper/PdfWriting.hpp"
#include "desktop/paper/RichText.hpp"
#include "tests/desktop/Paper.hpp"
#include "tests/support/CrashingFiles.hpp"
#include "tests/support/FailingFiles.hpp"
#include "tests/support/MemoryFiles.hpp"
#include "tests/support/TestGround.hpp"
#include "tsRtm/frame/state/Plugged.hpp"

namespace tsRtm::test {
namespace {

// Paper alone, on whatever ground a test has.
struct PlainPaper {
    PlainPaper() { rtmMain::plugged().paper = &paper; }
    ~PlainPaper() { rtmMain::plugged().paper = nullptr; }
    PlainPaper(const PlainPaper&) = delete;
    PlainPaper& operator=(const PlainPaper&) = delete;

    desktop::FontMeasure measure;
    desktop::RichText texts;
    desktop::PdfWriting pdf;
    platform::Paper paper{measure, texts, pdf};
};

// Each call of the file system fails once, or from then on: the file is whole or not there, and the user is
// told once.
TEST(Troubles, LeaveNoHalfFile) {
    MemoryFiles memory;
    FailingFiles files(memory);
    StartedLibrary library(files);
    library.ground.ui.defaultAnswer = 1;
    PlainPaper paper;
    MessagesTopic messages;
    const auto write = [&] {
        Druck job(messages);
        return writeLetter(job, u"/brief");
    };
    memory.putFolder(u"/brief");
    files.disarm();
    ASSERT_TRUE(write());
    const auto calls = files.calls();
    int told = 0;
    for (const auto times : {FailingFiles::Times::once, FailingFiles::Times::fromThenOn})
        for (int64 n = 1; n <= calls; ++n) {
            SCOPED_TRACE(n);
            files.disarm();
            const auto before = memory.list(u"/brief")->size();
            library.ground.ui.boxes.clear();
            files.failAt(n, platform::SystemError::diskFull, times);
            const bool good = write();
            files.disarm();
            EXPECT_EQ(library.ground.ui.boxes.size(), good ? 0u : 1u);
            told += good ? 0 : 1;
            const auto entries = *memory.list(u"/brief");
            if (times == FailingFiles::Times::once || good) {
                EXPECT_EQ(entries.size(), before + (good ? 1 : 0));
            }
            for (const auto& entry : entries)
                if (entry.name.ends_with(u".pdf")) {
                    EXPECT_TRUE(whole(memory.dump(u"/brief/" + entry.name)));
                }
        }
    EXPECT_GT(told, 3);
}

// A program that dies at any of the changes it makes: what has a document's name is a document.
TEST(Troubles, LeaveWholeFilesOfProgramsThatDie) {
    for (const auto last : {CrashingFiles::LastWrite::none, CrashingFiles::LastWrite::firstHalf}) {
        bool died = true;
        for (int64 n = 1; died; ++n) {
            SCOPED_TRACE(n);
            MemoryFiles memory;
            memory.putFolder(u"/brief");
            CrashingFiles files(memory);
            StartedLibrary library(files);
            library.ground.ui.defaultAnswer = 1;
            const PlainPaper paper;
            MessagesTopic messages;
            Druck job(messages);
            bool written = false;
            died = files.diesAt(n, last, CrashingFiles::Manner::silently,
                                [&] { written = writeLetter(job, u"/brief"); });
            EXPECT_TRUE(written || died);
            // What was being written has a name that no document has.
            const auto entries = *memory.list(u"/brief");
            for (const auto& [name, status] : entries)
                EXPECT_TRUE(name.ends_with(u".pdf") ? whole(memory.dump(u"/brief/" + name))
                                                    : name.starts_with(u"rad") && name.ends_with(u".tmp"))
                    << toUtf8(name);
        }
    }
}

class Formatted : public ::testing::Test {
 protected:
    // The pages that a text takes, and each of them drawn.
    int32 pages(const Text& rtf, int32 width = 6000, int32 height = 4000) {
        const auto text = paper.texts.read(rtf);
        platform::PlacedText placed{text, 0, 100, 100, width, height};
        int32 count = 0;
        if (text->length() == 0) return 0;
        while (count < 5000) {
            ++count;
            const auto fit = paper.texts.fit(placed, height);
            QImage image(60, 80, QImage::Format_Grayscale8);
            QPainter painter(&image);
            painter.scale(0.01, 0.01);
            desktop::RichText::draw(painter, placed);
            if (fit.next < 0) return count;
            EXPECT_GT(fit.next, placed.from);
            if (fit.next <= placed.from) return count;
            placed.from = fit.next;
        }
        return count;
    }
    int32 height(const Text& rtf) {
        const auto text = paper.texts.read(rtf);
        return paper.texts.fit({text, 0, 0, 0, 6000, 100000}, 100000).used;
    }
    PlainPaper paper;
};

TEST_F(Formatted, KeepsSpaceBehindATable) {
    const Text table = u"{\\rtf1\\ansi\\fs20\\trowd\\cellx2880\\pard\\intbl a\\cell\\row\\pard ";
    EXPECT_NEAR(height(table + u"\\sb400 b\\par}") - height(table + u"b\\par}"), 400, 2);
    EXPECT_NEAR(height(table + u"b\\par\\pard\\sb400 c\\par}") - height(table + u"b\\par\\pard c\\par}"), 400,
                2);
}

// A text longer than the parts that are laid out at once: each of its pages ends where it does when nothing
// before it was laid out.
TEST_F(Formatted, DividesLongTextsAlikeFromWhereverTheyAreRead) {
    const auto rows = [](int32 count) {
        Text all;
        for (int32 row = 0; row < count; ++row)
            all += u"\\trowd\\clbrdrb\\brdrs\\cellx2000\\cellx5000\\pard\\intbl Zelle " + toText(row) +
                   u"\\cell mit Text\\par und mehr\\cell\\row";
        return all;
    };
    Text rtf = u"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\fs20 ";
    for (int32 n = 0; n < 45; ++n) {
        rtf += u"\\pard\\sb120\\sa60\\fi400 ";
        for (int32 word = 0; word < 20 + n % 50; ++word)
            rtf += u"wort" + toText(n * word) + u" \\b fett\\b0 ";
        rtf += n % 40 == 30 ? u"\\page " : u"\\par ";
        if (n % 20 == 7) rtf += rows(30);
    }
    rtf += rows(450) + u"}";
    constexpr int32 pageHeight = 14000;
    platform::PlacedText placed{paper.texts.read(rtf), 0, 0, 0, 9000, pageHeight};
    std::vector<int32> ends;
    for (; placed.from >= 0 && ends.size() < 200; placed.from = ends.back()) {
        const auto fit = paper.texts.fit(placed, pageHeight);
        if (ends.size() % 11 == 4) {
            auto afresh = placed;
            afresh.text = desktop::RichText().read(rtf);
            const auto other = paper.texts.fit(afresh, pageHeight);
            EXPECT_EQ(fit.next, other.next) << "from " << placed.from;
            EXPECT_NEAR(fit.used, other.used, 1) << "from " << placed.from;
        }
        ends.push_back(fit.next);
    }
    // Once more, with parts at hand that lie behind.
    placed.from = 0;
    for (const int32 end : ends) EXPECT_EQ(placed.from = paper.texts.fit(placed, pageHeight).next, end);
    EXPECT_GT(ends.size(), 8U);
}

// Texts that lost or gained something on the way: laid out and drawn page by page, in bounded time.
TEST_F(Formatted, TakesDamagedTexts) {
    const Text good =
        u"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}{\\f1 Courier New;}}{\\colortbl "
        u";\\red255\\green0\\blue0;}\\f0\\fs24 "
        u"Eins \\b zwei\\b0\\par\\pard\\li720\\fi-360\\tx1440\\tqr\\tx4000 drei\\tab vier\\line f\\'fcnf\\par"
        u"\\trowd\\clbrdrt\\brdrs\\cellx1000\\cellx3000\\pard\\intbl a\\cell b\\par c\\cell\\row"
        u"\\pard\\sb200\\sa100\\sl-240\\qj\\cf1\\highlight1 sechs sieben acht \\u8364?{\\super 9}\\par"
        u"{\\pict\\pngblip\\picwgoal100\\pichgoal100 89504e47}\\page}";
    const TextView pieces[] = {u"{",          u"}",          u"\\par ",     u"\\trowd",       u"\\cell ",
                               u"\\row ",     u"\\intbl ",   u"\\cellx-5",  u"\\cellx99999 ", u"\\fs4000 ",
                               u"\\fs0 ",     u"\\li-9999 ", u"\\li30000 ", u"\\sb-500 ",     u"\\sl1 ",
                               u"\\tx1 ",     u"\\tab ",     u"\\u-1?",     u"\\bin9 ",       u"\\'",
                               u"\\sl-32768 "};
    EXPECT_EQ(pages(good), 1);
    const char* wanted = std::getenv("TSRTM_RTF_SECONDS");  // longer, by hand
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(wanted ? std::atoi(wanted) : 0);
    std::mt19937 random(wanted ? std::random_device()() : 1);
    for (int round = 0; round < 60 || std::chrono::steady_clock::now() < end; ++round) {
        Text text = good;
        for (auto changes = 1 + random() % 6; changes > 0; --changes) {
            const auto at = random() % text.size();
            if (random() % 3 == 0)
                text.erase(at, 1 + random() % 20);
            else
                text.insert(at, pieces[random() % std::size(pieces)]);
            if (text.empty()) text = u"{";
        }
        SCOPED_TRACE(toUtf8(text));
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_LT(
            pages(text, 1 + static_cast<int32>(random() % 8000), 1 + static_cast<int32>(random() % 6000)),
            5000);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
        if (HasFailure()) return;
    }
}

}  // namespace
}  // namespace tsRtm::test

#pragma once
// Paper that writes down what happens to it: a printer, files, a preview, and letters of one width.
#include <deque>
#include <functional>
#include <map>

#include "tsRtm/frame/state/Plugged.hpp"
#include "tsRtm/platform/Paper.hpp"

namespace tsRtm::test {

// What a page was played as: each command in one short line.
inline std::string lineOf(const platform::DrawingCommand& command) {
    using namespace platform;
    const auto at = [](Place p) { return std::to_string(p.x) + "," + std::to_string(p.y); };
    struct Writer {
        decltype(at)& place;
        std::string operator()(const Pen& p) const { return "pen " + std::to_string(p.width); }
        std::string operator()(const Brush& b) const { return "brush " + std::to_string(b.style); }
        std::string operator()(const Font& f) const {
            return "font " + toUtf8(f.name) + " " + std::to_string(f.height) + (f.bold ? " bold" : "") +
                   (f.italic ? " italic" : "") + (f.underlined ? " underlined" : "") +
                   (f.escapement ? " @" + std::to_string(f.escapement) : "");
        }
        std::string operator()(const TextColour& c) const { return "colour " + std::to_string(c.colour); }
        std::string operator()(const TextBackground& b) const {
            return "background " + std::to_string(b.mode);
        }
        std::string operator()(const TextOut& t) const { return place(t.from) + " " + toUtf8(t.text); }
        std::string operator()(const Line& l) const { return "line " + place(l.from) + " " + place(l.to); }
        std::string operator()(const Shape& s) const {
            std::string text = "shape";
            for (const auto p : s.places) text += " " + place(p);
            return text;
        }
        std::string operator()(const Picture& p) const {
            return "picture " + place(p.from) + " " + place(p.to);
        }
    };
    return std::visit(Writer{at}, command);
}

struct FormattedDouble final : platform::FormattedText {
    explicit FormattedDouble(TextView text) : kept(text) {}
    int32 length() const override { return static_cast<int32>(kept.size()); }
    Text kept;
};

class RecordingDevice final : public platform::PageDevice {
 public:
    platform::DeviceResolution resolution() override { return {600, 600, 100, 50}; }
    void map(const platform::PageMapping& mapping) override { mappings.push_back(mapping); }
    void draw(const platform::DrawingCommand& command) override { lines.push_back(lineOf(command)); }
    void draw(const platform::PlacedText& text) override {
        lines.push_back("rtf " + toUtf8(static_cast<const FormattedDouble&>(*text.text).kept));
    }

    std::vector<platform::PageMapping> mappings;
    std::vector<std::string> lines;
};

// What stands on a page of a job, without the start of each.
inline std::vector<std::string> drawnOn(const std::unique_ptr<platform::PageSource>& page) {
    RecordingDevice device;
    if (page) page->draw(device, 100, 100);
    std::erase_if(device.lines, [](const auto& line) {
        return line.starts_with("pen") || line.starts_with("brush") || line.starts_with("colour");
    });
    return device.lines;
}

// One printer "Laser", one "Alt" that knows next to nothing, files and a preview. `log` tells what they were
// asked.
class PaperDouble final : platform::TextMeasure,
                          platform::FormattedTexts,
                          platform::Printers,
                          platform::PdfFiles,
                          platform::Previews {
 public:
    PaperDouble() { rtmMain::plugged().paper = &paper; }
    ~PaperDouble() override { rtmMain::plugged().paper = nullptr; }

    class Laser final : public platform::Printer, public platform::PaperForms {
     public:
        Laser(PaperDouble& owner, bool clever) : owner_(owner) {
            using enum platform::PrinterFeature;
            values = {{paperSize, 9}, {width, 11906}, {height, 16838}, {orientation, 1}};
            if (clever) values.insert({{copies, 1}, {duplex, 1}, {paperBin, 1}, {quality, 600}});
        }
        int32 value(platform::PrinterFeature feature) override {
            return values.contains(feature) ? values[feature] : 0;
        }
        bool set(platform::PrinterFeature feature, int32 value) override {
            if (!values.contains(feature) || value == refused) return false;
            values[feature] = value;
            owner_.log.push_back("set " + std::to_string(static_cast<int32>(feature)) + " " +
                                 std::to_string(value));
            return true;
        }
        platform::PageDevice* page(TextView document) override {
            if (gone) return nullptr;
            owner_.log.push_back("side of " + toUtf8(document));
            return &owner_.pages.emplace_back();
        }
        platform::SystemError endDocument() override {
            owner_.log.push_back("end");
            return queueRefuses;
        }
        void killDocument() override { owner_.log.push_back("kill"); }
        std::vector<platform::PaperBin> bins() override { return {{1, u"Oben"}, {3, u"Mitte"}}; }
        platform::PaperForms& forms() override { return *this; }
        std::vector<platform::PaperForm> all() override { return known; }
        platform::SystemError add(const platform::PaperForm& form) override {
            owner_.log.push_back("form " + toUtf8(form.name));
            const auto error = std::exchange(refuses, platform::SystemError::none);
            if (!platform::failed(error)) known.push_back(form);
            return error;
        }

        std::map<platform::PrinterFeature, int32> values;
        std::vector<platform::PaperForm> known = {{u"A4", 210000, 297000}};
        platform::SystemError refuses = platform::SystemError::none;  // the next form
        int32 refused = -1;                                           // a value that no feature takes
        platform::SystemError queueRefuses = platform::SystemError::none;
        bool gone = false;

     private:
        PaperDouble& owner_;
    };

    std::vector<std::string> log;
    std::deque<RecordingDevice> pages;  // all that was played, in order
    std::shared_ptr<Laser> laser = std::make_shared<Laser>(*this, true);
    std::shared_ptr<Laser> old = std::make_shared<Laser>(*this, false);
    platform::PdfSettings pdfSettings;
    platform::SystemError pdfFails = platform::SystemError::none;
    int32 namesTaken = 0;  // so often somebody else's file has come first
    platform::PreviewedJob* previewed = nullptr;
    bool windowVisible = false;
    std::function<void()> onModal;
    std::vector<std::string> windowLog;
    platform::TextFit nextFit;
    bool whiteText = false;

 private:
    // 600 pixels a letter at 12 points: 720 twips.
    platform::TextExtent measure(const platform::Font& font, TextView text) override {
        const auto letters = static_cast<int64>(text.size());
        return {static_cast<int32>(letters * font.height * 600 / 240), font.height};
    }
    std::shared_ptr<const platform::FormattedText> read(TextView rtf) override {
        return std::make_shared<FormattedDouble>(rtf);
    }
    platform::TextFit fit(const platform::PlacedText&, int32) override { return nextFit; }
    int32 windowText() override { return whiteText ? 0xFFFFFF : 0; }
    int32 window() override { return 0xFFFFFF; }
    std::vector<Text> names() override { return {u"Laser", u"Alt"}; }
    std::shared_ptr<platform::Printer> printer(TextView name) override {
        return name == u"Laser" ? laser : name == u"Alt" ? old : nullptr;
    }
    std::unique_ptr<platform::PdfDocument> begin(const platform::PdfSettings& settings) override {
        pdfSettings = settings;
        log.push_back("file");
        return std::make_unique<File>(*this);
    }
    std::unique_ptr<platform::Preview> open(platform::PreviewedJob& job) override {
        previewed = &job;
        return std::make_unique<Window>(*this);
    }
    platform::SystemError copy(const platform::PageSource& page) override {
        RecordingDevice device;
        page.draw(device, 100, 200);
        windowLog.push_back("copy of " + std::to_string(device.lines.size()));
        return platform::SystemError::none;
    }

    class File final : public platform::PdfDocument {
     public:
        explicit File(PaperDouble& owner) : owner_(owner) {}
        platform::PageDevice& page(int32 width, int32 height) override {
            owner_.log.push_back("sheet " + std::to_string(width) + "x" + std::to_string(height));
            return owner_.pages.emplace_back();
        }
        platform::SystemError finish(TextView name) override {
            owner_.log.push_back("as " + toUtf8(name));
            return owner_.namesTaken-- > 0 ? platform::SystemError::alreadyExists : owner_.pdfFails;
        }

     private:
        PaperDouble& owner_;
    };

    class Window final : public platform::Preview {
     public:
        explicit Window(PaperDouble& owner) : owner_(owner) { owner_.windowVisible = true; }
        ~Window() override { owner_.windowVisible = false; }
        void show(const platform::PreviewWish& wish) override {
            owner_.windowLog.push_back("show " + std::to_string(wish.view));
            if (wish.modal && owner_.onModal) owner_.onModal();
        }
        void update() override { owner_.windowLog.push_back("update"); }

     private:
        PaperDouble& owner_;
    };

    platform::Paper paper{*this, *this, *this, this, this};
};

}  // namespace tsRtm::test

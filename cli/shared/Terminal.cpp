#include "cli/shared/Terminal.hpp"

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <set>

#include "cli/shared/Zone.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/iStatusControl.hpp"
#include "tsRtm/frame/rtmMain.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::cli {
namespace {

// Messages of the library with nobody to ask.
class Notes final : public platform::Dialogs {
 public:
    int32 show(const platform::MessageBox& box) override {
        const std::string text = oneLine(box.body);
        if (told_.insert(text).second) std::cerr << "tsrtm: note: " << text << '\n';
        return platform::safeAnswer(box);
    }
    std::optional<platform::DialogAnswer> showTaskDialog(const platform::TaskDialog& dialog,
                                                         const platform::DialogListener& tell) override {
        return showPlainly(*this, dialog, tell);
    }
    bool attended() override { return false; }
    std::optional<Text> ask(TextView, TextView, TextView preset) override { return Text(preset); }
    void openLink(TextView) override {}
    int32 comCtlVersion() override { return 580; }

 private:
    static std::string oneLine(TextView text) {
        Text line(text);
        std::replace_if(
            line.begin(), line.end(), [](char16_t c) { return c == u'\r' || c == u'\n'; }, u' ');
        while (line.find(u"  ") != Text::npos) line = replaceAll(line, u"  ", u" ");
        return printable(trim(line));
    }

    std::set<std::string> told_;
};

// The line of a wait that goes on for ever.
class StatusLine final : public iStatusControl {
 public:
    tsRtm::Text TypeName() const override { return u"Label"; }
    bool IsLabel() const override { return true; }
    bool Caption(TextView text) override {
        if (!text.empty() && text != last_) std::cerr << printable(text) << '\n';
        last_ = text;
        return true;
    }

 private:
    tsRtm::Text last_;
};

}  // namespace

bool errorIsTerminal() noexcept { return ::isatty(STDERR_FILENO) == 1; }
bool canAsk() noexcept { return errorIsTerminal() && ::isatty(STDIN_FILENO) == 1; }

std::string printable(TextView text) {
    Text out(text);
    for (char16_t& c : out)
        if (c < 0x20 || (c >= 0x7F && c < 0xA0)) c = u'·';
    return toUtf8(out);
}

std::size_t displayWidth(std::string_view utf8) noexcept {
    return static_cast<std::size_t>(std::count_if(
        utf8.begin(), utf8.end(), [](char c) { return (static_cast<uint8>(c) & 0xC0) != 0x80; }));
}

void startLibrary() {
    auto& machine = rtmMain::defaultGround();
    static Notes notes;
    static platform::Platform ground{.files = machine.files,
                                     .clock = machine.clock,
                                     .locale = machine.locale,
                                     .settings = machine.settings,
                                     .settingsCare = machine.settingsCare,
                                     .system = machine.system,
                                     .user = machine.user,
                                     .screen = machine.screen,
                                     .ui = machine.ui,
                                     .dialogs = canAsk() ? machine.dialogs : notes,
                                     .choices = machine.choices,
                                     .texts = machine.texts,
                                     .random = machine.random,
                                     .zones = toolZones(machine.zones)};
    rtmMain::Main(ground);
    if (errorIsTerminal()) rtmMain::state().messageLine = std::make_shared<StatusLine>();
}

}  // namespace tsRtm::cli

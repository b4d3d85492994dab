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

constexpr int32 kYes = 6;

// Messages of the library to the person at the terminal, or with nobody to ask: then each is a note.
class Messages final : public platform::Dialogs {
 public:
    explicit Messages(platform::Dialogs* person) : person_(person) {}

    int32 show(const platform::MessageBox& box) override {
        if (attended()) return person_->show(box);
        const std::string text = oneLine(box.body);
        if (told_.insert(text).second) std::cerr << "tsrtm: note: " << text << '\n';
        const bool agreed = agreed_ && std::count(box.answers.begin(), box.answers.end(), kYes) > 0;
        return agreed ? kYes : platform::safeAnswer(box);
    }
    std::optional<platform::DialogAnswer> showTaskDialog(const platform::TaskDialog& dialog,
                                                         const platform::DialogListener& tell) override {
        return attended() ? person_->showTaskDialog(dialog, tell) : showPlainly(*this, dialog, tell);
    }
    bool attended() override { return person_ && !agreed_; }
    std::optional<Text> ask(TextView prompt, TextView title, TextView preset) override {
        return attended() ? person_->ask(prompt, title, preset) : Text(preset);
    }
    void openLink(TextView address) override {
        if (attended()) person_->openLink(address);
    }
    int32 comCtlVersion() override { return attended() ? person_->comCtlVersion() : 580; }

    void agree() { agreed_ = true; }

 private:
    static std::string oneLine(TextView text) {
        Text line(text);
        std::replace_if(
            line.begin(), line.end(), [](char16_t c) { return c == u'\r' || c == u'\n'; }, u' ');
        while (line.find(u"  ") != Text::npos) line = replaceAll(line, u"  ", u" ");
        return printable(trim(line));
    }

    platform::Dialogs* person_;  // nobody: none
    bool agreed_ = false;
    std::set<std::string> told_;
};

Messages& messages() {
    static Messages only(canAsk() ? &rtmMain::defaultGround().dialogs : nullptr);
    return only;
}

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
    static platform::Platform ground{.files = machine.files,
                                     .clock = machine.clock,
                                     .locale = machine.locale,
                                     .settings = machine.settings,
                                     .settingsCare = machine.settingsCare,
                                     .system = machine.system,
                                     .user = machine.user,
                                     .screen = machine.screen,
                                     .ui = machine.ui,
                                     .dialogs = messages(),
                                     .choices = machine.choices,
                                     .texts = machine.texts,
                                     .random = machine.random,
                                     .zones = toolZones(machine.zones)};
    rtmMain::Main(ground);
    if (errorIsTerminal()) rtmMain::state().messageLine = std::make_shared<StatusLine>();
}

void agreeToAll() { messages().agree(); }

}  // namespace tsRtm::cli

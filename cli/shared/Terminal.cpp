#include "cli/shared/Terminal.hpp"

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <set>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/iStatusControl.hpp"
#include "tsRtm/frame/rtmMain.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::cli {
namespace {

// Messages of the library with nobody to ask; the machine is heard all the same.
class Notes final : public platform::UserInterface {
 public:
    explicit Notes(platform::UserInterface& machine) : machine_(machine) {}
    int32 show(const platform::MessageBox& box) override {
        const std::string text = oneLine(box.body);
        if (told_.insert(text).second) std::cerr << "tsrtm: note: " << text << '\n';
        return platform::safeAnswer(box);
    }
    bool attended() override { return false; }
    void openLink(TextView) override {}
    void showMessageWindow(TextView) override {}
    void hideMessageWindow() override {}
    void status(TextView) override {}
    void processEvents() override {
        machine_.onNotice = onNotice;
        machine_.processEvents();
    }
    void beep() override {}
    int32 comCtlVersion() override { return 580; }
    Text systemCaption(int32) override { return {}; }
    Text keyName(int32) override { return {}; }
    bool hearsNotices() override { return machine_.hearsNotices(); }

 private:
    static std::string oneLine(TextView text) {
        Text line(text);
        std::replace_if(
            line.begin(), line.end(), [](char16_t c) { return c == u'\r' || c == u'\n'; }, u' ');
        while (line.find(u"  ") != Text::npos) line = replaceAll(line, u"  ", u" ");
        return printable(trim(line));
    }

    platform::UserInterface& machine_;
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
    static Notes notes(machine.ui);
    static platform::Platform ground{machine.files,    machine.clock,  machine.locale,
                                     machine.settings, machine.system, canAsk() ? machine.ui : notes,
                                     machine.random};
    rtmMain::Main(ground);
    if (errorIsTerminal()) rtmMain::state().messageLine = std::make_shared<StatusLine>();
}

}  // namespace tsRtm::cli

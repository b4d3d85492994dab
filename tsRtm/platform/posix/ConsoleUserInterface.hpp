#pragma once
// The person at a terminal, or nobody.
#include <iosfwd>
#include <optional>
#include <string>

#include "tsRtm/platform/Choices.hpp"
#include "tsRtm/platform/Dialogs.hpp"
#include "tsRtm/platform/SystemTexts.hpp"
#include "tsRtm/platform/UserInterface.hpp"
#include "tsRtm/platform/posix/PosixNotices.hpp"

namespace tsRtm::platform::posix {

// On a terminal a box is printed with its answers numbered, and a number is read; an empty line takes the
// default. Without a terminal a box is printed and gets the safe answer, and all else is silent. Control
// characters of the texts do not reach the terminal.
//
// A task dialog is asked in the same way, part by part: its options, its buttons, its box to tick. At the
// buttons
// "?" asks for help, "+" shows the expanded text, and "@2" opens the second of its links, which is printed.
class ConsoleUserInterface final : public UserInterface, public Dialogs, public Choices, public SystemTexts {
 public:
    // The streams and the notices outlive the object. `terminal`: somebody sits at both. Without notices
    // nothing is heard of the system; what happened is told in processEvents.
    ConsoleUserInterface(std::istream& in, std::ostream& out, bool terminal, PosixNotices* notices = nullptr);

    bool attended() override { return terminal_; }
    int32 show(const MessageBox& box) override;
    std::optional<DialogAnswer> showTaskDialog(const TaskDialog& dialog, const DialogListener& tell) override;
    int32 choose(const ChoiceList& list) override;
    std::optional<Text> ask(TextView prompt, TextView title, TextView preset) override;
    void openLink(TextView address) override;
    void showMessageWindow(TextView message) override;
    void hideMessageWindow() override {}
    void status(TextView message) override;
    void processEvents() override;
    void beep() override;
    int32 comCtlVersion() override { return 580; }
    bool hasSystemCaptions() override { return false; }
    Text systemCaption(int32) override { return {}; }
    Text keyName(int32) override { return {}; }
    bool hearsNotices() override { return notices_ && notices_->hears(); }

 private:
    class Conversation;

    void print(TextView text);
    void printLine(TextView message);
    std::optional<std::string> readLine();
    // The number of one of the choices, the default one for an empty line, nothing for any other line, which
    // is left in `line`; the safe one where the input ends.
    std::optional<int32> choose(const std::vector<DialogButton>& choices, int32 usual, int32 safe,
                                std::string& line);

    std::istream& in_;
    std::ostream& out_;
    bool terminal_;
    PosixNotices* notices_;
    Text lastLine_;  // a wait repeats its text: print it once
};

// Whether standard input and standard error are both a terminal.
bool atTerminal() noexcept;

}  // namespace tsRtm::platform::posix

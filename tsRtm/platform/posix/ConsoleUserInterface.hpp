#pragma once
// The person at a terminal, or nobody.
#include <iosfwd>

#include "tsRtm/platform/UserInterface.hpp"

namespace tsRtm::platform::posix {

// The answer that loses nothing: No, Cancel, OK, Abort in this order, else the default answer.
int32 safeAnswer(const MessageBox& box) noexcept;

// On a terminal a box is printed with its answers numbered, and a number is read; an empty line takes the
// default. Without a terminal a box is printed and gets the safe answer, and all else is silent.
class ConsoleUserInterface final : public UserInterface {
 public:
    // The streams outlive the object. `terminal`: somebody sits at both.
    ConsoleUserInterface(std::istream& in, std::ostream& out, bool terminal);

    int32 show(const MessageBox& box) override;
    void showMessageWindow(TextView message) override;
    void hideMessageWindow() override {}
    void status(TextView message) override;
    void processEvents() override {}
    void beep() override;
    int32 comCtlVersion() override { return 580; }
    Text systemCaption(int32) override { return {}; }
    Text keyName(int32) override { return {}; }

 private:
    void print(const MessageBox& box);
    int32 ask(const MessageBox& box);
    bool askCheckBox(TextView question);
    void printLine(TextView message);

    std::istream& in_;
    std::ostream& out_;
    bool terminal_;
    Text lastLine_;  // a wait repeats its text: print it once
};

// Whether standard input and standard error are both a terminal.
bool atTerminal() noexcept;

}  // namespace tsRtm::platform::posix

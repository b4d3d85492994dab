#include "tsRtm/platform/posix/ConsoleUserInterface.hpp"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <istream>
#include <ostream>
#include <string>

namespace tsRtm::platform::posix {
namespace {

constexpr int32 kOk = 1, kCancel = 2, kAbort = 3, kNo = 7;
constexpr int32 kDoNotShowAgain = 2048;

bool offers(const MessageBox& box, int32 answer) noexcept {
    return std::find(box.answers.begin(), box.answers.end(), answer) != box.answers.end();
}

const char* caption(int32 answer) noexcept {
    switch (answer) {
        case 1:
            return "OK";
        case 2:
            return "Abbrechen";
        case 3:
            return "Beenden";
        case 4:
            return "Wiederholen";
        case 5:
            return "Ignorieren";
        case 6:
            return "Ja";
        case 7:
            return "Nein";
        case 10:
            return "Wiederholen";
        case 11:
            return "Weiter";
        default:
            return "Antwort";
    }
}

// Line ends as a terminal wants them.
std::string lines(TextView text) {
    return toUtf8(replaceAll(replaceAll(text, u"\r\n", u"\n"), u"\r", u"\n"));
}

}  // namespace

int32 safeAnswer(const MessageBox& box) noexcept {
    for (const int32 answer : {kNo, kCancel, kOk, kAbort})
        if (offers(box, answer)) return answer;
    return box.defaultAnswer;
}

bool atTerminal() noexcept { return ::isatty(STDIN_FILENO) == 1 && ::isatty(STDERR_FILENO) == 1; }

ConsoleUserInterface::ConsoleUserInterface(std::istream& in, std::ostream& out, bool terminal)
    : in_(in), out_(out), terminal_(terminal) {}

int32 ConsoleUserInterface::show(const MessageBox& box) {
    print(box);
    if (!terminal_) return safeAnswer(box);
    const int32 answer = ask(box);
    const bool ticked = !box.checkBox.empty() && askCheckBox(box.checkBox);
    return ticked ? answer + kDoNotShowAgain : answer;
}

void ConsoleUserInterface::print(const MessageBox& box) {
    for (const auto& part : {box.title, box.headline, box.body})
        if (!part.empty()) out_ << lines(part) << '\n';
    out_.flush();
}

int32 ConsoleUserInterface::ask(const MessageBox& box) {
    if (box.answers.size() < 2) return box.answers.empty() ? box.defaultAnswer : box.answers.front();
    for (;;) {
        for (std::size_t i = 0; i < box.answers.size(); ++i)
            out_ << (i == 0 ? "" : "  ") << i + 1 << " " << caption(box.answers[i]);
        out_ << "  [" << caption(box.defaultAnswer) << "]? " << std::flush;
        std::string line;
        if (!std::getline(in_, line)) return safeAnswer(box);
        if (line.empty()) return box.defaultAnswer;
        std::size_t number = 0;
        const auto read = std::from_chars(line.data(), line.data() + line.size(), number);
        if (read.ec == std::errc{} && number >= 1 && number <= box.answers.size())
            return box.answers[number - 1];
    }
}

bool ConsoleUserInterface::askCheckBox(TextView question) {
    out_ << lines(question) << " (j/N)? " << std::flush;
    std::string line;
    return std::getline(in_, line) && (line == "j" || line == "J");
}

void ConsoleUserInterface::showMessageWindow(TextView message) { printLine(message); }

void ConsoleUserInterface::status(TextView message) { printLine(message); }

void ConsoleUserInterface::printLine(TextView message) {
    if (!terminal_ || message.empty() || message == lastLine_) return;
    lastLine_ = message;
    out_ << lines(message) << std::endl;
}

void ConsoleUserInterface::beep() {
    if (terminal_) out_ << '\a' << std::flush;
}

}  // namespace tsRtm::platform::posix

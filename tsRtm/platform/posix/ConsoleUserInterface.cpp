#include "tsRtm/platform/posix/ConsoleUserInterface.hpp"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <istream>
#include <ostream>

#include "tsRtm/platform/posix/ConsoleChoice.hpp"

namespace tsRtm::platform::posix {
namespace {

std::vector<DialogButton> choicesOf(const MessageBox& box) {
    std::vector<DialogButton> choices;
    for (const int32 answer : box.answers) choices.push_back({answer, Text(usualCaption(answer))});
    return choices;
}

// Line ends as a terminal wants them, and nothing else that could steer it.
std::string lines(TextView text) {
    Text out = replaceAll(replaceAll(text, u"\r\n", u"\n"), u"\r", u"\n");
    for (char16_t& c : out)
        if (c != u'\n' && c != u'\t' && (c < 0x20 || (c >= 0x7F && c < 0xA0))) c = u'·';
    return toUtf8(out);
}

// A text whose links are told apart from it: "text [1]".
struct Linked {
    Text text;
    std::vector<Text> addresses;
};

Linked linksOf(TextView text) {
    constexpr TextView kOpen = u"<A HREF=\"", kClose = u"</A>";
    Linked out;
    for (auto at = text.find(kOpen); at != TextView::npos; at = text.find(kOpen)) {
        const auto quote = text.find(u"\">", at);
        const auto close = quote == TextView::npos ? quote : text.find(kClose, quote);
        if (close == TextView::npos) break;
        out.addresses.emplace_back(text.substr(at + kOpen.size(), quote - at - kOpen.size()));
        out.text.append(text.substr(0, at)).append(text.substr(quote + 2, close - quote - 2));
        out.text += u" [" + toText(static_cast<int64>(out.addresses.size())) + u"]";
        text.remove_prefix(close + kClose.size());
    }
    out.text += text;
    return out;
}

// The whole text as a number from 1; 0 for none.
std::size_t numberIn(std::string_view text) noexcept {
    std::size_t number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    return read.ec == std::errc{} && read.ptr == text.data() + text.size() ? number : 0;
}

}  // namespace

bool atTerminal() noexcept { return ::isatty(STDIN_FILENO) == 1 && ::isatty(STDERR_FILENO) == 1; }

ConsoleUserInterface::ConsoleUserInterface(std::istream& in, std::ostream& out, bool terminal,
                                           PosixNotices* notices)
    : in_(in), out_(out), terminal_(terminal), notices_(notices) {}

void ConsoleUserInterface::processEvents() {
    // A copy: who hears of the end of the system stops listening.
    if (const auto listener = onNotice; listener && notices_) notices_->tell(listener);
}

void ConsoleUserInterface::print(TextView text) {
    if (!text.empty()) out_ << lines(text) << '\n' << std::flush;
}

std::optional<std::string> ConsoleUserInterface::readLine() {
    out_.flush();
    std::string line;
    if (!terminal_ || !std::getline(in_, line)) return std::nullopt;
    return line;
}

std::optional<int32> ConsoleUserInterface::choose(const std::vector<DialogButton>& choices, int32 usual,
                                                  int32 safe, std::string& line) {
    const TextView between = u"  ";
    Text question;
    Text preset(usualCaption(usual));
    for (std::size_t i = 0; i < choices.size(); ++i) {
        const Text caption = replaceAll(choices[i].caption, u"&", {});
        question.append(i == 0 ? TextView() : between)
            .append(toText(static_cast<int64>(i + 1)) + u" " + caption);
        if (choices[i].number == usual) preset = caption;
    }
    out_ << lines(question + u"  [" + preset + u"]? ");
    const auto typed = readLine();
    if (!typed) return safe;
    line = *typed;
    if (line.empty()) return usual;
    const auto number = numberIn(line);
    if (number >= 1 && number <= choices.size()) return choices[number - 1].number;
    return std::nullopt;
}

int32 ConsoleUserInterface::show(const MessageBox& box) {
    print(box.title);
    print(box.body);
    if (!terminal_) return safeAnswer(box);
    if (box.answers.size() < 2) return box.answers.empty() ? box.defaultAnswer : box.answers.front();
    const auto choices = choicesOf(box);
    for (std::string line;;)
        if (const auto answer = choose(choices, box.defaultAnswer, safeAnswer(box), line)) return *answer;
}

// One task dialog from its beginning to its end.
class ConsoleUserInterface::Conversation {
 public:
    Conversation(ConsoleUserInterface& console, const TaskDialog& dialog, const DialogListener& tell)
        : console_(console), dialog_(dialog), tell_(tell), choices_(choicesOf(dialog)) {
        answer_.option = dialog.defaultOption;
        answer_.checked = dialog.checked;
        for (auto& choice : choices_)
            for (const auto& own : dialog.ownButtons)
                if (own.number == choice.number) choice.caption = own.caption;
    }

    DialogAnswer hold() {
        if (tell(DialogNotice::constructed) && tell(DialogNotice::created)) talk();
        tell_(DialogNotice::destroyed, 0, {});
        return answer_;
    }

 private:
    void talk() {
        print();
        if (!console_.terminal_) return click(safeAnswer(dialog_));
        if (!dialog_.options.empty() && !askOption()) return;
        // The box to tick stands beside the buttons, so it is asked for before the button that ends all.
        if (!dialog_.checkBox.empty() && !askCheckBox()) return;
        askButton();
    }

    // False where the listener closes the dialog.
    bool tell(DialogNotice notice, int32 value = 0, TextView link = {}) {
        const int32 button = tell_(notice, value, link);
        if (button != 0) click(button);
        return button == 0;
    }

    void click(int32 button) {
        answer_.button = button;
        tell_(DialogNotice::buttonClick, button, {});
    }

    void print() {
        console_.print(dialog_.title);
        for (const auto* text : {&dialog_.headline, &dialog_.body, &dialog_.footer}) printLinked(*text);
        if (!console_.terminal_) return printLinked(dialog_.expanded);
        Text hints;
        if (!links_.empty()) hints += u"@ und Nummer: Verweis öffnen  ";
        if (!dialog_.expanded.empty()) hints += u"+: mehr zeigen  ";
        if (!dialog_.helpFile.empty()) hints += u"?: Hilfe";
        console_.print(hints);
    }

    void printLinked(TextView text) {
        const auto linked = linksOf(text);
        console_.print(linked.text);
        links_.insert(links_.end(), linked.addresses.begin(), linked.addresses.end());
    }

    bool askOption() {
        for (std::string line;;) {
            const auto option = console_.choose(dialog_.options, answer_.option, answer_.option, line);
            if (!option) continue;
            answer_.option = *option;
            return tell(DialogNotice::optionClick, *option);
        }
    }

    bool askCheckBox() {
        console_.out_ << lines(dialog_.checkBox + (answer_.checked ? u" (J/n)? " : u" (j/N)? "));
        const auto line = console_.readLine();
        const bool before = answer_.checked;
        if (line && !line->empty()) answer_.checked = (*line)[0] == 'j' || (*line)[0] == 'J';
        return answer_.checked == before || tell(DialogNotice::verify, answer_.checked ? 1 : 0);
    }

    void askButton() {
        if (choices_.size() < 2)
            return click(choices_.empty() ? dialog_.defaultAnswer : choices_.front().number);
        for (std::string line;;) {
            if (const auto button =
                    console_.choose(choices_, dialog_.defaultAnswer, safeAnswer(dialog_), line))
                return click(*button);
            if (!obey(line)) return;
        }
    }

    bool obey(const std::string& line) {
        if (line == "?") return tell(DialogNotice::help);
        if (line == "+" && !dialog_.expanded.empty()) {
            printLinked(dialog_.expanded);
            return tell(DialogNotice::expand, 1);
        }
        const auto number = line.starts_with('@') ? numberIn(line.substr(1)) : 0;
        return number == 0 || number > links_.size() || tell(DialogNotice::hyperlink, 0, links_[number - 1]);
    }

    ConsoleUserInterface& console_;
    const TaskDialog& dialog_;
    const DialogListener& tell_;
    std::vector<DialogButton> choices_;
    std::vector<Text> links_;
    DialogAnswer answer_;
};

std::optional<DialogAnswer> ConsoleUserInterface::showTaskDialog(const TaskDialog& dialog,
                                                                 const DialogListener& tell) {
    return Conversation(*this, dialog, tell).hold();
}

int32 ConsoleUserInterface::choose(const ChoiceList& list) {
    if (!terminal_) return 0;
    return ConsoleChoice(
               list, [this](TextView text) { print(text); }, [this] { return readLine(); })
        .hold();
}

std::optional<Text> ConsoleUserInterface::ask(TextView prompt, TextView title, TextView preset) {
    if (!terminal_) return Text(preset);
    print(Text(title) + u": " + Text(prompt) + (preset.empty() ? Text() : u" [" + Text(preset) + u"]"));
    const auto line = readLine();
    if (!line) return std::nullopt;
    return line->empty() ? Text(preset) : fromUtf8(*line);
}

void ConsoleUserInterface::openLink(TextView address) {
    if (terminal_) print(address);
}

void ConsoleUserInterface::showMessageWindow(TextView message) { printLine(message); }

void ConsoleUserInterface::status(TextView message) { printLine(message); }

void ConsoleUserInterface::printLine(TextView message) {
    if (!terminal_ || message.empty() || message == lastLine_) return;
    lastLine_ = message;
    print(message);
}

void ConsoleUserInterface::beep() {
    if (terminal_) out_ << '\a' << std::flush;
}

}  // namespace tsRtm::platform::posix

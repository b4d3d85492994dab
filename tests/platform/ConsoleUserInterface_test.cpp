// The person at a terminal, or nobody: boxes and task dialogs in lines.
#include "tsRtm/platform/posix/ConsoleUserInterface.hpp"

#include <sstream>

#include "tests/support/Told.hpp"

namespace tsRtm::test {
namespace {

using namespace platform;

// A terminal at which this is typed, or none.
struct Terminal {
    explicit Terminal(const char* typed, bool there = true) : in(typed), console(in, out, there) {}
    std::istringstream in;
    std::ostringstream out;
    posix::ConsoleUserInterface console;
};

struct Row {
    std::vector<int32> answers;
    int32 usual;
    const char* typed;  // nullptr: nobody is there
    int32 answer;
};

TEST(Console, PlainBoxes) {
    for (const auto& [answers, usual, typed, answer] :
         {// Nobody there: No, Cancel, OK, Abort in this order, else the default.
          Row{{6, 7}, 6, nullptr, 7}, Row{{6, 7, 2}, 6, nullptr, 7}, Row{{1, 2}, 1, nullptr, 2},
          Row{{1}, 1, nullptr, 1}, Row{{3, 4, 5}, 4, nullptr, 3}, Row{{}, 1, nullptr, 1},
          Row{{20, 21}, 21, nullptr, 21},
          // A terminal asks until an answer fits; a closed one is nobody.
          Row{{6, 7, 2}, 7, "1\n", 6}, Row{{6, 7, 2}, 7, "x\n4\n0\n1x\n3\n", 2}, Row{{6, 7, 2}, 6, "\n", 6},
          Row{{6, 7, 2}, 6, "x\n", 7}, Row{{1}, 1, "", 1}}) {
        MessageBox box;
        box.title = u"Titel";
        box.body = u"eins\r\nzwei\x1B[2J";
        box.answers = answers;
        box.defaultAnswer = usual;
        Terminal at(typed ? typed : "1\n", typed != nullptr);
        EXPECT_EQ(at.console.show(box), answer);
        EXPECT_EQ(at.out.str().substr(0, 21), "Titel\neins\nzwei·[2J\n") << "no text steers the terminal";
    }
}

// What a dialog tells, "7:0 0:0 ..."; the listener answers the given notice with a button.
struct Conversation {
    DialogAnswer answer;
    std::string told, printed;
};

Conversation hold(const TaskDialog& dialog, const char* typed, DialogNotice closing = DialogNotice::timer) {
    Conversation held;
    Terminal at(typed ? typed : "", typed != nullptr);
    held.answer = *at.console.showTaskDialog(dialog, [&](DialogNotice notice, int32 value, TextView link) {
        held.told += std::to_string(static_cast<int32>(notice)) + ":" +
                     (link.empty() ? std::to_string(value) : toUtf8(link)) + " ";
        return notice == closing ? 99 : 0;
    });
    held.printed = at.out.str();
    return held;
}

TEST(Console, TaskDialogs) {
    TaskDialog dialog;
    dialog.title = u"Titel";
    dialog.headline = u"Kopf";
    dialog.body = u"siehe <A HREF=\"http://a\">hier</A> und <A HREF=\"http://b\">dort</A>";
    dialog.expanded = u"mehr";
    dialog.answers = {2, 10};
    dialog.defaultAnswer = 2;
    dialog.ownButtons = {{10, u"No&chmal"}};

    const auto asked = hold(dialog, "@2\n@3\n+\n?\n2\n");
    EXPECT_EQ(asked.answer.button, 10);
    EXPECT_EQ(asked.told, "7:0 0:0 3:http://b 10:1 9:0 2:10 5:0 ");
    EXPECT_TRUE(asked.printed.starts_with("Titel\nKopf\nsiehe hier [1] und dort [2]\n")) << asked.printed;
    EXPECT_HOLDS(asked.printed, "1 Abbrechen  2 Nochmal  [Abbrechen]? ");

    dialog.options = {{5, u"fünf"}, {6, u"sechs"}};
    dialog.defaultOption = 6;
    dialog.checkBox = u"Nie wieder";
    const auto chosen = hold(dialog, "1\nj\n\n");
    EXPECT_TOLD("7:0 0:0 6:5 8:1 2:2 5:0 |5|yes", chosen.told, chosen.answer.option, chosen.answer.checked);

    const auto nobody = hold(dialog, nullptr);
    EXPECT_TOLD("7:0 0:0 2:2 5:0 |6|no", nobody.told, nobody.answer.option, nobody.answer.checked);
    EXPECT_HOLDS(nobody.printed, "mehr") << "all there is to read goes to the log of a server";

    for (const auto closing : {DialogNotice::created, DialogNotice::optionClick, DialogNotice::verify})
        EXPECT_EQ(hold(dialog, "1\nj\n1\n", closing).answer.button, 99);
}

TEST(Console, StatusLinesAreForATerminalAndPrintedOnce) {
    for (const bool terminal : {true, false}) {
        Terminal at("", terminal);
        for (const TextView text : {u"Warte", u"Warte", u"", u"Fertig"}) at.console.status(text);
        EXPECT_EQ(at.out.str(), terminal ? "Warte\nFertig\n" : "");
    }
}

// A page has fifteen lines.
TEST(Console, ListsPageByPage) {
    ChoiceList list;
    list.caption = u"Auswahl";
    list.count = 40;
    list.cells = [](int32 line) { return std::vector<Text>{u"Z\x1B" + toText(line), u"rechts"}; };
    struct Typed {
        const char* typed;
        int32 line;
        int32 start = 1;
        bool ordered = true;
    };
    for (const auto& [typed, line, start, ordered] : {Typed{"3\n", 3},
                                                      {"\n2\n", 17},
                                                      {"\n\n10\n", 40},
                                                      {"\n\n\n1\n", 31},
                                                      {"\n-\n-\n15\n", 15},
                                                      {".\n", 0},
                                                      {"", 0},
                                                      {"16\n0\n1\n", 5},
                                                      {"abc\n2\n", 6},
                                                      {"abc\n2\n", 2, 1, false},
                                                      {"1\n", 20, 20},
                                                      {"1\n", 40, 41}}) {
        list.start = start;
        list.find = ordered ? [](TextView) { return 5; } : std::function<int32(TextView)>();
        Terminal at(typed);
        EXPECT_EQ(at.console.choose(list), line) << typed;
        EXPECT_EQ(at.out.str().find('\x1B'), std::string::npos);
    }
    Terminal nobody("1\n", false);
    EXPECT_TOLD("0|", nobody.console.choose(list), nobody.out.str());
}

}  // namespace
}  // namespace tsRtm::test

// Descriptions of failures and the central handler.
#include <gtest/gtest.h>

#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"

namespace tsRtm::test {
namespace {

using rtmMain::state;

class Failures : public ::testing::Test {
 protected:
    StartedLibrary library;
    TestGround& ground = library.ground;
    MessagesTopic messages;
};

TEST_F(Failures, Descriptions) {
    const Failure failure(9, u"clsListe", u"Falscher Index"), foreign(-2147221504, u"x", u"y");
    EXPECT_TOLD("Fehler 53: Datei nicht gefunden||Fehler &h80040000", messages.ErrorMsg(53),
                messages.ErrorMsg(-1), messages.ErrorMsg(-2147221504).substr(0, 17));
    EXPECT_TOLD(
        "Fehler 9: Falscher Index|Fehler 9: Falscher Index in Zeile 12|Fehler 9: Falscher Index|Fehler "
        "&h80040000: y",
        messages.ErrorMessage(failure), messages.ErrorMessage(failure, 12),
        messages.ErrorMessage(failure, -1), messages.ErrorMessage(foreign));
    EXPECT_TOLD("Der Zugriff ist verweigert|Unbekannter Fehler: &hFACE|Unbekannter Fehler: &hFFFFFFFF",
                messages.SystemMsg(5), messages.SystemMsg(64206), messages.SystemMsg(-1));
}

TEST_F(Failures, HandlerAbsorbsRecordsShowsOrRaises) {
    struct Case {
        const char* what;
        int32 pending;
        TextView description;
        int32 param;
        int32 answer;   // of the user, 0: nothing is shown
        TextView says;  // the beginning of what is shown
        int32 raised;   // 0: nothing
        int32 FE_, F;   // afterwards; F was 7
    };
    for (const auto& c :
         {Case{"nothing pending", 0, u"", 0, 0, u"", 0, 0, 0},
          Case{"expected", 53, u"x", 53, 0, u"", 0, 0, 53},
          Case{"another than expected", 55, u"x", 53, 1, u"Fehler 55: x in Prozedur Quelle", 0, 55, 55},
          Case{"moved to F", 70, u"x", -1, 0, u"", 0, 0, 70},
          Case{"shown without description", 70, u"", 0, 1, u"Fehler 70:  in Prozedur", 0, 70, 70},
          Case{"negative, in decimal", -5, u"x", 0, 1, u"Fehler -5: x in", 0, -5, -5},
          Case{"negative and bare: raised", -5, u"", 0, 0, u"", -5, -5, -5},
          Case{"device, go on", 25, u"x", 0, 6, u"Fehler 25: x. Weiter", 0, 0, 7},
          Case{"device, stop", 27, u"x", -1, 7, u"Fehler 27: x. Weiter", 0, 27, 7},
          Case{"inner, described: shown", 6, u"x", -1, 1, u"Fehler 6: x in", 0, 6, 7},
          Case{"inner, above 19: shown", 28, u"", 28, 1, u"Fehler 28: ", 0, 28, 7},
          Case{"inner, bare: raised", 5, u"", 0, 0, u"", 5, 5, 7},
          Case{"inner and expected: raised all the same", 9, u"", 9, 0, u"", 9, 9, 7}}) {
        SCOPED_TRACE(c.what);
        state().FE_ = c.pending;
        state().pendingText = c.description;
        state().F = 7;
        ground.ui.boxes.clear();
        ground.ui.answers.clear();
        if (c.answer) ground.ui.answers = {c.answer};
        int32 raised = 0;
        try {
            messages.ErrorHandler(c.param, u"Quelle");
        } catch (const Failure& failure) {
            raised = failure.Number();
            EXPECT_EQ(failure.Source(), u"Quelle");
        }
        EXPECT_EQ(raised, c.raised);
        EXPECT_EQ(ground.ui.boxes.size(), c.answer ? 1u : 0u);
        if (!ground.ui.boxes.empty()) {
            const Text& said = ground.ui.boxes[0].headline;
            EXPECT_TRUE(said.starts_with(c.says)) << toUtf8(said);
            EXPECT_EQ(said.ends_with(u" in Programm Anwendung.exe"), c.answer == 1);
            EXPECT_EQ(ground.ui.boxes[0].title, c.answer == 1 ? u"Hinweis" : u"Frage");
        }
        EXPECT_EQ(std::pair(state().FE_, state().F), std::pair(c.FE_, c.F));
    }
}

TEST_F(Failures, CurrentFailureIsTakenOnce) {
    const auto handled = [&](int32 param) {
        messages.ErrorHandler(param);
        return std::pair(state().FE_, state().F);
    };
    setCurrentFailure(53);
    EXPECT_EQ(handled(-2), std::pair(53, 0));
    EXPECT_EQ(handled(-1), std::pair(0, 53));
    EXPECT_EQ(state().pendingText, u"Datei nicht gefunden") << "the description outlives the number";
    EXPECT_EQ(handled(-2).first, 0) << "a failure is not taken twice";
    setCurrentFailure(25, u"Gerät aus");
    ground.ui.answers = {7};
    EXPECT_EQ(handled(-2).first, 25);
    EXPECT_EQ(ground.ui.boxes.size(), 1u) << "asked at once";
}

}  // namespace
}  // namespace tsRtm::test

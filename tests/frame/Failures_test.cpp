// Descriptions of failures and the central handler.
#include <gtest/gtest.h>

#include "tests/support/TestGround.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/TextTables.hpp"

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
    EXPECT_EQ(messages.ErrorMsg(53), u"Fehler 53: Datei nicht gefunden");
    EXPECT_EQ(messages.ErrorMsg(-1), u"");
    EXPECT_EQ(messages.ErrorMsg(-2147221504).substr(0, 17), u"Fehler &h80040000");
    const Failure failure(9, u"clsListe", u"Falscher Index");
    EXPECT_EQ(messages.ErrorMessage(failure), u"Fehler 9: Falscher Index");
    EXPECT_EQ(messages.ErrorMessage(failure, 12), u"Fehler 9: Falscher Index in Zeile 12");
    EXPECT_EQ(messages.ErrorMessage(failure, -1), u"Fehler 9: Falscher Index");
    EXPECT_EQ(messages.SystemMsg(5), u"Der Zugriff ist verweigert");
    EXPECT_EQ(messages.SystemMsg(64206), u"Unbekannter Fehler: &hFACE");
    EXPECT_EQ(messages.SystemMsg(-1), u"Unbekannter Fehler: &hFFFFFFFF");
}

TEST_F(Failures, EveryErrorOfTheSeamHasADescription) {
    using platform::SystemError;
    for (const auto error :
         {SystemError::fileNotFound,     SystemError::pathNotFound,      SystemError::tooManyOpenFiles,
          SystemError::accessDenied,     SystemError::invalidHandle,     SystemError::notEnoughMemory,
          SystemError::notReady,         SystemError::writeFault,        SystemError::readFault,
          SystemError::sharingViolation, SystemError::lockViolation,     SystemError::notSupported,
          SystemError::fileExists,       SystemError::invalidParameter,  SystemError::diskFull,
          SystemError::invalidName,      SystemError::directoryNotEmpty, SystemError::alreadyExists,
          SystemError::nameTooLong,      SystemError::fileTooLarge,      SystemError::deviceError,
          SystemError::cancelled,        SystemError::writeProtected})
        EXPECT_FALSE(systemErrorText(static_cast<int32>(error)).empty()) << static_cast<int32>(error);
}

// What the handler does with a pending failure.
struct HandlerCase {
    const char* what;
    int32 pending;
    const char16_t* description;
    int32 param;
    int32 answer;  // of the user, 0: nothing is shown
    int32 raised;  // 0: nothing
    int32 FE_;     // afterwards
    int32 F;       // afterwards; 7 was there before
};

class Handler : public Failures, public ::testing::WithParamInterface<HandlerCase> {};

TEST_P(Handler, AbsorbsRecordsShowsOrRaises) {
    const auto& c = GetParam();
    state().FE_ = c.pending;
    state().pendingText = c.description;
    state().F = 7;
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
    EXPECT_TRUE(ground.ui.answers.empty());
    EXPECT_EQ(state().FE_, c.FE_);
    EXPECT_EQ(state().F, c.F);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Handler,
    ::testing::Values(HandlerCase{"nothing pending", 0, u"", 0, 0, 0, 0, 0},
                      HandlerCase{"expected", 53, u"x", 53, 0, 0, 0, 53},
                      HandlerCase{"another than expected", 55, u"x", 53, 1, 0, 55, 55},
                      HandlerCase{"moved to F", 70, u"x", -1, 0, 0, 0, 70},
                      HandlerCase{"shown without description", 70, u"", 0, 1, 0, 70, 70},
                      HandlerCase{"negative and bare: raised", -5, u"", 0, 0, -5, -5, -5},
                      HandlerCase{"device, go on", 25, u"x", 0, 6, 0, 0, 7},
                      HandlerCase{"device, stop", 27, u"x", -1, 7, 0, 27, 7},
                      HandlerCase{"inner, described: shown", 6, u"x", -1, 1, 0, 6, 7},
                      HandlerCase{"inner, above 19: shown", 28, u"", 28, 1, 0, 28, 7},
                      HandlerCase{"inner, bare: raised", 5, u"", 0, 0, 5, 5, 7},
                      HandlerCase{"inner and expected: raised all the same", 9, u"", 9, 0, 9, 9, 7}),
    [](const auto& param) { return std::to_string(param.index); });

TEST_F(Failures, CurrentFailureIsTakenOnce) {
    setCurrentFailure(53);
    messages.ErrorHandler(-2, u"Öffnen");
    EXPECT_EQ(state().FE_, 53);
    EXPECT_EQ(state().pendingText, u"Datei nicht gefunden");
    EXPECT_EQ(state().F, 0);
    messages.ErrorHandler(-1);
    EXPECT_EQ(state().F, 53);
    EXPECT_EQ(state().FE_, 0);
    EXPECT_EQ(state().pendingText, u"Datei nicht gefunden") << "the description outlives the number";
    messages.ErrorHandler(-2);
    EXPECT_EQ(state().FE_, 0) << "a failure is not taken twice";

    setCurrentFailure(25, u"Gerät aus");
    ground.ui.answers = {7};
    messages.ErrorHandler(-2, u"Drucken");  // asks at once
    EXPECT_EQ(state().FE_, 25);
    EXPECT_EQ(ground.ui.boxes.back().headline, u"Fehler 25: Gerät aus. Weiter");
    EXPECT_EQ(ground.ui.boxes.back().title, u"Frage");
}

TEST_F(Failures, ShownFailureNamesProcedureAndProgram) {
    state().FE_ = 70;
    state().pendingText = u"Zugriff verweigert";
    ground.ui.answers = {1, 1};
    messages.ErrorHandler(0);
    messages.ErrorHandler(0);
    ASSERT_EQ(ground.ui.boxes.size(), 2u) << "what stays pending is shown again";
    EXPECT_EQ(ground.ui.boxes[0].headline,
              u"Fehler 70: Zugriff verweigert in Prozedur ErrorHandler in Programm Anwendung.exe");
    EXPECT_EQ(ground.ui.boxes[0].title, u"Hinweis");
}

}  // namespace
}  // namespace tsRtm::test

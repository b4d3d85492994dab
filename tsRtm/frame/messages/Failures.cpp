// Descriptions of failures, and the handler of what is pending.
#include <utility>

#include "tsRtm/frame/messages/Messages.hpp"
#include "tsRtm/frame/messages/TextTables.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {

namespace {

constexpr int32 wordFehler = 1 + 2048;
constexpr int32 wordWeiter = 6;
constexpr int32 wordInProgramm = 7 + 1024 + 2048;

Text hexadecimal(int32 number) { return u"&h" + toHexadecimal(static_cast<uint32>(number)); }

Text numberText(int32 number) { return number < 0 ? hexadecimal(number) : toText(number); }

void takeCurrentFailure(rtmMain::State& state) {
    state.FE_ = std::exchange(state.currentFailure, 0);
    state.pendingText = std::exchange(state.currentFailureText, {});
}

// Failures of the program itself and its devices are shown or raised whatever was expected.
constexpr bool isInner(int32 number) noexcept { return number >= 1 && number <= 49; }
constexpr bool isPrinterFailure(int32 number) noexcept { return number >= 24 && number <= 27; }
constexpr int32 lastRaised = 19;

}  // namespace

void leaveFailure(int32 number, TextView description) {
    auto& state = rtmMain::state();
    state.currentFailure = number;
    state.currentFailureText = description.empty() ? runtimeErrorText(number) : description;
}

Text Messages::describe(const Text& number, TextView description) {
    return (RtmMsg(wordFehler) + number + u": ").append(description);
}

Text Messages::ErrorMsg(int32 FehlerNr) {
    return FehlerNr == -1 ? Text{} : describe(numberText(FehlerNr), runtimeErrorText(FehlerNr));
}

Text Messages::ErrorMessage(const Failure& Fehler, int32 Zeile) {
    Text text = describe(numberText(Fehler.Number()), Fehler.Description());
    if (Zeile > 0) text += u" in Zeile " + toText(Zeile);
    return text;
}

Text Messages::SystemMsg(int32 FehlerNr) {
    const auto text = systemErrorText(FehlerNr);
    return text.empty() ? u"Unbekannter Fehler: " + hexadecimal(FehlerNr) : Text(text);
}

// What is shown or raised stays pending, and the pending description outlives -1: the next call tells of it
// again.
void Messages::ErrorHandler(int32 Param, TextView Source) {
    auto& state = rtmMain::state();
    if (Param == -2) takeCurrentFailure(state);

    if (!isInner(state.FE_)) {
        if (Param < -1) return;
        state.F = state.FE_;
        if (state.FE_ == 0) return;
        if (state.FE_ == Param || Param < 0) {
            state.FE_ = 0;
            return;
        }
    } else if (isPrinterFailure(state.FE_)) {
        const Text question = describe(toText(state.FE_), state.pendingText) + RtmMsg(wordWeiter);
        if (Frage(question)) state.FE_ = 0;
        return;
    }
    if (state.pendingText.empty() && state.FE_ <= lastRaised) raise(state.FE_, Source, state.pendingText);
    WaitForReturn(describe(toText(state.FE_), state.pendingText) + u" in Prozedur " + Text(Source) +
                  RtmMsg(wordInProgramm) + Text(rtmMain::NameOf(state.hostPath)));
}

}  // namespace tsRtm

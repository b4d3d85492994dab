#include "tsRtm/printing/output/FaxNotice.hpp"

#include "tsRtm/frame/OptionsTopic.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/options/Registry.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {
namespace {

using std::chrono::milliseconds;

constexpr TextView kNumberKey = u"Software\\Avm\\Fritz! 2.0\\Fax";
constexpr TextView kNumberValue = u"Rufnummer";
// The fax program's own settings, a value for each document.
constexpr TextView kTakenKey = u"Software\\Fritz!Fax\\";
constexpr TextView kNumbers = u"Print", kTimes = u"SendTime";
constexpr milliseconds kPatience{5000}, kLook{50};

Text keyOf(TextView section) { return Text(kTakenKey) + Text(section); }

void waitForPause() {
    const auto last = rtmMain::state().lastFax;
    int32& pause = rtmMain::state().faxPause;
    if (pause < 100) pause = OptionsTopic().LongOption(u"", u"Faxpause");
    if (pause < 100 || pause > 10000) pause = 1000;
    auto& clock = rtmMain::system().clock;
    while (last.count() > 0 && clock.elapsed() - last < milliseconds(pause))
        clock.sleep(milliseconds(pause) / 10);
}

}  // namespace

void announceFax(Job& job, TextView document) {
    job.faxError = 0;
    if (job.faxNumber.empty()) return;
    auto& clock = rtmMain::system().clock;
    if (job.fax == Fax::byHand) {
        waitForPause();
        registry::write(HKEY_CURRENT_USER, kNumberKey, kNumberValue, job.faxNumber);
        rtmMain::state().lastFax = clock.elapsed();
    } else if (job.fax == Fax::automatic) {
        registry::write(HKEY_CURRENT_USER, keyOf(kNumbers), document, job.faxNumber);
        if (!job.faxTime.empty()) registry::write(HKEY_CURRENT_USER, keyOf(kTimes), document, job.faxTime);
    } else {
        return;  // the other kinds of fax do nothing
    }
    clock.sleep(kLook);
}

void awaitFax(Job& job, TextView document) {
    if (job.faxNumber.empty() || job.fax != Fax::automatic) return;
    auto& clock = rtmMain::system().clock;
    const auto start = clock.elapsed();
    const auto waits = [&] { return !registry::read(HKEY_CURRENT_USER, keyOf(kNumbers), document).empty(); };
    while (waits() && clock.elapsed() - start < kPatience) clock.sleep(kLook);
    if (!waits()) return;
    job.faxError = 1;
    registry::erase(HKEY_CURRENT_USER, keyOf(kNumbers), document);
    registry::erase(HKEY_CURRENT_USER, keyOf(kTimes), document);
}

}  // namespace tsRtm

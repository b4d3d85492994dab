#include "tsRtm/frame/runtime/LocaleForms.hpp"

#include <utility>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/frame/text/Format.hpp"
#include "tsRtm/frame/text/TextOrder.hpp"

namespace tsRtm::rtmMain {

namespace {

using platform::LocaleItem;

constexpr std::size_t itemBuffer = 256;  // with the NUL at its end
constexpr int32 euroYear = 2002;

Text localeText(LocaleItem item) {
    Text text = CutAtNul(system().locale.item(item));
    if (text.size() >= itemBuffer) text.resize(itemBuffer - 1);
    return text;
}

int32 localeNumber(LocaleItem item) { return roundToInt32(Val(localeText(item))); }

}  // namespace

void ReadLocaleInfos() {
    LocaleBlock block;
    block.country = localeNumber(LocaleItem::country);
    block.countryName = localeText(LocaleItem::countryName);
    block.sepDate = localeText(LocaleItem::dateMark);
    block.sepTime = localeText(LocaleItem::timeMark);
    block.currDigits = localeNumber(LocaleItem::currencyDigits);
    block.sepDec = localeText(LocaleItem::decimalMark);
    block.sep1000 = localeText(LocaleItem::thousandsMark);
    block.dateForm = localeNumber(LocaleItem::dateForm);
    block.calendarType = localeNumber(LocaleItem::calendarType);
    block.firstDayOfWeek = localeNumber(LocaleItem::firstDayOfWeek);
    block.firstWeekOfYear = localeNumber(LocaleItem::firstWeekOfYear);
    block.currForm = localeNumber(LocaleItem::currencyForm);
    block.timeForm = localeNumber(LocaleItem::timeForm);
    // Walking all 256 characters from "Z" in code order and keeping each that compares greater without regard
    // to case: of equals the first one stays.
    block.lastChar = ansiToUnicode(lastAnsiByte());
    state().locale = std::move(block);
    state().currNameCache.clear();
}

void ReadSystemMetrics() {
    ScreenBlock block{system().screen.metrics()};
    block.frameXTwips = (block.edgeX + block.borderX) * block.twipsPerPixelX;
    block.frameYTwips = (block.edgeY + block.borderY) * block.twipsPerPixelY;
    block.virtualLeftTwips = block.virtualLeft * block.twipsPerPixelX;
    block.virtualTopTwips = block.virtualTop * block.twipsPerPixelY;
    block.virtualRightTwips = block.virtualWidth * block.twipsPerPixelX + block.virtualLeftTwips;
    block.virtualBottomTwips = block.virtualHeight * block.twipsPerPixelY + block.virtualTopTwips;
    state().screen = block;
}

Rectangle WorkArea(int32 windowHandle) {
    auto& ground = system().screen;
    auto area = windowHandle == 0 ? platform::PixelArea{} : ground.workAreaOf(windowHandle);
    if (area.right - area.left < 1) {
        const auto primary = ground.metrics();
        area = {primary.workLeft, primary.workTop, primary.workRight, primary.workBottom};
    }
    const auto& screen = state().screen;
    return {area.left * screen.twipsPerPixelX, area.top * screen.twipsPerPixelY,
            area.right * screen.twipsPerPixelX, area.bottom * screen.twipsPerPixelY};
}

Text CurrName() {
    Text& name = state().currNameCache;
    if (!name.empty()) return name;
    name = localeText(LocaleItem::currencySymbol);
    // By the clock, so that one set back across the year shows the old currency again.
    const bool euro = system().clock.now().parts().year >= euroYear;
    if (euro && name.find(u"DM") != Text::npos) name = u"EUR";
    return name;
}

Text TI_() {
    const auto at = system().clock.now().parts();
    return shortTime(at, state().locale.sepTime);
}

Text DA8() {
    const auto& locale = state().locale;
    return shortDate(system().clock.now().parts(), locale.dateForm, locale.sepDate);
}

// Asks the ground, not the block: the first line of a log is written before the block is read.
Text GeneralDate(Date moment) {
    const auto at = moment.parts();
    const bool twelveHours = localeNumber(LocaleItem::timeForm) == 0;
    return shortDate(at, localeNumber(LocaleItem::dateForm), localeText(LocaleItem::dateMark)) + u" " +
           longTime(at, twelveHours, localeText(LocaleItem::timeMark));
}

}  // namespace tsRtm::rtmMain

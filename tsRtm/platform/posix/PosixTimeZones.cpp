#include "tsRtm/platform/posix/PosixTimeZones.hpp"

#include <sys/stat.h>
#include <unicode/basictz.h>
#include <unicode/tzrule.h>
#include <unicode/tztrans.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <ctime>

namespace tsRtm::platform::posix {
namespace {

namespace chrono = std::chrono;

constexpr UDate kMillisecondsPerDay = 86400000;
constexpr int32 kMillisecondsPerMinute = 60000;
constexpr int32 kLast = 5;

chrono::year_month_day dateOf(UDate local) {
    return chrono::sys_days(chrono::days(static_cast<int64>(std::floor(local / kMillisecondsPerDay))));
}

UDate startOf(int32 year) {
    const chrono::sys_days first = chrono::year(year) / chrono::January / 1;
    return static_cast<UDate>(first.time_since_epoch().count()) * kMillisecondsPerDay;
}

ClockChange ruleOf(const chrono::year_month_day& date) {
    const auto day = static_cast<int32>(unsigned{date.day()});
    const chrono::year_month_day_last last(date.year(), chrono::month_day_last(date.month()));
    const bool isLast = day + 7 > static_cast<int32>(unsigned{last.day()});
    return {static_cast<int32>(unsigned{date.month()}),
            static_cast<int32>(chrono::weekday(chrono::sys_days(date)).c_encoding()),
            isLast ? kLast : (day + 6) / 7};
}

// The rules of a year that goes to summer time once and back once; nothing for any other.
std::optional<ZoneYear> ownRules(const icu::BasicTimeZone& zone, int32 year) {
    ZoneYear rules;
    UDate at = startOf(year) - 2 * kMillisecondsPerDay;
    icu::TimeZoneTransition change;
    while (zone.getNextTransition(at, false, change)) {
        at = change.getTime();
        const auto& from = *change.getFrom();
        const auto& to = *change.getTo();
        const auto date = dateOf(at + from.getRawOffset() + from.getDSTSavings());
        if (date.year() > chrono::year(year)) break;
        if (date.year() < chrono::year(year) || from.getDSTSavings() == to.getDSTSavings()) continue;
        const bool forward = from.getDSTSavings() == 0;
        auto& rule = forward ? rules.daylight : rules.standard;
        const bool second = rule.month != 0;
        const bool fromOneSummerTimeToAnother = !forward && to.getDSTSavings() != 0;
        if (second || fromOneSummerTimeToAnother) return std::nullopt;
        rule = ruleOf(date);
        rules.bias = -to.getRawOffset() / kMillisecondsPerMinute;
        if (forward) rules.daylightBias = -to.getDSTSavings() / kMillisecondsPerMinute;
    }
    if (rules.daylight.month == 0 || rules.standard.month == 0) return std::nullopt;
    return rules;
}

// What tells this machine's zone: asking ICU for it may read the whole zone data.
std::string machinesZone() {
    const char* variable = std::getenv("TZ");
    std::string told = variable ? std::string("TZ=") + variable : std::string();
    struct stat file {};
    if (::stat("/etc/localtime", &file) == 0)
        told += "|" + std::to_string(file.st_dev) + "," + std::to_string(file.st_ino) + "," +
                std::to_string(file.st_mtim.tv_sec) + "," + std::to_string(file.st_mtim.tv_nsec);
    return told;
}

}  // namespace

class PosixTimeZones::Zone {
 public:
    explicit Zone(std::unique_ptr<const icu::TimeZone> zone) : zone_(std::move(zone)) {}

    ZoneYear year(int32 year) const {
        const auto* rules = dynamic_cast<const icu::BasicTimeZone*>(zone_.get());
        if (!rules) return withoutSummerTime();
        if (const auto own = ownRules(*rules, year)) return *own;
        const auto present = ownRules(*rules, int{dateOf(now()).year()});
        return present ? *present : withoutSummerTime();
    }

 private:
    static UDate now() { return static_cast<UDate>(std::time(nullptr)) * 1000; }

    ZoneYear withoutSummerTime() const {
        int32_t raw = 0, saved = 0;
        UErrorCode code = U_ZERO_ERROR;
        zone_->getOffset(now(), false, raw, saved, code);
        ZoneYear rules;
        rules.bias = -(raw + saved) / kMillisecondsPerMinute;
        return rules;
    }

    std::unique_ptr<const icu::TimeZone> zone_;
};

PosixTimeZones::PosixTimeZones() = default;
PosixTimeZones::~PosixTimeZones() = default;

const PosixTimeZones::Zone& PosixTimeZones::ofMachine() {
    auto told = machinesZone();
    if (!machine_ || told != machineBy_) {
        machine_ = std::make_unique<const Zone>(
            std::unique_ptr<const icu::TimeZone>(icu::TimeZone::detectHostTimeZone()));
        machineBy_ = std::move(told);
    }
    return *machine_;
}

std::optional<ZoneYear> PosixTimeZones::year(TextView zone, int32 year) {
    if (zone.empty()) return ofMachine().year(year);
    auto found = named_.find(zone);
    if (found == named_.end()) {
        std::unique_ptr<const icu::TimeZone> made(icu::TimeZone::createTimeZone(
            icu::UnicodeString(zone.data(), static_cast<int32_t>(zone.size()))));
        const bool unknown = *made == icu::TimeZone::getUnknown();
        found = named_.emplace(zone, unknown ? nullptr : std::make_unique<const Zone>(std::move(made))).first;
    }
    if (!found->second) return std::nullopt;
    return found->second->year(year);
}

}  // namespace tsRtm::platform::posix

#pragma once
// System time as local dates.
#include <ctime>

#include "tsRtm/types/Date.hpp"

namespace tsRtm::platform::posix {

// In the zone of the process, whole seconds.
inline Date localDate(std::time_t moment) {
    struct tm local {};
    ::localtime_r(&moment, &local);
    return Date::of(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                    local.tm_sec < 60 ? local.tm_sec : 59);
}

}  // namespace tsRtm::platform::posix

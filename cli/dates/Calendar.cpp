#include "cli/dates/Calendar.hpp"

#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm::cli {

std::string weekdayName(TextView date) {
    return toUtf8(rtmMain::system().locale.weekdayName(kCalendar.DayOfWeek(date)));
}

}  // namespace tsRtm::cli

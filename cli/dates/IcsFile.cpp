#include "cli/dates/IcsFile.hpp"

#include <iostream>

#include "cli/dates/IcsLines.hpp"

namespace tsRtm::cli {

void IcsFile::line(const std::string& text) { std::cout << icsLine(text); }
IcsFile::IcsFile(const std::string& name, const std::string& today) : stamp_(today + "T000000Z") {
    line("BEGIN:VCALENDAR");
    line("VERSION:2.0");
    line("PRODID:-//tsRtm//tsrtm " TSRTM_VERSION "//DE");
    line("CALSCALE:GREGORIAN");
    line("X-WR-CALNAME:" + icsEscaped(name));
}

IcsFile::~IcsFile() { line("END:VCALENDAR"); }

void IcsFile::day(const std::string& date, const std::string& id, const std::string& title,
                  const std::string& category, const std::string& remark) {
    line("BEGIN:VEVENT");
    line("UID:" + id + "@tsrtm");
    line("DTSTAMP:" + stamp_);
    line("DTSTART;VALUE=DATE:" + date);
    line("SUMMARY:" + icsEscaped(title));
    line("CATEGORIES:" + icsEscaped(category));
    if (!remark.empty()) line("DESCRIPTION:" + icsEscaped(remark));
    line("TRANSP:TRANSPARENT");
    line("END:VEVENT");
}

}  // namespace tsRtm::cli

#pragma once
// Lines of an iCalendar file (RFC 5545), read and written.
#include <map>
#include <string>
#include <vector>

#include "cli/shared/TextFiles.hpp"

namespace tsRtm::cli {

// "DTSTART;VALUE=DATE:20241224" in its parts, names in capitals. A line that was folded has the number of its
// first part.
struct IcsProperty {
    int64 line = 0;
    std::string name;
    std::map<std::string, std::string> parameters;
    std::string value;

    std::string parameter(const std::string& wanted) const;
};
std::vector<IcsProperty> icsProperties(InputFile& file);

// "FREQ=DAILY;COUNT=3" in its parts, names in capitals.
std::map<std::string, std::string> icsParts(const std::string& text);
// What stands between commas.
std::vector<std::string> icsList(const std::string& text);
std::string icsCapitals(std::string text);

// A line as such a file has it, folded behind 75 bytes, and a text within it; the text back.
std::string icsLine(const std::string& text);
std::string icsEscaped(const std::string& text);
Text icsUnescaped(const std::string& text);

}  // namespace tsRtm::cli

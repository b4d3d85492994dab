#include "cli/dates/IcsFile.hpp"

#include <iostream>

namespace tsRtm::cli {
namespace {

constexpr std::size_t kLineBytes = 75;

std::string escaped(const std::string& text) {
    std::string out;
    for (const char c : text) {
        if (c == '\\' || c == ';' || c == ',') out += '\\';
        out += c;
    }
    return out;
}

bool beginsCharacter(char c) noexcept { return (static_cast<uint8>(c) & 0xC0) != 0x80; }

}  // namespace

void IcsFile::line(const std::string& text) {
    std::size_t room = kLineBytes;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = std::min(at + room, text.size());
        while (end < text.size() && !beginsCharacter(text[end])) --end;
        std::cout << (at > 0 ? "\r\n " : "") << text.substr(at, end - at);
        at = end;
        room = kLineBytes - 1;  // a folded line begins with a blank
    }
    std::cout << "\r\n";
}

IcsFile::IcsFile(const std::string& name, const std::string& today) : stamp_(today + "T000000Z") {
    line("BEGIN:VCALENDAR");
    line("VERSION:2.0");
    line("PRODID:-//tsRtm//tsrtm " TSRTM_VERSION "//DE");
    line("CALSCALE:GREGORIAN");
    line("X-WR-CALNAME:" + escaped(name));
}

IcsFile::~IcsFile() { line("END:VCALENDAR"); }

void IcsFile::day(const std::string& date, const std::string& id, const std::string& title,
                  const std::string& category, const std::string& remark) {
    line("BEGIN:VEVENT");
    line("UID:" + id + "@tsrtm");
    line("DTSTAMP:" + stamp_);
    line("DTSTART;VALUE=DATE:" + date);
    line("SUMMARY:" + escaped(title));
    line("CATEGORIES:" + escaped(category));
    if (!remark.empty()) line("DESCRIPTION:" + escaped(remark));
    line("TRANSP:TRANSPARENT");
    line("END:VEVENT");
}

}  // namespace tsRtm::cli

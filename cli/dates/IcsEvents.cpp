#include "cli/dates/IcsEvents.hpp"

#include <algorithm>
#include <map>
#include <optional>

#include "cli/shared/CliError.hpp"
#include "tsRtm/appointments/ical/Recurrence.hpp"

namespace tsRtm::cli {

using appointments::dayOfIcalDate;
using appointments::icalDate;

namespace {

constexpr std::size_t kLineBytes = 75;
constexpr std::size_t kMostLine = std::size_t{1} << 20;
constexpr int32 kDayMinutes = 24 * 60;

bool beginsCharacter(char c) noexcept { return (static_cast<uint8>(c) & 0xC0) != 0x80; }

std::string capitals(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    return text;
}

Text unescaped(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        const char c = text[++i];
        out += c == 'n' || c == 'N' ? '\n' : c;
    }
    return fromUtf8(out);
}

// Lines put together again where they were folded, with the number of the first.
struct Line {
    int64 number = 0;
    std::string text;
};
std::vector<Line> linesOf(InputFile& file) {
    std::string all(file.size(), '\0');
    all.resize(file.read(0, all));
    std::vector<Line> lines;
    int64 number = 0;
    for (std::size_t at = 0; at < all.size();) {
        const auto end = std::min(all.find('\n', at), all.size());
        std::string text = all.substr(at, end - at);
        at = end + 1;
        ++number;
        if (!text.empty() && text.back() == '\r') text.pop_back();
        if (!lines.empty() && !text.empty() && (text.front() == ' ' || text.front() == '\t')) {
            if (lines.back().text.size() < kMostLine) lines.back().text += text.substr(1);
        } else {
            lines.push_back({number, text});
        }
    }
    return lines;
}

// "DTSTART;VALUE=DATE:20241224" in its parts.
struct Property {
    std::string name, parameters, value;
};
Property propertyOf(const std::string& line) {
    bool quoted = false;
    std::size_t colon = 0;
    while (colon < line.size() && (quoted || line[colon] != ':')) {
        if (line[colon] == '"') quoted = !quoted;
        ++colon;
    }
    Property out;
    const std::string head = line.substr(0, colon);
    const auto semicolon = std::min(head.find(';'), head.size());
    out.name = capitals(head.substr(0, semicolon));
    out.parameters = capitals(head.substr(semicolon));
    if (colon < line.size()) out.value = line.substr(colon + 1);
    return out;
}

struct Moment {
    int32 day = 0;
    int32 minute = -1;
};
std::optional<Moment> momentOf(const std::string& value) {
    Moment out;
    out.day = dayOfIcalDate(value.substr(0, 8));
    if (out.day == 0) return std::nullopt;
    if (value.size() == 8) return out;
    const Text time = fromUtf8(value.substr(std::min<std::size_t>(9, value.size())));
    if (value[8] != 'T' || time.size() != 6 || !IstZiffern(time)) return std::nullopt;
    const int32 hour = roundToInt32(Val(time.substr(0, 2))), minute = roundToInt32(Val(time.substr(2, 2)));
    if (hour > 23 || minute > 59) return std::nullopt;
    out.minute = hour * 60 + minute;
    return out;
}

// "P1DT2H30M" in minutes; nothing for another form.
std::optional<int32> durationOf(const std::string& value) {
    if (value.size() < 3 || value[0] != 'P') return std::nullopt;
    int64 minutes = 0, number = 0;
    bool digits = false;
    for (const char c : value.substr(1)) {
        if (c == 'T') continue;
        if (c >= '0' && c <= '9') {
            number = std::min<int64>(number * 10 + (c - '0'), 100000);
            digits = true;
            continue;
        }
        const int64 unit = c == 'W'   ? 7 * kDayMinutes
                           : c == 'D' ? kDayMinutes
                           : c == 'H' ? 60
                           : c == 'M' ? 1
                                      : 0;
        if (!digits || (unit == 0 && c != 'S')) return std::nullopt;
        minutes += number * unit;
        number = 0;
        digits = false;
    }
    return static_cast<int32>(std::min<int64>(minutes, 1000000));
}

class Reader {
 public:
    explicit Reader(std::vector<IcsEvent>& events) : events_(events) {}

    void take(const Line& line) {
        const Property property = propertyOf(line.text);
        if (property.name == "BEGIN") {
            begin(capitals(property.value), line.number);
        } else if (property.name == "END") {
            end(capitals(property.value));
        } else if (event_ && inner_ == 0) {
            take(property);
        }
    }
    bool calendar() const noexcept { return calendar_; }

 private:
    void begin(const std::string& what, int64 line) {
        if (what == "VCALENDAR") calendar_ = true;
        if (event_)
            ++inner_;  // an alarm
        else if (what == "VEVENT")
            event_.emplace().line = line;
    }
    void end(const std::string& what) {
        if (event_ && inner_ > 0) {
            --inner_;
        } else if (event_ && what == "VEVENT") {
            settle();
            events_.push_back(std::move(*event_));
            event_.reset();
            end_.reset();
            duration_.reset();
        }
    }
    void fault(const std::string& why) {
        if (event_->fault.empty()) event_->fault = why;
    }

    void take(const Property& property) {
        auto& event = *event_;
        const auto& [name, parameters, value] = property;
        if (name == "DTSTART" || name == "DTEND") {
            if (value.ends_with('Z')) return fault("its time is in UTC");
            const auto moment = momentOf(value);
            if (!moment) return fault("no date: " + value);
            if (name == "DTEND") end_ = moment;
            if (name == "DTSTART") event.day = moment->day, event.minute = moment->minute;
        } else if (name == "DURATION") {
            duration_ = durationOf(value);
            if (!duration_) fault("no duration: " + value);
        } else if (name == "RRULE") {
            if (!event.rule.empty()) fault("two rules");
            event.rule = capitals(value);
        } else if (name == "RDATE" || name == "EXDATE" || name == "RECURRENCE-ID" || name == "EXRULE") {
            fault("exceptions of a series (" + name + ")");
        } else if (name == "UID") {
            event.uid = value;
        } else if (name == "SUMMARY") {
            event.summary = unescaped(value);
        } else if (name == "DESCRIPTION") {
            event.description = unescaped(value);
        } else if (name == "LOCATION") {
            event.location = unescaped(value);
        } else if (name == "STATUS" && capitals(value) == "CANCELLED") {
            fault("it was cancelled");
        }
    }

    void settle() {
        auto& event = *event_;
        if (event.day == 0) return fault("without a date");
        int32 minutes = duration_.value_or(0);
        if (end_)
            minutes =
                (end_->day - event.day) * kDayMinutes + std::max(end_->minute, 0) - std::max(event.minute, 0);
        if (event.minute < 0)
            event.days = std::max(1, minutes / kDayMinutes);
        else
            event.minutes = std::max(0, minutes);
        if (event.minutes >= kDayMinutes) fault("it takes a day or more");
    }

    std::vector<IcsEvent>& events_;
    std::optional<IcsEvent> event_;
    std::optional<Moment> end_;
    std::optional<int32> duration_;
    int32 inner_ = 0;
    bool calendar_ = false;
};

std::string timeOf(int32 minute) {
    const auto two = [](int32 n) { return std::to_string(n + 100).substr(1); };
    return "T" + two(minute / 60) + two(minute % 60) + "00";
}

}  // namespace

std::vector<IcsEvent> readIcs(InputFile& file) {
    std::vector<IcsEvent> events;
    Reader reader(events);
    for (const auto& line : linesOf(file)) reader.take(line);
    if (!reader.calendar()) throw CliError("no iCalendar file: BEGIN:VCALENDAR is missing");
    return events;
}

std::string icsLine(const std::string& text) {
    std::string out;
    std::size_t room = kLineBytes;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = std::min(at + room, text.size());
        while (end < text.size() && !beginsCharacter(text[end])) --end;
        out += (at > 0 ? "\r\n " : "") + text.substr(at, end - at);
        at = end;
        room = kLineBytes - 1;  // a folded line begins with a blank
    }
    return out + "\r\n";
}

std::string icsEscaped(const std::string& text) {
    std::string out;
    for (const char c : text) {
        if (c == '\r') continue;
        if (c == '\n') {
            out += "\\n";
            continue;
        }
        if (c == '\\' || c == ';' || c == ',') out += '\\';
        out += c;
    }
    return out;
}

IcsEvents::IcsEvents(OutputFile& file, const std::string& name, const std::string& today)
    : file_(file), stamp_(today + "T000000Z") {
    line("BEGIN:VCALENDAR");
    line("VERSION:2.0");
    line("PRODID:-//tsRtm//tsrtm " TSRTM_VERSION "//DE");
    line("CALSCALE:GREGORIAN");
    line("X-WR-CALNAME:" + icsEscaped(name));
}

void IcsEvents::line(const std::string& text) { file_.write(icsLine(text)); }

void IcsEvents::add(const IcsEvent& event) {
    line("BEGIN:VEVENT");
    line("UID:" + event.uid);
    line("DTSTAMP:" + stamp_);
    if (event.minute < 0) {
        line("DTSTART;VALUE=DATE:" + icalDate(event.day));
    } else {
        line("DTSTART:" + icalDate(event.day) + timeOf(event.minute));
        if (event.minutes > 0) line("DURATION:PT" + std::to_string(event.minutes) + "M");
    }
    if (!event.rule.empty()) line("RRULE:" + event.rule);
    line("SUMMARY:" + icsEscaped(toUtf8(event.summary)));
    if (!event.location.empty()) line("LOCATION:" + icsEscaped(toUtf8(event.location)));
    if (!event.description.empty()) line("DESCRIPTION:" + icsEscaped(toUtf8(event.description)));
    line("END:VEVENT");
}

void IcsEvents::finish() { line("END:VCALENDAR"); }

}  // namespace tsRtm::cli

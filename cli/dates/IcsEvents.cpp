#include "cli/dates/IcsEvents.hpp"

#include <algorithm>
#include <stdexcept>

#include "cli/shared/CliError.hpp"
#include "tsRtm/appointments/ical/Recurrence.hpp"

namespace tsRtm::cli {

using appointments::icalDate;

namespace {

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

class EventReader {
 public:
    EventReader(IcsContent& content) : events_(content.events), zones_(content.zones) {}

    void take(const IcsProperty& property) {
        if (property.name == "BEGIN")
            begin(icsCapitals(property.value), property.line);
        else if (property.name == "END")
            end(icsCapitals(property.value));
        else if (event_ && inner_ == 0)
            note(property);
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
            try {
                settle();
            } catch (const std::invalid_argument& why) {
                fault(why.what());
            }
            events_.push_back(std::move(*event_));
            event_.reset();
            end_.reset();
            duration_.reset();
        }
    }
    void fault(const std::string& why) {
        if (event_->fault.empty()) event_->fault = why;
    }

    // What is no time becomes the event's fault.
    std::optional<IcsTime> timeOf(const IcsProperty& property, const std::string& value) {
        const auto moment = icsMoment(value);
        if (!moment) {
            fault("no date: " + value);
            return std::nullopt;
        }
        return IcsTime{*moment, value.ends_with('Z') ? IcsZones::kUtc : property.parameter("TZID")};
    }
    void timesOf(const IcsProperty& property, std::vector<IcsTime>& out) {
        for (const auto& value : icsList(property.value))
            if (auto time = timeOf(property, value)) out.push_back(std::move(*time));
    }

    void note(const IcsProperty& property) {
        auto& event = *event_;
        const auto& [line, name, parameters, value] = property;
        if (name == "DTSTART") {
            if (const auto time = timeOf(property, value)) {
                event.day = time->at.day;
                event.minute = time->at.minute;
                event.zone = time->at.minute < 0 ? IcsZones::kHere : time->zone;
            }
        } else if (name == "DTEND") {
            end_ = timeOf(property, value);
        } else if (name == "DURATION") {
            duration_ = durationOf(value);
            if (!duration_) fault("no duration: " + value);
        } else if (name == "RRULE") {
            if (!event.rule.empty()) fault("two rules");
            event.rule = icsCapitals(value);
        } else if (name == "EXDATE") {
            timesOf(property, event.left);
        } else if (name == "RDATE") {
            timesOf(property, event.further);
        } else if (name == "RECURRENCE-ID") {
            if (!property.parameter("RANGE").empty()) fault("it changes the rest of a series");
            event.instead = timeOf(property, value);
        } else if (name == "EXRULE") {
            fault("a rule of exceptions");
        } else if (name == "UID") {
            event.uid = value;
        } else if (name == "SUMMARY") {
            event.summary = icsUnescaped(value);
        } else if (name == "DESCRIPTION") {
            event.description = icsUnescaped(value);
        } else if (name == "LOCATION") {
            event.location = icsUnescaped(value);
        } else if (name == "STATUS") {
            event.cancelled = icsCapitals(value) == "CANCELLED";
        }
    }

    void settle() {
        auto& event = *event_;
        if (event.cancelled) {
            if (!event.instead) fault("it was cancelled");
            return;
        }
        if (event.day == 0) return fault("without a date");
        const IcsMoment begin{event.day, event.minute};
        int64 minutes = duration_.value_or(0);
        if (end_) minutes = zones_.minutes(begin, event.zone, end_->at, end_->zone);
        if (event.minute < 0)
            event.days = static_cast<int32>(std::clamp<int64>(minutes / kDayMinutes, 1, 100000));
        else if (minutes >= kDayMinutes)
            return fault("it takes a day or more");
        else
            event.minutes = static_cast<int32>(std::max<int64>(0, minutes));
        limitInItsZone(event);
    }

    // The last day of a rule by the event's own clocks.
    void limitInItsZone(IcsEvent& event) {
        const std::string name = "UNTIL=";
        const auto at = event.rule.find(name);
        if (at == std::string::npos) return;
        const auto from = at + name.size();
        const std::string value = event.rule.substr(from, event.rule.find(';', from) - from);
        const auto until = icsMoment(value);
        if (!until) return fault(name + value);
        const bool utc = value.ends_with('Z') && event.minute >= 0;
        const IcsMoment last = utc ? zones_.moved(*until, IcsZones::kUtc, event.zone) : *until;
        // Before the event's time of day, that day has none any more.
        const bool over = last.minute >= 0 && last.minute < event.minute;
        event.rule.replace(from, value.size(), icalDate(last.day - (over ? 1 : 0)));
    }

    std::vector<IcsEvent>& events_;
    IcsZones& zones_;
    std::optional<IcsEvent> event_;
    std::optional<IcsTime> end_;
    std::optional<int32> duration_;
    int32 inner_ = 0;
    bool calendar_ = false;
};

std::string timeOf(int32 minute) {
    const auto two = [](int32 n) { return std::to_string(n + 100).substr(1); };
    return "T" + two(minute / 60) + two(minute % 60) + "00";
}

}  // namespace

IcsContent readIcs(InputFile& file) {
    const auto properties = icsProperties(file);
    IcsContent content{{}, IcsZones(properties)};
    EventReader reader(content);
    for (const auto& property : properties) reader.take(property);
    if (!reader.calendar()) throw CliError("no iCalendar file: BEGIN:VCALENDAR is missing");
    return content;
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

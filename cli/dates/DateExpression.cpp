#include "cli/dates/DateExpression.hpp"

#include <algorithm>
#include <string_view>
#include <vector>

#include "cli/dates/Calendar.hpp"
#include "cli/shared/CliError.hpp"
#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::cli {
namespace {

constexpr int32 kReformYear = 1582;

enum class Unit { day, week, month, year, bankDay };

struct UnitWord {
    std::string_view word;
    Unit unit;
};

constexpr UnitWord kUnits[] = {
    {"d", Unit::day},
    {"day", Unit::day},
    {"days", Unit::day},
    {"t", Unit::day},
    {"tag", Unit::day},
    {"tage", Unit::day},
    {"tagen", Unit::day},
    {"w", Unit::week},
    {"week", Unit::week},
    {"weeks", Unit::week},
    {"woche", Unit::week},
    {"wochen", Unit::week},
    {"m", Unit::month},
    {"month", Unit::month},
    {"months", Unit::month},
    {"monat", Unit::month},
    {"monate", Unit::month},
    {"monaten", Unit::month},
    {"y", Unit::year},
    {"year", Unit::year},
    {"years", Unit::year},
    {"j", Unit::year},
    {"jahr", Unit::year},
    {"jahre", Unit::year},
    {"jahren", Unit::year},
    {"b", Unit::bankDay},
    {"bankday", Unit::bankDay},
    {"bankdays", Unit::bankDay},
    {"banktag", Unit::bankDay},
    {"banktage", Unit::bankDay},
    {"banktagen", Unit::bankDay},
};

Text digitsOf(int32 day, int32 month, int32 year) {
    return toText(int64{day} * 1000000 + int64{month} * 10000 + year + 100000000).substr(1);
}

// The day numbers that the reform of the calendar left out have no date.
bool neverWas(int32 day, int32 month, int32 year) {
    const Text digits = digitsOf(day, month, year);
    const int32 number = kCalendar.JulianDay(digits);
    return number == kFirstGregorianDay && kCalendar.KalenderDay(number) != digits;
}

// Whether it is a date that the library and this tool have.
bool isDate(int32 day, int32 month, int32 year) {
    return year >= kFirstYear && year <= kLastYear && month >= 1 && month <= 12 && day >= 1 &&
           day <= kCalendar.DaysInMonth(month, year) && !neverWas(day, month, year);
}

int32 value(std::string_view digits) { return roundToInt32(Val(fromUtf8(digits))); }

class Reader {
 public:
    explicit Reader(std::string_view expression) : whole_(expression), rest_(expression) {}

    DateExpression read() {
        DateExpression found{side(), std::nullopt};
        if (take("..") || takeWord("bis") || takeWord("to")) found.until = side();
        skipBlanks();
        if (!rest_.empty()) fail("'" + std::string(rest_) + "' is too much; between two dates write ..");
        return found;
    }

 private:
    [[noreturn]] void fail(const std::string& what) const {
        throw CliError("cannot read '" + std::string(whole_) + "': " + what + " (see: tsrtm date --help)");
    }

    void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size())); }

    bool take(std::string_view mark) {
        skipBlanks();
        if (!rest_.starts_with(mark)) return false;
        rest_.remove_prefix(mark.size());
        return true;
    }

    std::string_view nextWord() {
        skipBlanks();
        const auto end = std::find_if(rest_.begin(), rest_.end(), [](char c) { return c < 'a' || c > 'z'; });
        return rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
    }
    bool takeWord(std::string_view word) { return nextWord() == word && take(word); }

    // A date and what is added to it.
    Text side() {
        Text date = startDate();
        for (;;) {
            if (take("+"))
                date = step(date, 1);
            else if (take("-"))
                date = step(date, -1);
            else
                return date;
        }
    }

    Text startDate() {
        // "+14d" counts from today.
        const bool signFirst = rest_.starts_with('+') || rest_.starts_with('-');
        if (signFirst || takeWord("today") || takeWord("heute")) {
            const auto now = rtmMain::system().clock.now().parts();
            return digitsOf(now.day, now.month, now.year);
        }
        if (const auto parts = match("4-12-12"); !parts.empty())
            return checked(value(parts[2]), value(parts[1]), value(parts[0]));
        if (const auto parts = match("12.12.24"); !parts.empty())
            return checked(value(parts[0]), value(parts[1]), year(parts[2]));
        if (const auto parts = match("68"); !parts.empty()) return plain(parts[0]);
        if (const auto parts = match("j1234567"); !parts.empty()) return ofDayNumber(value(parts[0]));
        fail(rest_.empty() ? "a date is missing" : "'" + std::string(rest_) + "' begins with no date");
    }

    static bool isDigit(char c) { return c >= '0' && c <= '9'; }

    // Takes what has the form right here and gives its numbers; none where it has not. The digits of the
    // form, one after the other, are the lengths a number may have; all else stands for itself.
    std::vector<std::string> match(std::string_view form) {
        skipBlanks();
        std::vector<std::string> numbers;
        std::string_view at = rest_;
        while (!form.empty()) {
            if (!isDigit(form.front())) {
                if (!at.starts_with(form.front())) return {};
                at.remove_prefix(1);
                form.remove_prefix(1);
                continue;
            }
            const auto lengths = form.substr(0, form.find_first_not_of("0123456789"));
            const auto number = at.substr(0, at.find_first_not_of("0123456789"));
            if (number.size() > 9 || lengths.find(static_cast<char>('0' + number.size())) == lengths.npos)
                return {};
            numbers.emplace_back(number);
            at.remove_prefix(number.size());
            form.remove_prefix(lengths.size());
        }
        rest_ = at;
        return numbers;
    }

    // Two digits as the library widens them: to ten years ahead.
    static int32 year(const std::string& digits) {
        if (digits.size() == 4) return value(digits);
        int32 day = 0, month = 0, widened = 0;
        kCalendar.CtoD(u"0101" + fromUtf8(digits), day, month, widened);
        return widened;
    }

    Text checked(int32 day, int32 month, int32 year) const {
        if (isDate(day, month, year)) return digitsOf(day, month, year);
        const std::string shown =
            std::to_string(day) + "." + std::to_string(month) + "." + std::to_string(year);
        if (year < kFirstYear || year > kLastYear) fail("the years go from 101 to 9999");
        if (year == kReformYear && month == 10 && day > 4 && day < 15)
            fail(shown + " never was: 15.10.1582 came after 4.10.1582");
        fail("there is no " + shown);
    }

    // TTMMJJJJ or JJJJMMTT, whichever is a date; of two, the one since the reform of the calendar.
    Text plain(const std::string& digits) const {
        const auto number = [&](std::size_t at, std::size_t count) {
            return value(digits.substr(at, count));
        };
        if (digits.size() == 6) return checked(number(0, 2), number(2, 2), year(digits.substr(4)));
        const int32 yearLast = number(4, 4), yearFirst = number(0, 4);
        const bool dayFirst = isDate(number(0, 2), number(2, 2), yearLast);
        const bool sorted = isDate(number(6, 2), number(4, 2), yearFirst);
        if (dayFirst && sorted && yearLast < kReformYear && yearFirst < kReformYear)
            fail("'" + digits + "' may be read in two ways; write it with dots or as JJJJ-MM-TT");
        if (sorted && (!dayFirst || yearFirst >= kReformYear))
            return checked(number(6, 2), number(4, 2), yearFirst);
        return checked(number(0, 2), number(2, 2), yearLast);
    }

    Text ofDayNumber(int64 number) const {
        const auto first = kCalendar.JulianDay(digitsOf(1, 1, kFirstYear));
        const auto last = kCalendar.JulianDay(digitsOf(31, 12, kLastYear));
        if (number < first || number > last) fail("the years go from 101 to 9999");
        return kCalendar.KalenderDay(static_cast<int32>(number));
    }

    Unit unit() {
        const auto word = nextWord();
        if (word.empty() || word == "bis" || word == "to") return Unit::day;
        const auto* found =
            std::find_if(std::begin(kUnits), std::end(kUnits), [&](const auto& u) { return u.word == word; });
        if (found == std::end(kUnits)) fail("'" + std::string(word) + "' is no unit");
        take(word);
        return found->unit;
    }

    Text step(const Text& date, int32 sign) {
        const auto count = match("1234567");
        if (count.empty() || rest_.starts_with('.'))
            fail("a number is missing behind the sign; between two dates write ..");
        const int32 n = sign * value(count[0]);
        switch (unit()) {
            case Unit::day:
                return ofDayNumber(int64{kCalendar.JulianDay(date)} + n);
            case Unit::week:
                return ofDayNumber(int64{kCalendar.JulianDay(date)} + int64{7} * n);
            case Unit::month:
                return months(date, n);
            case Unit::year:
                return months(date, 12 * n);
            case Unit::bankDay:
                needYear((int64{kCalendar.BankDay(date)} + n - 1) / 360 + 1);
                return existing(kCalendar.AddDayB(date, n));
        }
        return date;
    }

    Text months(const Text& date, int32 count) const {
        needYear((int64{kCalendar.MonthFloat(date)} + count - 1) / 12 + 1);
        return existing(kCalendar.AddMonth(date, count));
    }

    void needYear(int64 year) const {
        if (year < kFirstYear || year > kLastYear) fail("the years go from 101 to 9999");
    }
    Text existing(const Text& date) const {
        int32 day = 0, month = 0, year = 0;
        kCalendar.CtoD(date, day, month, year);
        return checked(day, month, year);
    }

    std::string_view whole_, rest_;
};

}  // namespace

const char* const kDateSyntax =
    "EXPR is a date, and what is added to it:\n"
    "  31.12.2024  31.12.24  2024-12-31  31122024  20241231   a date; two digits reach ten years ahead\n"
    "  J2460676                                               a day number\n"
    "  today  heute                                           this day; it may be left out in front of a "
    "sign\n"
    "  DATE +30d  DATE -2w  DATE +1m  DATE -1y                days, weeks, months, years; also t and j\n"
    "  DATE +30b                                              bank days: every month has 30, a year 360\n"
    "  DATE .. DATE                                           the days between; also: bis, to\n"
    "A month more than 31.1. is the end of February. Words do, too: today + 2 weeks, heute - 3 monate.";

DayFirst::DayFirst() : form_(rtmMain::state().locale.dateForm), separator_(rtmMain::state().locale.sepDate) {
    rtmMain::state().locale.dateForm = 1;
    rtmMain::state().locale.sepDate = u".";
}

DayFirst::~DayFirst() {
    rtmMain::state().locale.dateForm = form_;
    rtmMain::state().locale.sepDate = separator_;
}

Text DayFirst::local(TextView digits) const {
    const Text day(digits.substr(0, 2)), month(digits.substr(2, 2)), year(digits.substr(4));
    if (form_ == 0) return month + separator_ + day + separator_ + year;
    if (form_ == 2) return year + separator_ + month + separator_ + day;
    return day + separator_ + month + separator_ + year;
}

DateExpression readDates(const std::string& expression) {
    std::string plain = expression;
    for (char& c : plain)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return Reader(plain).read();
}

}  // namespace tsRtm::cli

#include "tsRtm/banking/payments/EndRecords.hpp"

#include <charconv>
#include <optional>

#include "tsRtm/banking/payments/Reports.hpp"
#include "tsRtm/calendar/days/DateForms.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::payments {
namespace {

constexpr std::size_t kCodeLength = 8;
constexpr std::size_t kDateLength = 6;
constexpr int32 kCentury = 2000;
constexpr int32 kMostDaysAhead = 15;
constexpr int32 kLastNumber = 99;
constexpr int32 kWrongType = 13;
constexpr std::size_t kHeadAddress[] = {hName1, hName2, hStrasse, hPLZOrt};

// Day serial of "241231", always of this century; nothing for what is no date.
std::optional<int32> dayOf(BytesView date) {
    if (date.size() != kDateLength || date.find_first_not_of("0123456789") != BytesView::npos)
        return std::nullopt;
    const auto two = [&](std::size_t at) { return (date[at] - '0') * 10 + (date[at + 1] - '0'); };
    const int32 year = kCentury + two(0), month = two(2), day = two(4);
    if (month < 1 || month > 12 || day < 1 || day > dates::daysInMonth(month, year)) return std::nullopt;
    return Date::of(year, month, day).day();
}
int32 needDay(BytesView date) {
    const auto day = dayOf(date);
    if (!day) raiseNumber(kWrongType, u"DtaHeader");
    return *day;
}

void checkNumber(const FieldValues& header, Report& report) {
    const auto& locale = rtmMain::state().locale;
    const Text number = header.text(hNummer);
    if (!IstNumerisch(number, locale.sepDec, locale.sep1000))
        report.add(u"Fehler: Laufende Tagesnummer ist nicht numerisch!");
    else if (Val(number) > kLastNumber || Val(number) < 1)
        report.add(u"Fehler: Laufende Tagesnummer fällt nicht in den erlaubten Bereich!");
}

void checkDates(const FieldValues& header, Report& report) {
    const BytesView date = header[hExecutionDate];
    if (date.size() != kDateLength)
        report.add(u"Fehler: Ausführungsdatum ist keine 6 Zeichen lang!");
    else if (!dayOf(date))
        report.add(u"Fehler: Ausführungsdatum ungültig! Bitte in der Form JJMMTT eingeben");
    // What is no date fails here, and takes all messages before along.
    const int32 ahead = needDay(date) - needDay(header[hErstellungsdatum]);
    if (ahead > kMostDaysAhead) report.add(u"Fehler: Ausführungsdatum liegt zu weit vorne!");
    if (ahead < 0) report.add(u"Fehler: Ausfuehrungsdatum liegt hinter dem heutigen Datum!");
}

// Puts a record behind the file; where that fails, a report in its place.
template <class Append>
void appendOrReport(Bytes& file, TextView head, Append append) {
    const std::size_t size = file.size();
    try {
        append();
    } catch (const Failure& failure) {
        file.resize(size);
        file += toUtf8(failureReport(head, failure));
    }
}

}  // namespace

Bytes yearMonthDay(Date date) {
    const auto parts = date.parts();
    Bytes out;
    for (const int32 part : {parts.year, parts.month, parts.day}) {
        out += static_cast<char>('0' + part / 10 % 10);
        out += static_cast<char>('0' + part % 10);
    }
    return out;
}

void fillAddress(FieldValues& values, std::span<const std::size_t> fields) {
    for (const std::size_t field : fields)
        if (values[field].empty()) values.put(field, "-");
}

HeaderRecord::HeaderRecord(Date today) : values(kHeaderRows) {
    values.put(hErstellungsdatum, yearMonthDay(today));
    values.put(hExecutionDate, yearMonthDay(today));
}

Text HeaderRecord::errors() const {
    return checked([this](Report& report) {
        if (values[hBLZ].size() != kCodeLength) report.add(u"Fehler: BLZ muss 8-stellig sein.");
        if (!IstZiffern(values.text(hKontonummer)))
            report.add(u"Fehler: Kontonummer darf nur Zahlen enthalten");
        checkNumber(values, report);
        checkDates(values, report);
    });
}

void HeaderRecord::append(Bytes& file) {
    appendOrReport(file, u"FEHLER: Generierung von DtaHeader ist fehlgeschlagen!", [&] {
        fillAddress(values, kHeadAddress);
        values.append(file);
    });
}

int32 FooterRecord::number(std::size_t field) const noexcept {
    const BytesView text = values[field];
    int32 value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

void FooterRecord::number(std::size_t field, int32 value) { values.put(field, std::to_string(value)); }

Text FooterRecord::errors() const {
    return checked([this](Report& report) {
        if (number(fTotalBetrag) <= 0) report.add(u"Fehler: Gesamtbetrag ist kleiner/gleich Null!");
        if (number(fTotalTransactions) < 1)
            report.add(u"Fehler: Gesamtanzahl der Transaktionen ist kleiner/gleich Null!");
    });
}

void FooterRecord::append(Bytes& file) const {
    appendOrReport(file, u"FEHLER: Generierung von DtaFooter fehlgeschlagen!", [&] { values.append(file); });
}

}  // namespace tsRtm::payments

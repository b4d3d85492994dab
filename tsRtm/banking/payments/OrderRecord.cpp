#include "tsRtm/banking/payments/OrderRecord.hpp"

#include <charconv>
#include <cmath>
#include <limits>

#include "tsRtm/banking/payments/EndRecords.hpp"
#include "tsRtm/banking/payments/Reports.hpp"

namespace tsRtm::payments {
namespace {

constexpr float64 kCent = 0.01;
constexpr float64 kCents = 100;
constexpr std::size_t kOrderAddress[] = {oName1, oName2, oStrasse, oPLZOrt};

int32 numberOf(BytesView text) noexcept {
    int32 value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

}  // namespace

void OrderRecord::bic(TextView value) {
    const Bytes text = normalised(value);
    values.put(oBIC, text);
    values.put(oLaenderCode, BytesView(text).substr(std::min<std::size_t>(4, text.size()), 2));
}

Text OrderRecord::iban() const {
    const BytesView stored = values[oIBAN];
    return textOf(stored.substr(std::min<std::size_t>(1, stored.size())));
}

void OrderRecord::iban(TextView value) {
    Bytes text = "/";
    normalise(value, text);
    values.put(oIBAN, text);
}

float64 OrderRecord::amount() const noexcept {
    return numberOf(values[oBetragVor]) + numberOf(values[oBetragNach]) * kCent;
}

void OrderRecord::amount(float64 value) {
    using Limits = std::numeric_limits<int32>;
    const float64 whole = std::trunc(value);
    int32 euros = 0, cents = 0;
    if (std::isnan(value) || whole > Limits::max())
        euros = Limits::max();
    else if (whole < Limits::min())
        euros = Limits::min();
    else {
        euros = static_cast<int32>(whole);
        cents = roundToInt32((value - whole) * kCents);
    }
    values.put(oBetragVor, std::to_string(euros));
    values.put(oBetragNach, std::to_string(cents));
}

void OrderRecord::takeFrom(const HeaderRecord& header) {
    values.put(oBLZB, header.values[hBLZ]);
    values.put(oKontonummerB, header.values[hKontonummer]);
    values.put(oExecutionDate, header.values[hExecutionDate]);
}

void OrderRecord::append(Bytes& file) {
    const std::size_t size = file.size();
    try {
        fillAddress(values, kOrderAddress);
        values.append(file);
    } catch (const Failure& failure) {
        file.resize(size);
        file += toUtf8(failureReport(u"FEHLER: Generierung von DtaAuftrag fehlgeschlagen.", failure));
    }
}

}  // namespace tsRtm::payments

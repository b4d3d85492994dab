#include "cli/dta/PaymentRecords.hpp"

#include "cli/shared/CliError.hpp"
#include "cli/shared/TextFiles.hpp"

namespace tsRtm::cli {
namespace {

using namespace payments;  // the layout

constexpr BytesView kHeaderMark = "0256Q", kOrderMark = "0768T", kFooterMark = "0256Z";
constexpr BytesView kLetters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ .,-/+";

[[noreturn]] void refuse(const std::string& name, const std::string& why) {
    throw CliError("'" + name + "' is no DTAZV file: " + why);
}

std::string record(InputFile& file, const std::string& name, uint64 offset, std::size_t size,
                   BytesView mark) {
    std::string bytes(size, '\0');
    const std::string at = " at byte " + std::to_string(offset);
    if (file.read(offset, bytes) != size) refuse(name, "it ends in the middle of the record" + at);
    if (!bytes.starts_with(mark)) refuse(name, "no record '" + std::string(mark) + "'" + at);
    if (const auto bad = bytes.find_first_not_of(kLetters); bad != std::string::npos)
        refuse(name, "a character that payments do not have at byte " + std::to_string(offset + bad));
    return bytes;
}

}  // namespace

std::string fieldOf(BytesView record, const FieldRow& row) {
    std::string text(record.substr(row.offset, static_cast<std::size_t>(row.form.width)));
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

PaymentRecords readPayments(const std::string& name) {
    InputFile file(name);
    const uint64 size = file.size();
    if (size < 2 * kEndRecord || (size - 2 * kEndRecord) % kOrderRecord != 0)
        refuse(name, std::to_string(size) + " bytes are not 512 and 768 for each transfer");
    PaymentRecords records;
    records.header = record(file, name, 0, kEndRecord, kHeaderMark);
    uint64 at = kEndRecord;
    for (; at + kEndRecord < size; at += kOrderRecord)
        records.orders.push_back(record(file, name, at, kOrderRecord, kOrderMark));
    records.footer = record(file, name, at, kEndRecord, kFooterMark);
    return records;
}

int64 wholeEuros(BytesView order) {
    const std::string digits = fieldOf(order, kOrderRows[oBetragVor]);
    return static_cast<int64>(
        Val(fromUtf8(digits.substr(std::min(digits.find_first_not_of('0'), digits.size())))));
}

std::string amountOf(BytesView order) {
    return std::to_string(wholeEuros(order)) + "." + fieldOf(order, kOrderRows[oBetragNach]);
}

std::string dateOf(BytesView yearMonthDay) {
    const std::string date(yearMonthDay);
    return date.substr(4, 2) + "." + date.substr(2, 2) + ".20" + date.substr(0, 2);
}

}  // namespace tsRtm::cli

#pragma once
// The first and the last record of a payment file.
#include "tsRtm/banking/payments/FieldValues.hpp"
#include "tsRtm/types/Date.hpp"

namespace tsRtm::payments {

// "31.12.24" as it stands in a record, "241231".
Bytes yearMonthDay(Date date);

// Who pays, and when.
class HeaderRecord {
 public:
    // Made today, to be carried out today.
    explicit HeaderRecord(Date today);

    FieldValues values;

    // What is wrong with it, a line each; empty where it is right.
    Text errors() const;
    // The record; empty lines of the address become "-" and stay so.
    void append(Bytes& file);
};

// The totals.
class FooterRecord {
 public:
    FooterRecord() : values(kFooterRows) {}

    FieldValues values;

    int32 number(std::size_t field) const noexcept;
    void number(std::size_t field, int32 value);
    Text errors() const;
    void append(Bytes& file) const;
};

// The four lines of an address, of which none is empty in a file.
void fillAddress(FieldValues& values, std::span<const std::size_t> fields);

}  // namespace tsRtm::payments

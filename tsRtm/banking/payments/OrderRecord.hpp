#pragma once
// One transfer of a payment file, and the rules of the three kinds of payment.
#include "tsRtm/banking/payments/FieldValues.hpp"

namespace tsRtm::payments {

class HeaderRecord;

class OrderRecord {
 public:
    // An EU standard transfer of nothing to nobody.
    OrderRecord() : values(kOrderRows) {}

    FieldValues values;

    // With the country in the characters 5 and 6.
    void bic(TextView value);
    // In the record an IBAN has a "/" in front.
    Text iban() const;
    void iban(TextView value);
    // Whole euros and cents, a half cent to the even one; what is no number, and what is beyond int32,
    // becomes its end.
    float64 amount() const noexcept;
    void amount(float64 value);
    void takeFrom(const HeaderRecord& header);

    // What is wrong with it, a line each. A warning is about a field that must be empty: it is empty then, so
    // that a second call is silent.
    Text errors();
    // The record; empty lines of the address become "-" and stay so.
    void append(Bytes& file);
};

}  // namespace tsRtm::payments

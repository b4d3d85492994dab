#include "tsRtm/banking/DtAField.hpp"

#include "tsRtm/banking/payments/FixedField.hpp"
#include "tsRtm/banking/payments/Reports.hpp"

namespace tsRtm {

Text DtAField::FieldValue() const { return payments::textOf(value_); }
void DtAField::FieldValue(TextView value) { value_ = payments::normalised(value); }

Text DtAField::toFileString() const {
    try {
        Bytes out;
        payments::appendField(value_, {length_, completion_ != 0, leftAligned_}, out);
        return payments::textOf(out);
    } catch (const Failure& failure) {
        return payments::failureReport(u"FEHLER: DtaField korrupt.", failure);
    }
}

}  // namespace tsRtm

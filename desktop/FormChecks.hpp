#pragma once
// The fields of a form, checked while the user types.
//
//     desktop::FormChecks checks;  // beside a desktop::Desktop
//     checks.add(*iban, IBAN, voRequired | voError);
//     checks.add(*due, Datum, voError, {}, {}, u"/Min:D+0");
//     ...
//     if (checks.status() < validError) save(checks.value(*iban));
#include <memory>
#include <vector>

#include "tsRtm/validation/clsValidator.hpp"

class QWidget;

namespace tsRtm::desktop {

// A small picture beside a field tells its grade; its tool tip says what is wrong, a click on it explains.
// The layout of the field's parent gets room for it at the edge. Fields are QLineEdit, QComboBox and QLabel,
// of which a label is only checked by check(). A field that goes takes its validator along, and the other way
// round each may go first, also within an event of the other.
//
// Dates and IBANs are shown in full when the user leaves their field: "3112" as "31.12.2026", an IBAN in
// capitals and groups of four. The checker gets them without the separators.
class FormChecks {
 public:
    FormChecks();
    ~FormChecks();
    FormChecks(const FormChecks&) = delete;
    FormChecks& operator=(const FormChecks&) = delete;

    // Checks the field at once and at each change. The arguments are those of clsValidationHelper::Add; a
    // validator that the field had before goes. Nothing for another widget and for a type that is none.
    std::shared_ptr<clsValidator> add(QWidget& field, eValidatorType type, int32 options = 0,
                                      TextView errorMsg = {}, TextView description = {}, TextView params = {},
                                      const std::shared_ptr<iValidChecker>& checker = nullptr);
    void remove(QWidget& field);
    void clear();

    // The worst grade of all fields, or that of one; validOK where there is none.
    eValidResult status() const;
    eValidResult status(const QWidget& field) const;
    // As the checker gets it; empty for a field that is not checked.
    Text value(const QWidget& field) const;
    void check(const QWidget& field);

 private:
    struct Entry;
    class Watch;
    // By its address alone.
    std::shared_ptr<Entry> find(const QWidget* field) const;
    void drop(const QWidget* field);

    std::vector<std::shared_ptr<Entry>> entries_;
    std::unique_ptr<Watch> watch_;
};

}  // namespace tsRtm::desktop

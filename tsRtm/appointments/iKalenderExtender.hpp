#pragma once
// What an application adds to a calendar: fields of its own, rules of its own, and what its appointments
// know.
#include <memory>

#include "tsRtm/appointments/iKalenderExtension.hpp"
#include "tsRtm/fields/TSIO.hpp"

namespace tsRtm {

class clsTermin;

class iKalenderExtender {
 public:
    virtual ~iKalenderExtender() = default;
    // A store is about to be made: its fields, how many records it may hold, and its indexes as DB_Create
    // takes them, all of which may be changed.
    virtual void Create(TSIOArray& IO, int32& MaxRecords, Text& Indizes) = 0;
    // The extension of an appointment, or nothing.
    virtual std::shared_ptr<iKalenderExtension> EXTENSION(clsTermin& Termin) = 0;
    // Whether a record that is due belongs to the query, too.
    virtual bool RecordChecker(clsTSRecord& R, TextView Extent) = 0;
    // Lets the user edit an appointment; record number 0 is a new one.
    virtual bool Edit(clsTermin& Termin) = 0;
    // The day that the calendar shows.
    virtual void KalenderDatum(TextView Datum) = 0;
};

}  // namespace tsRtm

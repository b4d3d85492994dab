#pragma once
// The notices of an open database.
#include <memory>
#include <vector>

#include "tsRtm/types/Event.hpp"
#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

class clsTSRecord;
class clsTSRecordSet;

struct DatabaseEvents {
    // A long work goes on: phase, done so far, of how many.
    Event<int32, int32, int32> UpdateProgress;
    // The loop over a range: before the first record, each record, behind the last.
    Event<Variant&> ActionStart;
    Event<int32, bool&, Variant&> Action;
    Event<Variant&> ActionEnd;
    // Row Satz (from 1) of the chain of that field, by KetteAction: given to the listener, or, with
    // Schreiben, asked from him. No lock is held.
    Event<int32, int32, std::vector<Text>&, bool> KetteIO;
    // Asks for a record object of this number that a listener holds; the listener puts it in.
    Event<int32, std::shared_ptr<clsTSRecord>&> HalloSatz;
    // Asks for a record set on an index that a listener holds; -3 instead of a field: the listener lets go of
    // all it has, since records get other numbers.
    Event<int32, std::shared_ptr<clsTSRecordSet>&> HalloIndex;
    // Ask for objects that a listener holds, the same way: the set of all records, the record object of a row
    // at this place, the set of the rows that a record has in this field.
    Event<std::shared_ptr<clsTSRecordSet>&> HalloRecordSet;
    Event<const std::shared_ptr<clsTSRecordSet>&, int32, std::shared_ptr<clsTSRecord>&> HalloRecord;
    Event<const std::shared_ptr<clsTSRecord>&, int32, std::shared_ptr<clsTSRecordSet>&> HalloRS;
    // An index changed: its primary field.
    Event<int32> IndexChange;
    // A record was written, locked, unlocked or deleted.
    Event<int32> RecordChange;
    // Records have other numbers, or are gone: Pack and Zap.
    Event<> Packed;
};

}  // namespace tsRtm

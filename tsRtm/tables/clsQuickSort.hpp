#pragma once
// Sorts and searches anything that an iSortHelper compares and exchanges.
#include "tsRtm/tables/iSortHelper.hpp"

namespace tsRtm {

// A global object without state: anyone may create one. What the helper raises goes through; both operations
// raise 91 without a helper. The order of the helper's calls is part of the contract, since a helper keeps
// the key of the pivot from one call to the next.
class clsQuickSort {
 public:
    // Sorts the elements Von to Bis; not stable. The helper is not called for fewer than two. Ends and stays
    // within Von to Bis whatever the helper answers.
    void QuickSort(int32 Von, int32 Bis, iSortHelper* Sort, Variant& Zusatz) const;
    void QuickSort(int32 Von, int32 Bis, iSortHelper* Sort) const;

    // Whether one of the sorted elements Von to Bis has the key, and in iPos which one. Where none has it,
    // iPos becomes the place to insert it, but only if the last element asked was below the key; else it
    // stays as it was. One element is asked even where Von is above Bis.
    bool BSearch(const Variant& vKey, int32 Von, int32 Bis, iSortHelper* Sort, int32& iPos,
                 Variant& Zusatz) const;
    bool BSearch(const Variant& vKey, int32 Von, int32 Bis, iSortHelper* Sort, int32& iPos) const;
};

}  // namespace tsRtm

#pragma once
// What a caller of clsQuickSort plugs in: comparison and exchange of its own elements, by position.
#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

enum eCompareResults : int32 { Kleiner = -1, Gleich = 0, Groesser = 1 };

// What Compare is asked for.
enum eCompareMethod : int32 {
    NewPivot = -1,  // with the element at Pivot, which is another one than at the last call
    Normal = 0,     // with the same one as at the last call
    Search = 1,     // with Suchbegriff; Pivot is then 0
};

// Implemented by the owner of the elements. Zusatz is the caller's own and comes through unchanged.
class iSortHelper {
 public:
    virtual ~iSortHelper() = default;
    // The key of the coming search.
    virtual void Suchbegriff(const Variant& Wert) = 0;
    // The element at Vergleich against the one at Pivot.
    virtual eCompareResults Compare(int32 Vergleich, int32 Pivot, eCompareMethod PivotNeu,
                                    Variant& Zusatz) = 0;
    virtual void Swap(int32 v1, int32 v2, Variant& Zusatz) = 0;
};

}  // namespace tsRtm

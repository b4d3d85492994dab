#include "tsRtm/tables/clsQuickSort.hpp"

#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

iSortHelper& needed(iSortHelper* helper) {
    if (!helper) raise(91, u"clsQuickSort", u"Kein iSortHelper-Objekt angegeben");
    return *helper;
}

// Positions are counted in 64 bits: one behind the last may lie outside of int32.
class Sorter {
 public:
    Sorter(iSortHelper& helper, Variant& addition) : helper_(helper), addition_(addition) {}

    void sort(int64 from, int64 to) {
        while (to > from) {
            if (from + 1 == to) {
                if (compare(from, to, NewPivot) == Groesser) swap(from, to);
                return;
            }
            const auto [lo, hi] = part(from, to);
            // The recursion takes the smaller part, so that it is never deeper than the logarithm.
            if (hi - from <= to - lo) {
                if (hi > from) sort(from, hi);
                from = lo;
            } else {
                if (to > lo) sort(lo, to);
                to = hi;
            }
        }
    }

 private:
    struct Parts {
        int64 lo, hi;  // from..hi and lo..to are what is left to sort
    };

    Parts part(const int64 from, const int64 to) {
        int64 lo = from;
        int64 hi = to;
        int64 pivot = (from + to) / 2;
        auto mode = NewPivot;
        while (lo <= hi) {
            for (; lo < to && lo != pivot; ++lo) {
                const auto answer = compare(lo, pivot, mode);
                mode = Normal;
                if (answer != Kleiner) break;
            }
            for (; hi > from && hi != pivot; --hi) {
                const auto answer = compare(hi, pivot, mode);
                mode = Normal;
                if (answer != Groesser) break;
            }
            if (lo > hi) break;
            if (lo < hi) {
                swap(lo, hi);
                // The pivot goes along when it is one of the two.
                if (lo == pivot || hi == pivot) {
                    pivot = lo == pivot ? hi : lo;
                    mode = NewPivot;
                }
            }
            ++lo;
            --hi;
        }
        return {lo, hi};
    }

    eCompareResults compare(int64 element, int64 pivot, eCompareMethod mode) {
        return helper_.Compare(static_cast<int32>(element), static_cast<int32>(pivot), mode, addition_);
    }
    void swap(int64 a, int64 b) { helper_.Swap(static_cast<int32>(a), static_cast<int32>(b), addition_); }

    iSortHelper& helper_;
    Variant& addition_;
};

}  // namespace

void clsQuickSort::QuickSort(int32 Von, int32 Bis, iSortHelper* Sort, Variant& Zusatz) const {
    Sorter(needed(Sort), Zusatz).sort(Von, Bis);
}

void clsQuickSort::QuickSort(int32 Von, int32 Bis, iSortHelper* Sort) const {
    Variant none;
    QuickSort(Von, Bis, Sort, none);
}

bool clsQuickSort::BSearch(const Variant& vKey, int32 Von, int32 Bis, iSortHelper* Sort, int32& iPos,
                           Variant& Zusatz) const {
    iSortHelper& helper = needed(Sort);
    helper.Suchbegriff(vKey);
    int64 from = Von;
    int64 to = Bis;
    for (;;) {
        const int64 middle = from + (to - from) / 2;
        const auto answer = helper.Compare(static_cast<int32>(middle), 0, Search, Zusatz);
        if (answer == Gleich) {
            iPos = static_cast<int32>(middle);
            return true;
        }
        if (answer == Kleiner)
            from = middle + 1;
        else
            to = middle - 1;
        if (from <= to) continue;
        // After Groesser iPos stays as the caller passed it: callers rely on it.
        if (answer == Kleiner) iPos = static_cast<int32>(middle + 1);
        return false;
    }
}

bool clsQuickSort::BSearch(const Variant& vKey, int32 Von, int32 Bis, iSortHelper* Sort, int32& iPos) const {
    Variant none;
    return BSearch(vKey, Von, Bis, Sort, iPos, none);
}

}  // namespace tsRtm

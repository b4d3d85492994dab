#pragma once
// The objects that an application wants started.
#include <vector>

#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

// A list with positions from 1. Nothing fails: a bad position reads as 0 or empty.
class clsStartObjects {
 public:
    void Clear() noexcept { entries_.clear(); }
    // Appends an entry, or puts it before all others; gives its position. An object in Args is kept by
    // reference; Waiting: started in isolation.
    int32 Add(int32 ProgID, Variant Args = {}, bool Waiting = false, bool First = false);
    // Takes an entry out where there is one. False in every case, also where it did.
    bool Remove(int32 Index);

    int32 Count() const noexcept { return static_cast<int32>(entries_.size()); }
    int32 ProgID(int32 Index) const;
    int32 Waiting(int32 Index) const;  // -1 or 0
    Variant Args(int32 Index) const;

 private:
    struct Entry {
        int32 progID;
        bool waiting;
        Variant args;
    };
    const Entry* at(int32 Index) const noexcept;

    std::vector<Entry> entries_;
};

}  // namespace tsRtm

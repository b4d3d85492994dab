#pragma once
// Bytes of a file brought from what a cut of the power left to what they were to be.
#include <map>
#include <vector>

#include "tsRtm/database/files/BlockFile.hpp"

namespace tsRtm {

// A medium writes sectors whole; after a cut each shows one moment of the past, and no two need show the
// same.
inline constexpr std::size_t kSectorBytes = 512;

// Noted writes in their order. A sector whose noted bytes show none of its moments was written by somebody
// who notes nothing: it stays, with all writes that reach into it, and what these touch.
class SectorMending {
 public:
    // Views that live as long as this.
    struct Write {
        uint64 place = 0;
        BytesView now;
        BytesView before;    // as many, or none: zeros
        bool isNew = false;  // there may be zeros, or no bytes, before those before
    };
    void add(const Write& write) { writes_.push_back(write); }
    // Sets the bytes to those of the last moment; gives the number of sectors that showed another one. Raises
    // what the file does.
    int32 mend(BlockFile& file);

 private:
    struct Sector {
        Bytes there;               // on the medium
        std::size_t onMedium = 0;  // bytes of it, fewer at the end of the file
        Bytes moment;              // noted bytes as they follow one another
        std::vector<bool> noted;   // which bytes they are
        bool shows = false;        // one of the moments
        bool shown() const;
    };
    template <class Visit>
    void eachPart(const Write& write, Visit visit);
    void spread();

    std::vector<Write> writes_;
    std::map<uint64, Sector> sectors_;
};

// A sum that tells bytes from others that came by an accident.
uint64 byteSum(BytesView bytes, uint64 start = 0x9E3779B97F4A7C15) noexcept;

}  // namespace tsRtm

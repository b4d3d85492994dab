#include "tsRtm/database/files/SectorMending.hpp"

#include <algorithm>
#include <cstring>

namespace tsRtm {

uint64 byteSum(BytesView bytes, uint64 start) noexcept {
    uint64 sum = start;
    while (!bytes.empty()) {
        uint64 word = 0;
        const std::size_t count = std::min(bytes.size(), sizeof word);
        std::memcpy(&word, bytes.data(), count);
        sum = (sum ^ word) * 0xC2B2AE3D27D4EB4F;
        sum ^= sum >> 31;
        bytes.remove_prefix(count);
    }
    return sum;
}

bool SectorMending::Sector::shown() const {
    for (std::size_t i = 0; i < noted.size(); ++i)
        if (noted[i] && i < onMedium && there[i] != moment[i]) return false;
    return true;
}

// The sectors of a write: each with the place of its first byte in it, and the part of the write from there.
template <class Visit>
void SectorMending::eachPart(const Write& write, Visit visit) {
    for (std::size_t done = 0; done < write.now.size();) {
        const uint64 place = write.place + done;
        const std::size_t count = std::min(kSectorBytes - place % kSectorBytes, write.now.size() - done);
        visit(sectors_[place / kSectorBytes], place, done, count);
        done += count;
    }
}

// What a write left half done is not mended by halves.
void SectorMending::spread() {
    for (bool more = true; std::exchange(more, false);)
        for (const auto& write : writes_) {
            bool all = true, any = false;
            eachPart(write, [&](Sector& sector, auto...) {
                all = all && sector.shows;
                any = any || sector.shows;
            });
            if (all || !any) continue;
            more = true;
            eachPart(write, [](Sector& sector, auto...) { sector.shows = false; });
        }
}

int32 SectorMending::mend(BlockFile& file) {
    for (const auto& write : writes_)
        eachPart(write, [&](Sector& sector, uint64 place, std::size_t from, std::size_t count) {
            const std::size_t in = place % kSectorBytes;
            if (sector.noted.empty()) {
                sector.noted.assign(kSectorBytes, false);
                sector.moment.assign(kSectorBytes, '\0');
            }
            for (std::size_t i = 0; i < count; ++i) {
                if (sector.noted[in + i]) continue;
                sector.noted[in + i] = true;
                if (!write.isNew && !write.before.empty()) sector.moment[in + i] = write.before[from + i];
            }
        });
    for (auto& [number, sector] : sectors_) {
        sector.there.assign(kSectorBytes, '\0');
        // The length may be older than what is in the sectors: behind it anything was.
        sector.onMedium = file.read(number * kSectorBytes, sector.there);
        sector.shows = sector.shown();
    }
    const auto passes = [&](const Write& write, BytesView bytes) {
        eachPart(write, [&](Sector& sector, uint64 place, std::size_t from, std::size_t count) {
            sector.moment.replace(place % kSectorBytes, count, bytes.substr(from, count));
            sector.shows = sector.shows || sector.shown();
        });
    };
    for (const auto& write : writes_) {
        if (write.isNew && !write.before.empty()) passes(write, write.before);
        passes(write, write.now);
    }
    spread();
    const uint64 end = file.refreshSize();
    const auto mended = std::count_if(sectors_.begin(), sectors_.end(), [](const auto& entry) {
        return entry.second.shows && !entry.second.shown();
    });
    // Write by write, so that no byte comes into the file that nobody noted.
    for (const auto& write : writes_)
        eachPart(write, [&](Sector& sector, uint64 place, std::size_t, std::size_t count) {
            if (sector.shows && (!sector.shown() || place + count > end))
                file.write(place, BytesView(sector.moment).substr(place % kSectorBytes, count));
        });
    return static_cast<int32>(mended);
}

}  // namespace tsRtm

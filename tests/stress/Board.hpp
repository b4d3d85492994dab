#pragma once
// What each user of one database was told, for all of them to see, and what was found wrong.
#include <sys/mman.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "tsRtm/types/Numbers.hpp"

namespace tsRtm::test {

inline constexpr int32 kUsers = 8;
inline constexpr int32 kMost = 2000;  // records

// What was told to be stored, and what was tried since without an answer: either may be there.
struct Promise {
    std::atomic<int32> stored = 0, tried = 0;
    bool kept() const { return stored == tried; }
    bool admits(int32 value) const { return value == stored || value == tried; }
    void settle(int32 value) { stored = tried = value; }
};

// In memory that all processes share.
struct Board {
    std::atomic<bool> stop;
    std::atomic<int32> faults, version, records;
    std::atomic<int64> works[kUsers], refusals, reorganised, longest;  // microseconds
    std::atomic<bool> dying[kUsers], open[kUsers];
    std::atomic<int32> alone;  // user + 1, for whom the others close
    struct Record {
        Promise version;
        Promise own[kUsers], rows[kUsers];
        std::atomic<int32> holder = 0;  // user + 1

        // Nobody is at its version, and nobody died at it.
        bool quiet() const { return holder == 0 && version.kept(); }
        void take(const Record& other) {
            version.settle(other.version.stored);
            for (int32 user = 0; user < kUsers; ++user) {
                own[user].settle(other.own[user].stored);
                rows[user].settle(other.rows[user].stored);
            }
        }
        void clear() {
            take(Record());
            holder = 0;
        }
    };
    Record at[kMost + 1];

    static Board* make() {
        void* const room =
            ::mmap(nullptr, sizeof(Board), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (room == MAP_FAILED) std::exit(2);
        return static_cast<Board*>(room);
    }
    void begin() {
        stop = false;
        records = 0;
        alone = 0;
        refusals = reorganised = longest = 0;
        for (auto& count : works) count = 0;
        for (auto& record : at) record.clear();
    }
    int64 worked() const {
        int64 all = 0;
        for (const auto& count : works) all += count;
        return all;
    }
    // Who died holds nothing any more.
    void bury(int32 user) {
        for (auto& record : at)
            if (record.holder == user + 1) record.holder = 0;
        if (alone == user + 1) alone = 0;
        open[user] = false;
    }
};
inline Board* const board = Board::make();

inline void fault(const char* what, int32 record, int32 have = 0, int32 told = 0) {
    if (++board->faults <= 20) std::printf("FAULT %s: record %d has %d, told %d\n", what, record, have, told);
    std::fflush(stdout);
}

}  // namespace tsRtm::test

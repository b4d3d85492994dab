#pragma once
// What the users of a shared database told each other to be stored: the model that every answer is held
// against.
#include <sys/mman.h>

#include <atomic>
#include <cstring>
#include <new>
#include <stdexcept>

#include "tests/database/DatabaseFixture.hpp"

namespace tsRtm::test {

inline constexpr int32 kUsers = 3;     // who write; a further one only reads
inline constexpr int32 kRows = 20000;  // at most, of each user
inline constexpr int32 kFixed = 40;    // there from the beginning, and never changed

// A row that one user owns: how often it was written, whether it carries the mark of a deleted record, and
// whether its owner is at it.
struct RowState {
    uint32 versions = 0;  // 0: not there
    bool deleted = false;
    bool busy = false;
    bool operator==(const RowState&) const = default;

    static RowState of(uint32 word) { return {word >> 2, (word & 2) != 0, (word & 1) != 0}; }
    uint32 word() const { return versions << 2 | (deleted ? 2u : 0u) | (busy ? 1u : 0u); }
};

// The address database with a memo NOTIZ and a chain POS (TEXT 12) in each record.
enum OfficeField : int32 { fNOTIZ = 5, fPOS = 6 };
std::shared_ptr<clsTSDB> makeOffice(clsRtm& rtm, const std::string& folder);

// In memory that all processes of the test share.
struct Board {
    std::atomic<uint32> rows[kUsers][kRows];
    std::atomic<uint32> notes[kUsers][kRows];  // how often a row's memo and chain were written
    std::atomic<bool> stop;
    std::atomic<int64> adds, changes, marks, noted, searches, looks, wrong,
        refused;              // looks: of who only reads
    std::atomic<int64> said;  // messages shown to a user; the last one is below
    char message[400];

    static Board& make() {
        void* const room =
            ::mmap(nullptr, sizeof(Board), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (room == MAP_FAILED) throw std::runtime_error("no memory to share");
        return *new (room) Board();
    }
    RowState state(int32 user, int32 row) const { return RowState::of(rows[user][row]); }
    void state(int32 user, int32 row, RowState now) { rows[user][row] = now.word(); }
    RowState note(int32 user, int32 row) const { return RowState::of(notes[user][row]); }
    void note(int32 user, int32 row, RowState now) { notes[user][row] = now.word(); }
    int64 operations() const { return adds + changes + marks + noted + searches + looks; }
    void say(const Text& text) {
        const auto bytes = toUtf8(text);
        std::memcpy(message, bytes.data(), std::min(bytes.size(), sizeof message - 1));
        ++said;
    }
};

// What a row holds when it was written so often.
inline Address contentOf(int32 user, int32 row, uint32 version) {
    return {u"u" + toText(user) + u"r" + toText(1000 + row) + u"v" + toText(int64{version}),
            u"o" + toText((int64{version} * 31 + row) % 97), toText(int64{version}) + u".00", u"01022003"};
}
inline Text noteOf(int32 user, int32 row, uint32 version) {
    return contentOf(user, row, version).name + Text(20 + version * 37 % 400, u'n');
}
// A chain grows by a row with each version of the note, and starts anew with each eighth.
inline TextTable rowsOf(int32 user, int32 row, uint32 version) {
    TextTable rows;
    for (uint32 v = version - version % 8 + 1; v <= version; ++v)
        rows.push_back({contentOf(user, row, v).name});
    return rows;
}
inline Address fixedRow(int32 n) { return {u"fest" + toText(100 + n), u"Bonn", u"1.00", u"01022003"}; }
inline Text keyOf(const Address& address) { return address.name + u" " + address.ort; }

}  // namespace tsRtm::test

#pragma once
// What the sweeps share that let a user of a database die at every change he makes.
#include <functional>
#include <map>

#include "tests/database/DatabaseFixture.hpp"
#include "tests/support/CrashingFiles.hpp"

namespace tsRtm::test {

inline constexpr TextView kFolder = u"/daten/Adressen";
inline constexpr int32 kRecords = 95;  // more than a root node holds
inline constexpr int32 kChanged = 17;  // the record that is changed
inline constexpr int32 kNo = 7;

// What somebody was told to be stored, by record number.
using Told = std::map<int32, Address>;

// Addresses 1 to 996 differ in their names.
inline Address numbered(int32 n) {
    return {u"Name" + toText(1000 + (n * 7919) % 997), u"Ort" + toText(n % 10), toText(n) + u".25",
            u"01022003"};
}

inline Text keyOf(const Address& address) { return address.name + u" " + address.ort; }

// The library on one file system, as a process of its own has it. Nobody sits in front of it.
struct Process {
    explicit Process(platform::FileSystem& files) : library(ground, files) { ground.ui.defaultAnswer = kNo; }

    TestGround ground;
    StartedLibrary library;
    clsRtm rtm;
};

// A database of kRecords.
inline MemoryFiles::Snapshot preparedDisk(int32 max) {
    MemoryFiles disk;
    Process process(disk);
    const auto db = makeAddresses(process.rtm, Text(kFolder), max);
    for (int32 n = 1; n <= kRecords; ++n) {
        EXPECT_EQ(addAddress(*db, numbered(n)), n);
        EXPECT_TRUE(db->Entsperren(n));
    }
    db->Schliesse();
    return disk.snapshot();
}

// What a user does; what it stored is told when the answer has come.
using Tell = std::function<void(int32 number, const Address& address)>;
enum class Work { append, add, updateKey };

inline const Address kNewAddress{u"Neu", u"Ort9", u"9.75", u"24121998"};
// kChanged with other keys in two of three indexes.
inline Address rewritten() {
    Address out = numbered(kChanged);
    out.name = u"Zuletzt";
    out.tag = u"31121999";
    return out;
}

inline void add(clsTSDB& db, const Address& address, const Tell& tell) {
    const int32 number = addAddress(db, address);
    if (number > 0) tell(number, address);
    if (number > 0) db.Entsperren(number);
}

inline void append(clsTSDB& db, const Address& address, const Tell& tell) {
    db.AktSatzNr(1);
    setFields(db, address);
    if (const auto record = db.Append()) tell(record->Satznummer(), address);
}

inline void update(clsTSDB& db, int32 number, const Address& address, const Tell& tell) {
    if (!db.Sperren(number, -1)) return;
    db.AktSatzNr(number);
    setFields(db, address);
    db.Update();
    if (db.Error() == 0) tell(number, address);
    db.Entsperren(number);
}

inline void perform(Work work, clsTSDB& db, const Tell& tell) {
    switch (work) {
        case Work::append:
            return append(db, kNewAddress, tell);
        case Work::add:
            return add(db, kNewAddress, tell);
        case Work::updateKey:
            return update(db, kChanged, rewritten(), tell);
    }
}

}  // namespace tsRtm::test

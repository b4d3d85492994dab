#pragma once
// The address database on a disk in memory, for tests that look into its files.
#include "tests/database/DatabaseFixture.hpp"
#include "tests/support/Raised.hpp"

namespace tsRtm::test {

class MemoryDatabase : public testing::Test {
 protected:
    static constexpr TextView kFolder = u"/daten/Adressen";

    MemoryFiles disk;
    TestGround ground;
    StartedLibrary library{ground, disk};
    clsRtm rtm;

    static Text path(TextView name) { return Text(kFolder).append(u".DBD/").append(name); }
    Bytes file(TextView name) const { return disk.dump(path(name)); }
    void put(TextView name, BytesView content) { disk.put(path(name), content); }
    // Other bytes at a place, in open files, too.
    void patch(TextView name, std::size_t at, BytesView bytes) {
        put(name, file(name).replace(at, bytes.size(), bytes));
    }

    std::shared_ptr<clsTSDB> make(int32 max, bool single = false) {
        return makeAddresses(rtm, Text(kFolder), max, single);
    }
    std::shared_ptr<clsTSDB> make(const TSIOArray& fields, int32 max, TextView indexes = {},
                                  eDBTyp typ = DBAnsi) {
        if (!rtm.DBCreateExt(typ, kFolder, {}, fields, max, indexes)) return nullptr;
        return rtm.OpenTSDB(kFolder);
    }
    std::shared_ptr<clsTSDB> open(bool readOnly = false, bool single = false) {
        return rtm.OpenTSDB(kFolder, readOnly, single);
    }
    float64 seconds() { return std::chrono::duration<float64>(ground.clock.elapsed()).count(); }
    // What the user was shown in the n-th box.
    Text shown(std::size_t n = 0) const {
        return n < ground.ui.boxes.size() ? ground.ui.boxes[n].headline + ground.ui.boxes[n].body : Text();
    }
};

// The order of NAME, ORT: 3 Abel, 5 Berg Aachen, 2 Berg Bonn, 4 Cohn, 1 Dorn. None of them is locked.
inline void addFive(clsTSDB& db) {
    const Address rows[] = {{u"Dorn", u"Bonn", u"5.00", u"01022003"},
                            {u"Berg", u"Bonn", u"4.00", u"01022004"},
                            {u"Abel", u"Bonn", u"3.00", u"28021999"},
                            {u"Cohn", u"Bonn", u"2.00", u""},
                            {u"Berg", u"Aachen", u"1.00", u"31122003"}};
    for (const auto& row : rows) ASSERT_TRUE(db.Entsperren(addAddress(db, row)));
}

// Either form of the indexes, on files with windows and without.
struct Form {
    int32 max;
    bool windows;
};
inline const auto kAllForms =
    testing::Values(Form{kNormal, true}, Form{kBig, true}, Form{kNormal, false}, Form{kBig, false});
inline std::string nameOfForm(const testing::TestParamInfo<Form>& info) {
    return std::string(info.param.max == kBig ? "tree" : "flat") +
           (info.param.windows ? "" : "WithoutWindows");
}

// The five addresses in every form.
class FiveAddresses : public MemoryDatabase, public testing::WithParamInterface<Form> {
 protected:
    std::shared_ptr<clsTSDB> db = (disk.offerWindows(GetParam().windows), make(GetParam().max));

    void SetUp() override {
        ASSERT_TRUE(db);
        addFive(*db);
    }
};

}  // namespace tsRtm::test

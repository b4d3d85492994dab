#pragma once
// The address database on a disk in memory, for tests that look into its files.
#include "tests/database/DatabaseFixture.hpp"
#include "tests/support/Raised.hpp"

namespace tsRtm::test {

class MemoryDatabase : public testing::Test, protected DatabaseFiles {
 protected:
    TestGround ground;
    StartedLibrary library{ground, disk};
    clsRtm rtm;

    std::shared_ptr<clsTSDB> make(int32 max, bool single = false) {
        return makeAddresses(rtm, kFolder, max, single);
    }
    // The five addresses, and nothing else on the disk.
    std::shared_ptr<clsTSDB> makeFive(int32 max) {
        disk.restore({});
        auto db = make(max);
        addFive(*db);
        return db;
    }
    std::shared_ptr<clsTSDB> make(const TSIOArray& fields, int32 max, TextView indexes = {},
                                  eDBTyp typ = DBAnsi) {
        return there(rtm.DBCreateExt(typ, kFolder, {}, fields, max, indexes) ? rtm.OpenTSDB(kFolder)
                                                                             : nullptr);
    }
    std::shared_ptr<clsTSDB> open(bool readOnly = false, bool single = false) {
        return there(rtm.OpenTSDB(kFolder, readOnly, single));
    }
    // Programs that died together with their locks: the files stay as they were at this moment.
    void killAll(std::shared_ptr<clsTSDB>& db) {
        const auto then = disk.snapshot();
        db.reset();
        disk.restore(then);
    }
    float64 seconds() { return std::chrono::duration<float64>(ground.clock.elapsed()).count(); }
    // What the user was shown in the n-th box.
    Text shown(std::size_t n = 0) const {
        return n < ground.ui.boxes.size() ? ground.ui.boxes[n].headline + ground.ui.boxes[n].body : Text();
    }
};

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
    std::shared_ptr<clsTSDB> db = (disk.offerWindows(GetParam().windows), makeFive(GetParam().max));
};

}  // namespace tsRtm::test

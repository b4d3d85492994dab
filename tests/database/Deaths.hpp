#pragma once
// Users of a database who die at a change that they make, and others who find what they left.
#include "tests/database/DatabaseFixture.hpp"
#include "tests/support/CrashingFiles.hpp"

namespace tsRtm::test {

// The library on one file system, as a process of its own has it. Nobody sits in front of it.
struct Process {
    explicit Process(platform::FileSystem& files) : library(ground, files) { ground.ui.defaultAnswer = kNo; }

    static constexpr int32 kNo = 7;
    TestGround ground;
    StartedLibrary library;
    clsRtm rtm;
};

struct DyingFiles : DatabaseFiles {
    CrashingFiles files{disk};
};

// Work that is another program's to the library.
template <class Work>
void asAnotherProgram(Work work) {
    const auto own = std::exchange(rtmMain::state().updatesUnderWay, {});
    work();
    rtmMain::state().updatesUnderWay = own;
}

// Several users in one process; user 0 works at first.
class DyingUsers : protected DyingFiles, protected Process {
 protected:
    using LastWrite = CrashingFiles::LastWrite;
    static constexpr int32 kOther = 1;

    DyingUsers() : Process(files) {}

    std::shared_ptr<clsTSDB> openAs(int32 user, bool readOnly = false, bool alone = false) {
        files.as(user);
        return there(rtm.OpenTSDB(kFolder, readOnly, alone));
    }
    // Who has died stays dead: the next victim is another one.
    std::shared_ptr<clsTSDB> openAsVictim(bool alone = false) { return openAs(++victim_, false, alone); }
    int32 lastVictim() const { return victim_; }
    // Lets others work within each change of `work`, which user 0 does.
    template <class Others, class Work>
    void inEachChange(Others others, Work work) {
        files.as(0);
        files.interrupt([&] {
            files.as(kOther);
            asAnotherProgram(others);
        });
        work();
        files.interrupt(nullptr);
    }
    // Somebody opens the database and dies at the n-th change of work(database), for each n until he outlives
    // it. Then comes after(database of another one, whether he died): of one who was there before, or of the
    // next who comes.
    struct Manner {
        bool survivor = true;
        bool alone = false;
        LastWrite last = LastWrite::none;
    };
    template <class Work, class After>
    void dieAtEachChange(Work work, After after) {
        dieAtEachChange({}, work, after);
    }
    template <class Work, class After>
    void dieAtEachChange(const Manner& manner, Work work, After after) {
        const auto before = disk.snapshot();
        int64 n = 1;
        for (bool died = true; died && !testing::Test::HasFailure(); ++n) {
            SCOPED_TRACE(testing::Message() << "killed at change " << n
                                            << (manner.last == LastWrite::none ? "" : ", half written")
                                            << (manner.survivor ? ", somebody works on" : ""));
            disk.restore(before);
            auto other = manner.survivor ? openAs(kOther) : nullptr;
            auto victim = openAsVictim(manner.alone);
            files.dieAt(n, manner.last, CrashingFiles::Manner::silently);
            work(*victim);
            victim.reset();
            died = files.died();
            rtmMain::state().updatesUnderWay.clear();
            files.as(kOther);
            if (!other) other = openAs(kOther);
            after(*other, died);
        }
        EXPECT_GT(n, 2) << "nothing was changed";
        disk.restore(before);
    }

 private:
    int32 victim_ = 9;
};

}  // namespace tsRtm::test

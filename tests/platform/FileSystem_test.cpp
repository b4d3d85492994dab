// What every file system of the seam has to do, whichever ground it stands on.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "tests/support/CrashingFiles.hpp"
#include "tests/support/FailingFiles.hpp"
#include "tests/support/MemoryFiles.hpp"
#include "tests/support/TempFolder.hpp"
#include "tsRtm/platform/LockProbe.hpp"
#include "tsRtm/platform/posix/PosixPlatform.hpp"

namespace tsRtm::test {
namespace {

using namespace platform;

// A file system with an empty folder to work in.
class Ground {
 public:
    virtual ~Ground() = default;
    virtual FileSystem& files() = 0;
    virtual Text folder() = 0;
    virtual void makeReadOnly(const Text& name) = 0;
};

class PosixGround final : public Ground {
 public:
    FileSystem& files() override { return posixPlatform().files; }
    Text folder() override { return temp_.name(); }
    void makeReadOnly(const Text& name) override {
        std::filesystem::permissions(toUtf8(name), std::filesystem::perms::owner_read);
    }

 private:
    TempFolder temp_;
};

template <class Wrapper>
class MemoryGround final : public Ground {
 public:
    MemoryGround() { memory_.putFolder(folder()); }
    FileSystem& files() override {
        if constexpr (std::is_same_v<Wrapper, MemoryFiles>)
            return memory_;
        else
            return wrapper_;
    }
    Text folder() override { return u"/daten"; }
    void makeReadOnly(const Text& name) override { memory_.setReadOnly(name, true); }

 private:
    struct Nothing {
        explicit Nothing(FileSystem&) {}
    };
    MemoryFiles memory_;
    std::conditional_t<std::is_same_v<Wrapper, MemoryFiles>, Nothing, Wrapper> wrapper_{memory_};
};

struct GroundRow {
    const char* name;
    std::function<std::unique_ptr<Ground>()> make;
};

void PrintTo(const GroundRow& row, std::ostream* out) { *out << row.name; }

std::span<const std::byte> bytesOf(BytesView text) { return std::as_bytes(std::span(text)); }

Bytes readFrom(File& file, uint64 offset, std::size_t count) {
    Bytes into(count, '?');
    const auto got = file.readAt(offset, std::as_writable_bytes(std::span(into)));
    if (!got) return "error " + std::to_string(static_cast<int32>(got.error()));
    into.resize(*got);
    return into;
}

constexpr OpenRequest kShared{Access::readWrite, Sharing::all, Disposition::openOrCreate};
constexpr OpenRequest kExclusive{Access::readWrite, Sharing::none, Disposition::openOrCreate};
constexpr OpenRequest kReader{Access::read, Sharing::all, Disposition::openExisting};
constexpr OpenRequest kExclusiveReader{Access::read, Sharing::none, Disposition::openExisting};

class FileSystemContract : public testing::TestWithParam<GroundRow> {
 protected:
    Text at(TextView entry) { return ground->folder() + u"/" + Text(entry); }
    // Opens and fails the test where that is refused.
    std::unique_ptr<File> open(TextView entry, OpenRequest request = kShared) {
        auto file = files.open(at(entry), request);
        EXPECT_EQ(file.error(), SystemError::none) << toUtf8(entry);
        return file ? std::move(*file) : nullptr;
    }
    SystemError openError(TextView entry, OpenRequest request) {
        return files.open(at(entry), request).error();
    }
    void make(TextView entry, BytesView content) {
        const auto file = open(entry, {Access::readWrite, Sharing::all, Disposition::createEmpty});
        ASSERT_TRUE(file);
        ASSERT_EQ(file->writeAt(0, bytesOf(content)), SystemError::none);
    }
    Bytes content(TextView entry) { return readFrom(*open(entry, kReader), 0, 1000); }

    std::unique_ptr<Ground> ground = GetParam().make();
    FileSystem& files = ground->files();
};

TEST_P(FileSystemContract, DispositionsMakeKeepAndEmpty) {
    EXPECT_EQ(openError(u"neu", kReader), SystemError::fileNotFound);
    EXPECT_EQ(files.status(at(u"neu")).error(), SystemError::fileNotFound)
        << "a refused opening made the file";
    open(u"neu", {Access::read, Sharing::all, Disposition::openOrCreate});
    EXPECT_EQ(files.status(at(u"neu")).value().size, 0u);
    make(u"voll", "inhalt");
    open(u"voll", kShared);
    EXPECT_EQ(content(u"voll"), "inhalt");
    open(u"voll", {Access::read, Sharing::all, Disposition::createEmpty});
    EXPECT_EQ(content(u"voll"), "");
}

TEST_P(FileSystemContract, OpenErrorsTellWhatIsMissing) {
    make(u"datei", "x");
    ASSERT_EQ(files.makeFolder(at(u"ordner")), SystemError::none);
    EXPECT_EQ(openError(u"fehlt/datei", kShared), SystemError::pathNotFound);
    EXPECT_EQ(openError(u"datei/darunter", kShared), SystemError::pathNotFound);
    EXPECT_EQ(openError(u"ordner", kShared), SystemError::accessDenied);
    EXPECT_EQ(openError(u"ordner", kReader), SystemError::accessDenied);
    EXPECT_EQ(files.open(u"", kShared).error(), SystemError::invalidName);
    EXPECT_EQ(files.open(at(Text(u"a\0b", 3)), kShared).error(), SystemError::invalidName);
}

TEST_P(FileSystemContract, ReadOnlyFilesRefuseWritersAndRemoval) {
    make(u"fest", "x");
    ground->makeReadOnly(at(u"fest"));
    EXPECT_TRUE(files.status(at(u"fest")).value().readOnly);
    EXPECT_EQ(openError(u"fest", kShared), SystemError::accessDenied);
    EXPECT_EQ(openError(u"fest", {Access::read, Sharing::all, Disposition::createEmpty}),
              SystemError::accessDenied);
    EXPECT_EQ(files.remove(at(u"fest")), SystemError::accessDenied);
    EXPECT_EQ(content(u"fest"), "x");
    EXPECT_NE(open(u"fest", kExclusiveReader), nullptr);
}

TEST_P(FileSystemContract, ShareModesHoldForAllPairs) {
    make(u"datei", "inhalt");
    const OpenRequest requests[] = {kShared, kReader, kExclusive, kExclusiveReader};
    for (const auto first : requests)
        for (const auto second : requests) {
            const auto holder = open(u"datei", first);
            const bool both = first.sharing == Sharing::all && second.sharing == Sharing::all;
            EXPECT_EQ(openError(u"datei", second), both ? SystemError::none : SystemError::sharingViolation);
        }
    EXPECT_NE(open(u"datei", kExclusive), nullptr)
        << "a closed or refused opening left its share mode behind";
}

TEST_P(FileSystemContract, RefusedOpeningLeavesTheContentAlone) {
    make(u"datei", "inhalt");
    const auto holder = open(u"datei", kReader);
    EXPECT_EQ(openError(u"datei", {Access::readWrite, Sharing::none, Disposition::createEmpty}),
              SystemError::sharingViolation);
    EXPECT_EQ(readFrom(*holder, 0, 100), "inhalt");
}

TEST_P(FileSystemContract, ReadsAndWritesByPosition) {
    const auto file = open(u"datei");
    ASSERT_EQ(file->writeAt(0, bytesOf("abcdef")), SystemError::none);
    ASSERT_EQ(file->writeAt(2, bytesOf("XY")), SystemError::none);
    EXPECT_EQ(readFrom(*file, 0, 6), "abXYef");
    EXPECT_EQ(readFrom(*file, 4, 10), "ef") << "short at the end";
    EXPECT_EQ(readFrom(*file, 6, 10), "");
    EXPECT_EQ(readFrom(*file, 1'000'000, 10), "");
    ASSERT_EQ(file->writeAt(9, bytesOf("z")), SystemError::none);
    EXPECT_EQ(readFrom(*file, 0, 100), Bytes("abXYef\0\0\0z", 10)) << "the gap reads as zeros";
    EXPECT_EQ(file->size().value(), 10u);
    ASSERT_EQ(file->writeAt(50, {}), SystemError::none);
    EXPECT_EQ(file->size().value(), 10u) << "writing nothing made the file grow";
}

TEST_P(FileSystemContract, ResizeCutsAndGrows) {
    make(u"datei", "abcdef");
    const auto file = open(u"datei");
    ASSERT_EQ(file->resize(3), SystemError::none);
    ASSERT_EQ(file->resize(5), SystemError::none);
    EXPECT_EQ(readFrom(*file, 0, 100), Bytes("abc\0\0", 5));
    EXPECT_EQ(file->flush(), SystemError::none);
}

TEST_P(FileSystemContract, ReadersCannotChangeTheFile) {
    make(u"datei", "abc");
    for (const auto request : {kReader, kExclusiveReader}) {
        const auto reader = open(u"datei", request);
        EXPECT_EQ(reader->writeAt(0, bytesOf("x")), SystemError::accessDenied);
        EXPECT_EQ(reader->resize(0), SystemError::accessDenied);
        EXPECT_EQ(reader->tryLock({5, 1}), SystemError::accessDenied);
        EXPECT_EQ(readFrom(*reader, 0, 10), "abc");
    }
}

TEST_P(FileSystemContract, OpeningsSeeEachOthersWrites) {
    const auto a = open(u"datei");
    const auto b = open(u"datei");
    ASSERT_EQ(a->writeAt(0, bytesOf("hallo")), SystemError::none);
    EXPECT_EQ(readFrom(*b, 0, 10), "hallo");
    ASSERT_EQ(b->resize(2), SystemError::none);
    EXPECT_EQ(a->size().value(), 2u);
}

TEST_P(FileSystemContract, LocksExcludeOtherOpenings) {
    const auto a = open(u"datei");
    const auto b = open(u"datei");
    const ByteRange lock{1'000'010, 10};  // far behind the end
    ASSERT_EQ(a->tryLock(lock), SystemError::none);
    struct Row {
        ByteRange range;
        bool free;
    };
    for (const Row row :
         {Row{{1'000'009, 1}, true}, Row{{1'000'010, 1}, false}, Row{{1'000'019, 1}, false},
          Row{{1'000'020, 1}, true}, Row{{1'000'000, 100}, false}, Row{{1'000'000, 10}, true}}) {
        EXPECT_EQ(b->isLocked(row.range).value(), !row.free) << row.range.offset << '+' << row.range.length;
        EXPECT_EQ(b->tryLock(row.range), row.free ? SystemError::none : SystemError::lockViolation);
        EXPECT_EQ(b->unlock(row.range), SystemError::none);
    }
    EXPECT_TRUE(b->isLocked(lock).value()) << "unlocking a range gave back the lock of another opening";
    ASSERT_EQ(a->unlock(lock), SystemError::none);
    EXPECT_FALSE(b->isLocked(lock).value());
    EXPECT_EQ(b->tryLock(lock), SystemError::none);
}

TEST_P(FileSystemContract, OwnLocksDoNotShowAndAreNotTakenTwice) {
    const auto file = open(u"datei");
    ASSERT_EQ(file->tryLock({10, 1}), SystemError::none);
    EXPECT_FALSE(file->isLocked({10, 1}).value());
    EXPECT_EQ(file->tryLock({10, 1}), SystemError::lockViolation);
    EXPECT_EQ(file->unlock({10, 1}), SystemError::none);
    EXPECT_EQ(file->unlock({10, 1}), SystemError::none) << "what is not locked may be unlocked";
    EXPECT_EQ(file->tryLock({10, 1}), SystemError::none);
}

TEST_P(FileSystemContract, UnlockingAPartKeepsTheRest) {
    const auto a = open(u"datei");
    const auto b = open(u"datei");
    ASSERT_EQ(a->tryLock({10, 10}), SystemError::none);
    ASSERT_EQ(a->unlock({13, 2}), SystemError::none);
    EXPECT_TRUE(b->isLocked({12, 1}).value());
    EXPECT_FALSE(b->isLocked({13, 2}).value());
    EXPECT_TRUE(b->isLocked({15, 5}).value());
    EXPECT_EQ(a->tryLock({12, 1}), SystemError::lockViolation);
    EXPECT_EQ(a->tryLock({13, 2}), SystemError::none);
}

TEST_P(FileSystemContract, LocksDieWithTheirOpening) {
    auto a = open(u"datei");
    const auto b = open(u"datei");
    auto third = open(u"datei");
    ASSERT_EQ(a->tryLock({10, 1}), SystemError::none);
    third.reset();
    EXPECT_TRUE(b->isLocked({10, 1}).value()) << "closing a third opening lost the lock of the first";
    a.reset();
    EXPECT_FALSE(b->isLocked({10, 1}).value());
    EXPECT_EQ(b->tryLock({10, 1}), SystemError::none);
}

TEST_P(FileSystemContract, ReadersSeeLocksAndReadLockedBytes) {
    make(u"datei", "abc");
    const auto writer = open(u"datei");
    const auto reader = open(u"datei", kReader);
    ASSERT_EQ(writer->tryLock({0, 3}), SystemError::none);
    EXPECT_TRUE(reader->isLocked({1, 1}).value());
    EXPECT_EQ(readFrom(*reader, 0, 3), "abc");
}

TEST_P(FileSystemContract, LockRangesAreChecked) {
    const auto file = open(u"datei");
    for (const ByteRange bad : {ByteRange{5, 0}, ByteRange{uint64{1} << 62, 1}, ByteRange{5, uint64{1} << 62},
                                ByteRange{~uint64{0}, 2}}) {
        EXPECT_EQ(file->tryLock(bad), SystemError::invalidParameter);
        EXPECT_EQ(file->unlock(bad), SystemError::invalidParameter);
        EXPECT_EQ(file->isLocked(bad).error(), SystemError::invalidParameter);
    }
    EXPECT_EQ(file->tryLock({(uint64{1} << 62) - 1, 1}), SystemError::none);
}

TEST_P(FileSystemContract, LockProbePassesAndLeavesNothingBehind) {
    const auto file = open(u"datei");
    const auto other = open(u"datei");
    EXPECT_EQ(probeLocks(files, *file), SystemError::none);
    EXPECT_FALSE(other->isLocked(lockProbe::kRange).value());
    EXPECT_EQ(other->tryLock(lockProbe::kRange), SystemError::none);
    EXPECT_EQ(probeLocks(files, *file), SystemError::none) << "somebody else's probe is a proof, too";
    EXPECT_EQ(probeLocks(files, *open(u"datei", kReader)), SystemError::accessDenied);
}

TEST_P(FileSystemContract, RenameReplacesInOneStepOrNotAtAll) {
    make(u"alt", "alt");
    make(u"neu", "neu");
    EXPECT_EQ(files.rename(at(u"neu"), at(u"alt"), false), SystemError::alreadyExists);
    EXPECT_EQ(content(u"alt"), "alt");
    EXPECT_EQ(files.rename(at(u"neu"), at(u"alt"), true), SystemError::none);
    EXPECT_EQ(content(u"alt"), "neu");
    EXPECT_EQ(files.status(at(u"neu")).error(), SystemError::fileNotFound);
    EXPECT_EQ(files.rename(at(u"neu"), at(u"x"), true), SystemError::fileNotFound);
    EXPECT_EQ(files.rename(at(u"alt"), at(u"fehlt/x"), true), SystemError::pathNotFound);
    EXPECT_EQ(files.rename(at(u"alt"), at(u"frei"), false), SystemError::none);
    EXPECT_EQ(content(u"frei"), "neu");
}

TEST_P(FileSystemContract, OpenFilesAreNotTakenAway) {
    make(u"offen", "x");
    make(u"andere", "y");
    const auto holder = open(u"offen", kReader);
    EXPECT_EQ(files.remove(at(u"offen")), SystemError::sharingViolation);
    EXPECT_EQ(files.rename(at(u"offen"), at(u"neu"), false), SystemError::sharingViolation);
    EXPECT_EQ(files.rename(at(u"andere"), at(u"offen"), true), SystemError::sharingViolation);
    EXPECT_EQ(content(u"offen"), "x");
    EXPECT_EQ(content(u"andere"), "y");
}

TEST_P(FileSystemContract, RenameChangesTheCaseOfAName) {
    make(u"daten.tsd", "x");
    ASSERT_EQ(files.rename(at(u"daten.tsd"), at(u"Daten.TSD"), false), SystemError::none);
    const auto entries = files.list(ground->folder());
    ASSERT_EQ(entries.value().size(), 1u);
    EXPECT_EQ(entries.value().front().name, u"Daten.TSD");
}

TEST_P(FileSystemContract, RemoveTakesOneFile) {
    make(u"datei", "x");
    ASSERT_EQ(files.makeFolder(at(u"ordner")), SystemError::none);
    EXPECT_EQ(files.remove(at(u"datei")), SystemError::none);
    EXPECT_EQ(files.remove(at(u"datei")), SystemError::fileNotFound);
    EXPECT_EQ(files.remove(at(u"fehlt/datei")), SystemError::pathNotFound);
    EXPECT_EQ(files.remove(at(u"ordner")), SystemError::accessDenied);
}

TEST_P(FileSystemContract, NamesAreFoundIgnoringCaseAndWithEitherMark) {
    ASSERT_EQ(files.makeFolder(at(u"Kunden.DBD")), SystemError::none);
    make(u"Kunden.DBD/Größe.Tsd", "inhalt");
    for (const TextView name : {u"KUNDEN.DBD/GRÖSSE.TSD", u"kunden.dbd/gröSSe.tsd"})
        EXPECT_EQ(openError(name, kReader), SystemError::fileNotFound) << "two letters are not one";
    for (const TextView name :
         {u"KUNDEN.DBD/GRÖßE.TSD", u"kunden.dbd\\größe.tsd", u"Kunden.DBD\\\\Größe.Tsd"}) {
        const auto file = open(name, kReader);
        ASSERT_TRUE(file);
        EXPECT_EQ(file->name(), at(u"Kunden.DBD/Größe.Tsd"));
        EXPECT_TRUE(files.status(at(name)).ok());
    }
    make(u"KUNDEN.dbd/Neu.tsd", "neu");
    EXPECT_EQ(content(u"Kunden.DBD/Neu.tsd"), "neu");
    EXPECT_EQ(files.makeFolder(at(u"kunden.dbd")), SystemError::none);
    EXPECT_EQ(files.list(ground->folder()).value().size(), 1u) << "a second folder was made beside the first";
}

TEST_P(FileSystemContract, ListGivesAllEntriesWithTheirStatus) {
    make(u"a.txt", "12345");
    make(u".versteckt", "");
    ASSERT_EQ(files.makeFolder(at(u"Unter")), SystemError::none);
    make(u"Unter/tiefer", "x");
    auto entries = files.list(ground->folder()).value();
    std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0].name, u".versteckt");
    EXPECT_TRUE(entries[0].status.hidden);
    EXPECT_EQ(entries[1].name, u"Unter");
    EXPECT_TRUE(entries[1].status.folder);
    EXPECT_EQ(entries[2].name, u"a.txt");
    EXPECT_EQ(entries[2].status.size, 5u);
    EXPECT_FALSE(entries[2].status.folder || entries[2].status.hidden || entries[2].status.readOnly);
    EXPECT_GT(entries[2].status.changed, Date::of(2024, 1, 1));
    EXPECT_EQ(files.list(at(u"fehlt")).error(), SystemError::pathNotFound);
    EXPECT_EQ(files.list(at(u"a.txt")).error(), SystemError::pathNotFound);
}

TEST_P(FileSystemContract, FoldersAreMadeOneAtATime) {
    make(u"datei", "x");
    EXPECT_EQ(files.makeFolder(at(u"a/b")), SystemError::pathNotFound);
    EXPECT_EQ(files.makeFolder(at(u"a")), SystemError::none);
    EXPECT_EQ(files.makeFolder(at(u"a")), SystemError::none);
    EXPECT_EQ(files.makeFolder(at(u"a/b/")), SystemError::none);
    EXPECT_EQ(files.makeFolder(at(u"datei")), SystemError::alreadyExists);
    EXPECT_TRUE(files.status(at(u"a/b")).value().folder);
    EXPECT_TRUE(files.status(at(u"a/")).value().folder);
}

TEST_P(FileSystemContract, DriveKindIsThatOfTheFolder) {
    EXPECT_NE(files.driveKind(ground->folder()), DriveKind::unknown);
    EXPECT_EQ(files.driveKind(at(u"noch nicht da")), files.driveKind(ground->folder()));
    EXPECT_EQ(files.driveKind(at(u"fehlt/datei")), DriveKind::unknown);
}

INSTANTIATE_TEST_SUITE_P(
    Grounds, FileSystemContract,
    testing::Values(GroundRow{"posix", [] { return std::make_unique<PosixGround>(); }},
                    GroundRow{"memory", [] { return std::make_unique<MemoryGround<MemoryFiles>>(); }},
                    GroundRow{"failing", [] { return std::make_unique<MemoryGround<FailingFiles>>(); }},
                    GroundRow{"crashing", [] { return std::make_unique<MemoryGround<CrashingFiles>>(); }}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace tsRtm::test

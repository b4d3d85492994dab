// What every file system of the seam has to do, whichever ground it stands on.
#include <filesystem>
#include <set>

#include "tests/platform/Grounds.hpp"
#include "tsRtm/platform/LockProbe.hpp"

namespace tsRtm::test {
namespace {

using enum SystemError;

class FileSystemContract : public OnGround {
 protected:
    SystemError openError(TextView entry, OpenRequest request) {
        return files.open(at(entry), request).error();
    }
    void make(TextView entry, BytesView content) {
        const auto file = open(entry, {Access::readWrite, Sharing::all, Disposition::createEmpty});
        ASSERT_TRUE(file);
        ASSERT_EQ(writeText(*file, 0, content), none);
    }
    void makeReadOnly(TextView entry) {
        if (onDisk)
            std::filesystem::permissions(toUtf8(at(entry)), std::filesystem::perms::owner_read);
        else
            memory.setReadOnly(at(entry), true);
    }
    Bytes content(TextView entry) { return readText(*open(entry, kReader)); }
};

TEST_P(FileSystemContract, DispositionsMakeKeepAndEmpty) {
    EXPECT_EQ(openError(u"neu", kReader), fileNotFound);
    EXPECT_EQ(files.status(at(u"neu")).error(), fileNotFound) << "a refused opening made the file";
    open(u"neu", {Access::read, Sharing::all, Disposition::openOrCreate});
    make(u"voll", "inhalt");
    open(u"voll", kShared);
    EXPECT_TOLD("0|inhalt", files.status(at(u"neu"))->size, content(u"voll"));
    open(u"voll", {Access::read, Sharing::all, Disposition::createEmpty});
    EXPECT_EQ(content(u"voll"), "");
}

TEST_P(FileSystemContract, OpenErrorsTellWhatIsMissing) {
    make(u"datei", "x");
    ASSERT_EQ(files.makeFolder(at(u"ordner")), none);
    for (const auto request : {kShared, kReader}) {
        EXPECT_EQ(openError(u"fehlt/datei", request), pathNotFound);
        EXPECT_EQ(openError(u"datei/darunter", request), pathNotFound);
        EXPECT_EQ(openError(u"ordner", request), accessDenied);
        for (const Text& bad : {Text(), at(Text(u"a\0b", 3))})
            EXPECT_EQ(files.open(bad, request).error(), invalidName);
    }
}

TEST_P(FileSystemContract, ReadOnlyFilesRefuseWritersAndRemoval) {
    make(u"fest", "x");
    makeReadOnly(u"fest");
    EXPECT_TRUE(files.status(at(u"fest")).value().readOnly);
    for (const auto error : {openError(u"fest", kShared), files.remove(at(u"fest")),
                             openError(u"fest", {Access::read, Sharing::all, Disposition::createEmpty})})
        EXPECT_EQ(error, accessDenied);
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
            EXPECT_EQ(openError(u"datei", second), both ? none : sharingViolation);
        }
    EXPECT_NE(open(u"datei", kExclusive), nullptr)
        << "a closed or refused opening left its share mode behind";
    const auto holder = open(u"datei", kReader);
    EXPECT_EQ(openError(u"datei", {Access::readWrite, Sharing::none, Disposition::createEmpty}),
              sharingViolation);
    EXPECT_EQ(readText(*holder), "inhalt") << "a refused opening emptied the file";
}

TEST_P(FileSystemContract, ShareModeChangesInPlaceAndKeepsAllElse) {
    auto a = open(u"datei");
    ASSERT_EQ(a->tryLock({10, 1}), none);
    ASSERT_EQ(a->show(7), none);
    auto b = open(u"datei");
    EXPECT_EQ(a->share(Sharing::none), sharingViolation);
    EXPECT_EQ(b->share(Sharing::none), sharingViolation) << "the refused opening lost its share mode";
    b.reset();
    ASSERT_EQ(a->share(Sharing::none), none);
    EXPECT_EQ(openError(u"datei", kShared), sharingViolation);
    EXPECT_EQ(a->share(Sharing::none), none) << "what is so already may be asked for";
    EXPECT_EQ(a->tryLock({10, 1}), lockViolation) << "its own lock is gone";
    ASSERT_EQ(a->share(Sharing::all), none);
    b = open(u"datei");
    ASSERT_TRUE(b);
    EXPECT_TOLD("yes|7", b->isLocked({10, 1}).value(), b->greatestShown(0).value());
    a.reset();
    EXPECT_EQ(b->share(Sharing::none), none) << "a share mode outlived its opening";
}

TEST_P(FileSystemContract, SignsAreSeenByOthersUntilReplacedOrClosed) {
    constexpr auto kGreatest = lockRanges::kGreatestSign;
    auto a = open(u"datei"), b = open(u"datei");
    const auto c = open(u"datei", kReader);
    EXPECT_EQ(*c->greatestShown(0), 0u);
    ASSERT_EQ(a->show(5), none);
    EXPECT_EQ(*a->greatestShown(0), 0u) << "the own sign does not count";
    for (const uint64 sign : {5u, 6u}) ASSERT_EQ(b->show(sign), none) << "several may show one number";
    ASSERT_EQ(c->show(1000), none) << "readers may show, too";
    EXPECT_TOLD("1000|1000|0", a->greatestShown(0), a->greatestShown(999), a->greatestShown(1000));
    ASSERT_EQ(c->show(0), none);
    EXPECT_EQ(*c->greatestShown(0), 6u);
    b.reset();
    EXPECT_EQ(*c->greatestShown(0), 5u);
    ASSERT_EQ(a->show(kGreatest), none);
    EXPECT_EQ(a->show(kGreatest + 1), invalidParameter);
    EXPECT_EQ(std::pair(*c->greatestShown(5), *c->greatestShown(kGreatest)), std::pair(kGreatest, uint64{0}));
    a.reset();
    EXPECT_EQ(*c->greatestShown(0), 0u);
}

TEST_P(FileSystemContract, RefreshingKeepsContentAndLocks) {
    make(u"datei", "abcdef");
    const auto file = open(u"datei");
    ASSERT_EQ(file->tryLock({10, 1}), none);
    for (const auto standing : {RefreshAs::reader, RefreshAs::soleWriter}) {
        EXPECT_EQ(file->refresh(standing), none);
        EXPECT_EQ(open(u"datei", kReader)->refresh(standing), none);
    }
    EXPECT_EQ(readText(*file), "abcdef");
    EXPECT_TOLD("yes|yes", open(u"datei")->isLocked({10, 1}).value(), file->stands().value());
    EXPECT_FALSE(file->remote()) << "neither a folder for tests nor memory is a share";
}

TEST_P(FileSystemContract, ServedBytesAreThoseOfTheFile) {
    const auto file = open(u"datei");
    ASSERT_EQ(file->resize(ServedFile::kKeptWhole + 5000), none);
    ASSERT_EQ(writeText(*file, 4090, "ueber die Grenze"), none);
    ASSERT_EQ(writeText(*file, ServedFile::kKeptWhole + 4998, "Ende"), none);
    const auto reader = open(u"datei", kReader);
    const auto served = [&](uint64 offset, std::size_t count) {
        Bytes into(count, '?');
        const auto got = reader->readServed(offset, std::as_writable_bytes(std::span(into)));
        into.resize(got.value());
        return into;
    };
    EXPECT_TOLD("ueber die Grenze|Ende", served(4090, 16), served(ServedFile::kKeptWhole + 4998, 100));
    EXPECT_EQ(served(ServedFile::kKeptWhole + 9000, 10), "");
    EXPECT_EQ(served(0, 2), Bytes(2, '\0'));
}

TEST_P(FileSystemContract, ReadsAndWritesByPosition) {
    const auto file = open(u"datei"), other = open(u"datei");
    ASSERT_EQ(writeText(*file, 0, "abcdef"), none);
    ASSERT_EQ(writeText(*file, 2, "XY"), none);
    EXPECT_TOLD("abXYef|ef||", readText(*file), readText(*file, 4, 10), readText(*file, 6, 10),
                readText(*file, 1'000'000, 10));
    ASSERT_EQ(writeText(*file, 9, "z"), none);
    EXPECT_EQ(readText(*file), Bytes("abXYef\0\0\0z", 10)) << "the gap reads as zeros";
    ASSERT_EQ(file->writeAt(50, {}), none);
    EXPECT_EQ(*file->size(), 10u) << "writing nothing made the file grow";
    ASSERT_EQ(file->resize(3), none);
    ASSERT_EQ(other->resize(5), none);
    EXPECT_EQ(readText(*file), Bytes("abX\0\0", 5));
    EXPECT_EQ(file->flush(), none);
}

TEST_P(FileSystemContract, ReadersSeeLocksAndCannotChangeTheFile) {
    make(u"datei", "abc");
    for (const auto request : {kReader, kExclusiveReader}) {
        const auto reader = open(u"datei", request);
        for (const auto error : {writeText(*reader, 0, "x"), reader->resize(0), reader->tryLock({5, 1})})
            EXPECT_EQ(error, accessDenied);
        EXPECT_EQ(readText(*reader), "abc");
    }
    const auto writer = open(u"datei");
    const auto reader = open(u"datei", kReader);
    ASSERT_EQ(writer->tryLock({0, 3}), none);
    EXPECT_TRUE(reader->isLocked({1, 1}).value());
    EXPECT_EQ(readText(*reader), "abc") << "locked bytes are read";
}

TEST_P(FileSystemContract, LocksExcludeOtherOpenings) {
    const auto a = open(u"datei");
    const auto b = open(u"datei");
    const ByteRange lock{1'000'010, 10};  // far behind the end
    ASSERT_EQ(a->tryLock(lock), none);
    const std::pair<ByteRange, bool> rows[] = {{{1'000'009, 1}, false},  {{1'000'010, 1}, true},
                                               {{1'000'019, 1}, true},   {{1'000'020, 1}, false},
                                               {{1'000'000, 100}, true}, {{1'000'000, 10}, false}};
    for (const auto& [range, locked] : rows) {
        EXPECT_EQ(b->isLocked(range).value(), locked) << range.offset << '+' << range.length;
        EXPECT_EQ(b->tryLock(range), locked ? lockViolation : none);
        EXPECT_EQ(b->unlock(range), none);
    }
    EXPECT_TRUE(b->isLocked(lock).value()) << "unlocking a range gave back the lock of another opening";
    ASSERT_EQ(a->unlock(lock), none);
    EXPECT_EQ(b->tryLock(lock), none);
}

TEST_P(FileSystemContract, OwnLocksDoNotShowAndAreNotTakenTwice) {
    const auto a = open(u"datei"), b = open(u"datei");
    ASSERT_EQ(a->tryLock({10, 10}), none);
    EXPECT_FALSE(a->isLocked({10, 10}).value());
    EXPECT_EQ(a->tryLock({10, 10}), lockViolation);
    // Unlocking a part keeps the rest.
    for (int i = 0; i < 2; ++i) EXPECT_EQ(a->unlock({13, 2}), none) << "what is not locked may be unlocked";
    for (const auto& [range, locked] :
         {std::pair(ByteRange{12, 1}, true), {{13, 2}, false}, {{15, 5}, true}}) {
        EXPECT_EQ(b->isLocked(range).value(), locked) << range.offset;
        EXPECT_EQ(a->tryLock(range), locked ? lockViolation : none);
    }
}

TEST_P(FileSystemContract, LocksDieWithTheirOpening) {
    auto a = open(u"datei");
    const auto b = open(u"datei");
    auto third = open(u"datei");
    ASSERT_EQ(a->tryLock({10, 1}), none);
    third.reset();
    EXPECT_TRUE(b->isLocked({10, 1}).value()) << "closing a third opening lost the lock of the first";
    a.reset();
    EXPECT_FALSE(b->isLocked({10, 1}).value());
    EXPECT_EQ(b->tryLock({10, 1}), none);
}

TEST_P(FileSystemContract, LockRangesAreChecked) {
    const auto file = open(u"datei");
    for (const ByteRange bad : {ByteRange{5, 0}, ByteRange{uint64{1} << 62, 1}, ByteRange{5, uint64{1} << 62},
                                ByteRange{~uint64{0}, 2}}) {
        for (const auto error : {file->tryLock(bad), file->unlock(bad), file->isLocked(bad).error()})
            EXPECT_EQ(error, invalidParameter);
    }
    EXPECT_EQ(file->tryLock({(uint64{1} << 62) - 1, 1}), none);
}

TEST_P(FileSystemContract, LockProbePassesAndLeavesNothingBehind) {
    const auto file = open(u"datei");
    const auto other = open(u"datei");
    EXPECT_EQ(probeLocks(files, *file), none);
    EXPECT_FALSE(other->isLocked(lockRanges::kProbe).value());
    EXPECT_EQ(other->tryLock(lockRanges::kProbe), none);
    EXPECT_EQ(probeLocks(files, *file), none) << "somebody else's probe is a proof, too";
    EXPECT_EQ(probeLocks(files, *open(u"datei", kReader)), accessDenied);
}

TEST_P(FileSystemContract, RenameReplacesInOneStepOrNotAtAll) {
    make(u"alt", "alt");
    make(u"neu", "neu");
    EXPECT_EQ(files.rename(at(u"neu"), at(u"alt"), false), alreadyExists);
    EXPECT_EQ(content(u"alt"), "alt");
    using Row = std::tuple<TextView, TextView, SystemError>;
    for (const auto& [from, to, error] :
         {Row{u"neu", u"alt", none}, Row{u"neu", u"x", fileNotFound}, Row{u"alt", u"fehlt/x", pathNotFound}})
        EXPECT_EQ(files.rename(at(from), at(to), true), error) << toUtf8(to);
    EXPECT_EQ(files.rename(at(u"alt"), at(u"Alt"), false), none) << "only the case changes";
    EXPECT_EQ(files.list(folder).value().front().name, u"Alt");
    EXPECT_EQ(files.rename(at(u"alt"), at(u"frei"), false), none);
    EXPECT_EQ(content(u"frei"), "neu");
    for (const auto& [name, error] :
         {std::pair{u"frei", none}, {u"frei", fileNotFound}, {u"fehlt/datei", pathNotFound}})
        EXPECT_EQ(files.remove(at(name)), error);
}

TEST_P(FileSystemContract, ExchangeGivesEachTheOthersName) {
    make(u"alt", "alt");
    make(u"neu", "neu");
    make(u"fest", "fest");
    makeReadOnly(u"fest");
    ASSERT_EQ(files.makeFolder(at(u"ordner")), none);
    using Row = std::tuple<TextView, TextView, SystemError>;
    for (const auto& [from, to, error] :
         {Row{u"neu", u"alt", none}, Row{u"neu", u"fehlt", fileNotFound}, Row{u"fehlt", u"alt", fileNotFound},
          Row{u"neu", u"fest", accessDenied}, Row{u"neu", u"ordner", accessDenied}})
        EXPECT_EQ(files.exchange(at(from), at(to)), error) << toUtf8(from) << ' ' << toUtf8(to);
    EXPECT_EQ(content(u"alt") + content(u"neu"), "neualt");
    for (const auto* held : {u"alt", u"neu"}) {
        const auto holder = open(held, kReader);
        EXPECT_EQ(files.exchange(at(u"neu"), at(u"alt")), sharingViolation);
    }
    EXPECT_EQ(files.list(folder).value().size(), 4u);
}

TEST_P(FileSystemContract, OpenFilesAreNotTakenAway) {
    make(u"offen", "x");
    make(u"andere", "y");
    const auto holder = open(u"offen", kReader);
    for (const auto error : {files.remove(at(u"offen")), files.rename(at(u"offen"), at(u"neu"), false),
                             files.rename(at(u"andere"), at(u"offen"), true)})
        EXPECT_EQ(error, sharingViolation);
    EXPECT_EQ(content(u"offen") + content(u"andere"), "xy");
}

TEST_P(FileSystemContract, NamesAreFoundIgnoringCaseAndWithEitherMark) {
    ASSERT_EQ(files.makeFolder(at(u"Kunden.DBD")), none);
    make(u"Kunden.DBD/Größe.Tsd", "inhalt");
    for (const TextView name : {u"KUNDEN.DBD/GRÖSSE.TSD", u"kunden.dbd/gröSSe.tsd"})
        EXPECT_EQ(openError(name, kReader), fileNotFound) << "two letters are not one";
    for (const TextView name :
         {u"KUNDEN.DBD/GRÖßE.TSD", u"kunden.dbd\\größe.tsd", u"Kunden.DBD\\\\Größe.Tsd"}) {
        const auto file = open(name, kReader);
        ASSERT_TRUE(file);
        EXPECT_EQ(file->name(), at(u"Kunden.DBD/Größe.Tsd"));
        EXPECT_TRUE(files.status(at(name)).ok());
    }
    make(u"KUNDEN.dbd/Neu.tsd", "neu");
    EXPECT_EQ(content(u"Kunden.DBD/Neu.tsd"), "neu");
    EXPECT_EQ(files.makeFolder(at(u"kunden.dbd")), none);
    EXPECT_EQ(files.list(folder).value().size(), 1u) << "a second folder was made beside the first";
}

TEST_P(FileSystemContract, ListGivesAllEntriesWithTheirStatus) {
    make(u"a.txt", "12345");
    make(u".versteckt", "");
    ASSERT_EQ(files.makeFolder(at(u"Unter")), none);
    make(u"Unter/tiefer", "x");
    std::set<std::string> entries;
    const auto listed = files.list(folder);
    for (const auto& [name, status] : listed.value()) {
        entries.insert(
            Told(name, status.folder ? "folder" : Told::one(status.size), status.hidden, status.readOnly)
                .out);
        EXPECT_GT(status.changed, Date::of(2024, 1, 1));
    }
    EXPECT_EQ(entries, (std::set<std::string>{".versteckt|0|yes|no", "Unter|folder|no|no", "a.txt|5|no|no"}));
    for (const TextView none : {u"fehlt", u"a.txt"}) EXPECT_EQ(files.list(at(none)).error(), pathNotFound);
}

TEST_P(FileSystemContract, FoldersAreMadeOneAtATime) {
    make(u"datei", "x");
    for (const auto& [name, error] :
         {std::pair{u"a/b", pathNotFound}, std::pair{u"a", none}, std::pair{u"a", none},
          std::pair{u"a/b/", none}, std::pair{u"datei", alreadyExists}})
        EXPECT_EQ(files.makeFolder(at(name)), error) << toUtf8(name);
    EXPECT_EQ(files.remove(at(u"a")), accessDenied);
    EXPECT_TRUE(files.status(at(u"a/b"))->folder && files.status(at(u"a/"))->folder);
    EXPECT_NE(files.driveKind(folder), DriveKind::unknown);
    EXPECT_EQ(files.driveKind(at(u"noch nicht da")), files.driveKind(folder));
    EXPECT_EQ(files.driveKind(at(u"fehlt/datei")), DriveKind::unknown);
}

INSTANTIATE_TEST_SUITE_P(Grounds, FileSystemContract, testing::Range<std::size_t>(0, std::size(kGrounds)),
                         groundName);

}  // namespace
}  // namespace tsRtm::test

// What a process leaves that dies while it stores, what faults of the disk leave, and several processes on
// one file.
#include "tests/support/ChildProcess.hpp"
#include "tests/support/CrashingFiles.hpp"
#include "tests/support/FailingFiles.hpp"
#include "tests/support/TempFolder.hpp"
#include "tests/tables/TablesTest.hpp"
#include "tsRtm/platform/posix/PosixPlatform.hpp"

namespace tsRtm::test {
namespace {

// A file of each kind in an old and a new version, and the work that makes one of the other.
struct Form {
    std::string name;
    Bytes before, after;
    void (*work)(bool sensible);
    bool appends = false;
};

template <class Kind>
void addForms(std::vector<Form>& all, const std::string& name) {
    all.push_back(
        {name + "Commit", linesOf<Kind>({"eins", "zwei"}), linesOf<Kind>({"eins", "2"}), [](bool sensible) {
             Kind kind;
             kind.data.Sensible(sensible);
             kind.set(2, u"2");
             kind.data.Commit();
         }});
    all.push_back({name + "Add", linesOf<Kind>({"eins"}), linesOf<Kind>({"eins", "zwei"}),
                   [](bool) { Kind(true).add(u"zwei"); }, true});
}

const std::vector<Form>& forms() {
    static const auto all = [] {
        std::vector<Form> forms;
        addForms<List>(forms, "list");
        addForms<Cells>(forms, "cells");
        addForms<Rows>(forms, "rows");
        return forms;
    }();
    return all;
}

// How the old version is done away with; by `Renaming` on a volume where files cannot exchange their names.
enum class Manner { Plain, Sensible, SensibleRenaming };

class Storing : public testing::TestWithParam<std::tuple<Form, Manner>> {
 protected:
    const Form& form = std::get<0>(GetParam());
    const bool sensible = std::get<1>(GetParam()) != Manner::Plain;
    const bool renaming = std::get<1>(GetParam()) == Manner::SensibleRenaming;

    // A disk with the old version.
    void prepare(MemoryFiles& disk) const {
        disk.put(kFile, form.before);
        if (renaming) disk.forbidExchange();
    }
    void work(platform::FileSystem& files) const {
        TestGround ground;
        const StartedLibrary library(ground, files);
        form.work(sensible);
    }
    // The old or the new version, in its place or, where there are renamings, both beside it.
    void expectWhole(MemoryFiles& disk) const {
        std::vector<Bytes> beside;
        const auto entries = disk.list(u"/d");
        for (const auto& entry : entries.value())
            if (entry.name != u"Liste.txt") beside.push_back(disk.dump(u"/d/" + entry.name));
        const auto lies = [&](const Bytes& version) {
            return std::find(beside.begin(), beside.end(), version) != beside.end();
        };
        if (disk.exists(kFile)) {
            const Bytes now = disk.dump(kFile);
            const bool torn = form.appends && now.starts_with(form.before) && form.after.starts_with(now);
            EXPECT_TRUE(now == form.before || now == form.after || torn) << now;
            return;
        }
        EXPECT_TRUE(renaming && lies(form.before) && lies(form.after));
    }
};

TEST_P(Storing, ADyingProcessLeavesAWholeVersion) {
    for (const auto last : {CrashingFiles::LastWrite::none, CrashingFiles::LastWrite::firstHalf})
        for (int64 n = 1;; ++n) {
            MemoryFiles disk;
            prepare(disk);
            CrashingFiles files(disk);
            SCOPED_TRACE(testing::Message() << "killed at change " << n);
            if (!files.diesAt(n, last, CrashingFiles::Manner::throws, [&] { work(files); })) {
                EXPECT_EQ(disk.dump(kFile), form.after);
                EXPECT_GT(n, 1);
                break;
            }
            expectWhole(disk);
        }
}

// Each call of the file system fails once, and from then on; a full disk at every byte.
TEST_P(Storing, AFaultOfTheDiskLeavesAWholeVersion) {
    for (const auto times : {FailingFiles::Times::once, FailingFiles::Times::fromThenOn})
        for (int64 n = 1;; ++n) {
            MemoryFiles disk;
            prepare(disk);
            FailingFiles files(disk);
            files.failAt(n, platform::SystemError::deviceError, times);
            SCOPED_TRACE(testing::Message() << "call " << n);
            try {
                work(files);
            } catch (const Failure&) {
            }
            if (files.failures() == 0) break;
            expectWhole(disk);
        }
    for (uint64 free = 0; free < 40; ++free) {
        MemoryFiles disk;
        prepare(disk);
        disk.setFreeSpace(free);
        SCOPED_TRACE(testing::Message() << free << " bytes free");
        try {
            work(disk);
        } catch (const Failure&) {
        }
        disk.setFreeSpace(std::nullopt);
        expectWhole(disk);
    }
}

std::string nameOf(const testing::TestParamInfo<std::tuple<Form, Manner>>& param) {
    constexpr const char* kManners[] = {"", "Sensible", "SensibleRenaming"};
    const auto& [form, manner] = param.param;
    return form.name + std::string(kManners[static_cast<std::size_t>(manner)]);
}

INSTANTIATE_TEST_SUITE_P(Files, Storing,
                         testing::Combine(testing::ValuesIn(forms()),
                                          testing::Values(Manner::Plain, Manner::Sensible,
                                                          Manner::SensibleRenaming)),
                         nameOf);

// Real processes on a real disk.
class SharedFile : public testing::TestWithParam<bool> {
 protected:
    TempFolder temp;
    TestGround ground;
    StartedLibrary library{ground, platform::posixPlatform().files, platform::posixPlatform().clock};
    const Text name = temp.name(u"Tabelle.tab");

    // A version is one value in every cell, of a length and in a number of its own.
    static constexpr int32 kColumns = 3;
    static std::vector<Text> rowOf(int32 version) {
        return std::vector<Text>(kColumns,
                                 toText(version) + Text(static_cast<std::size_t>(version % 40), u'x'));
    }
    static void fill(DatenTab& table, int32 version) {
        table.Clear(false);
        for (int32 row = 0; row < 20 + version % 100; ++row) table.Add(rowOf(version), false);
    }
    static bool whole(DatenTab& table) {
        const int32 count = table.Count();
        if (count == 0) return false;
        const auto first = table.Record(1);
        const auto version = roundToInt32(Val(first[0]));
        if (!table.Okay() || count != 20 + version % 100) return false;
        for (int32 row = 1; row <= count; ++row)
            if (table.Record(row) != rowOf(version)) return false;
        return true;
    }
    int write(int32 seed, bool sensible) {
        const auto table = onFile<DatenTab>(name, kColumns);
        table->Sensible(sensible);
        for (int32 i = 0; i < 60; ++i) {
            fill(*table, seed + i);
            table->Commit();
        }
        return 0;
    }
};

TEST_P(SharedFile, ReadersSeeWholeVersionsAndWritersLeaveOne) {
    ASSERT_EQ(write(1, false), 0);
    const auto ownerAlone = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;
    std::filesystem::permissions(toUtf8(name), ownerAlone);
    std::vector<std::unique_ptr<ChildProcess>> writers;
    for (const int32 seed : {1000, 2000})
        writers.push_back(std::make_unique<ChildProcess>([&, seed](ChildProcess::Line& line) {
            line.hear();
            const int code = write(seed, GetParam());
            line.say('E');
            return code;
        }));
    ChildProcess reader([&](ChildProcess::Line& line) {
        line.say('R');
        for (int32 i = 0; i < 300; ++i) {
            const auto table = onFile<DatenTab>(name, kColumns);
            if (!whole(*table)) return 1;
        }
        return 0;
    });
    ASSERT_EQ(reader.line().hear(), 'R');
    for (const auto& writer : writers) writer->line().say('G');
    for (const auto& writer : writers) EXPECT_EQ(writer->wait(), 0);
    EXPECT_EQ(reader.wait(), 0);
    const auto table = onFile<DatenTab>(name, kColumns);
    EXPECT_TRUE(whole(*table));
    EXPECT_EQ(std::filesystem::status(toUtf8(name)).permissions(), ownerAlone) << "open to others now";
    // Nothing is left beside it.
    EXPECT_EQ(platform::posixPlatform().files.list(temp.name()).value().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Forms, SharedFile, testing::Bool(),
                         [](const auto& param) { return std::string(param.param ? "Sensible" : "Plain"); });

TEST_F(SharedFile, LinesAddedByTwoProcessesAreAllThere) {
    const auto add = [&](TextView what) {
        const auto list = onFile<DatenSeq>(name, 0, u"", true);
        for (int32 i = 0; i < 100; ++i) list->Add(Text(what) + toText(i));
        return 0;
    };
    add(u"start");
    ChildProcess other([&](ChildProcess::Line& line) {
        line.hear();
        return add(u"theirs");
    });
    other.line().say('G');
    add(u"ours");
    EXPECT_EQ(other.wait(), 0);
    const auto list = onFile<DatenSeq>(name);
    EXPECT_EQ(list->Count(), 300);
    auto lines = linesIn(*list);
    std::sort(lines.begin(), lines.end());
    EXPECT_EQ(std::unique(lines.begin(), lines.end()), lines.end());
}

}  // namespace
}  // namespace tsRtm::test

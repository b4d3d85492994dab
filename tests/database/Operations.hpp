#pragma once
// What somebody does to a database when he dies, or when a call of the files fails, and the states between
// which he leaves it.
#include "tests/database/Deaths.hpp"
#include "tests/database/FullDatabase.hpp"
#include "tsRtm/database/BulkLoader.hpp"

namespace tsRtm::test {

// Keys in order: the left leaf of each tree has as few keys as it may, the right one is full.
inline constexpr int32 kTwoLeaves = 61;
inline constexpr int32 kFew = 18;      // where it is not the keys that matter
inline constexpr int32 kChanged = 17;  // of the left leaf, with a memo and rows
inline constexpr int32 kBare = 16;     // without

// Who has counted the records counts them anew after that.
inline constexpr auto kUntilCounted = std::chrono::seconds(31);

inline Text memo(char16_t letter) { return Text(200, letter); }
// Rows told apart by one letter.
inline TextTable named(TextView letters) {
    TextTable out;
    for (const char16_t letter : letters) out.push_back({Text(1, letter), u"1"});
    return out;
}
inline FullRow numbered(int32 n) {
    FullRow row{u"Name" + toText(1000 + n), u"Ort" + toText(n % 10), u"01022003", u"Text" + toText(n)};
    if (n % 3 == 2) row.notiz = Text(static_cast<std::size_t>(n * 5 % 300), u'x');
    return row;
}

// Number of the new record, 0 where it was not told as stored.
inline int32 append(clsTSDB& db) {
    db.AktSatzNr(kBare);
    if (db.Error() != 0) return 0;
    db.Fields(uNAME, u"Neu");
    const auto record = db.Append();
    return record ? record->Satznummer() : 0;
}
inline int32 addNew(clsTSDB& db) {
    const auto record = db.Add();
    return store(record, {u"Neu", u"Ort9", u"24121998", u"neu"}) ? record->Satznummer() : 0;
}
inline bool update(clsTSDB& db, std::initializer_list<std::pair<int32, TextView>> fields) {
    if (!db.Sperren(kChanged, -1)) return false;
    db.AktSatzNr(kChanged);
    for (const auto& [field, text] : fields) db.Fields(field, text);
    db.Update();
    const bool done = db.Error() == 0;
    db.Entsperren(kChanged);
    return done;
}
inline bool updateKey(clsTSDB& db) { return update(db, {{uNAME, u"Zuletzt"}, {uTAG, u"31121999"}}); }
inline bool load(clsTSDB& db) {
    BulkLoader loader(db);
    for (int32 n = 1; n <= 45; ++n) {
        loader.set(uNAME, u"Neu" + toText(n * 7919 % 997));
        if (!loader.add()) return false;
    }
    return loader.finish();
}
// By a set of rows, which lays its changes over those of others.
inline bool merge(clsTSDB& db) {
    const auto record = db.Record(kChanged);
    const auto set = record ? record->Kette(uPOS) : nullptr;
    if (!set || set->Inhalt() != named(u"de")) return false;
    set->Inhalt(named(u"nEf"));
    return set->Update();
}

// Whether it was told as done.
using Step = std::function<bool(clsTSDB&)>;

enum class Kind { keys, memos, rows, alone, wholeFiles };  // the last two by somebody who is alone

struct Operation {
    Kind kind;
    const char* name;
    std::vector<Step> steps;  // the files of the last kind are all as before a step, or all as behind it
    std::function<bool(clsTSDB&)> first = nullptr;  // what is done to the database before
};

inline const std::vector<Operation>& operations() {
    const auto silent = [](auto work) -> Step {
        return [work](clsTSDB& db) { return work(db), db.Error() == 0; };
    };
    const auto chain = [](TextView letters) -> Step {
        return [letters](clsTSDB& db) { return writeChain(db, kChanged, named(letters)) == 0; };
    };
    const auto row = [](int32 number, End end) -> Step {
        return [number, end](clsTSDB& db) { return addRow(db, number, end, {u"n", u"1"}) == 0; };
    };
    const auto told = [](auto member) -> Step { return [member](clsTSDB& db) { return (db.*member)(); }; };
    const Step add = [](clsTSDB& db) { return addNew(db) > 0; };
    const Step index = silent([](clsTSDB& db) { db.CreateIndex(uORT); });
    const Step unicode = told(&clsTSDB::ConvertToUnicode);
    const auto setMemo = [](clsTSDB& db) {
        db.AktSatzNr(kChanged);
        db.Memo(1, memo(u'n'));
    };
    const FullRow texts{u"Neu", u"", u"", u"", memo(u'n'), u"A=" + memo(u'e')};
    using enum Kind;
    static const std::vector<Operation> table = {
        {keys, "Append", {[](clsTSDB& db) { return append(db) > 0; }}},
        {keys, "Add", {add, add}},
        {keys, "UpdateKey", {updateKey}},
        {keys, "UpdatePlain", {[](clsTSDB& db) {
             return update(db, {{uTEXT, u"anders"}});
         }}},
        {keys, "PutField", {silent([](clsTSDB& db) { db.PutField(kChanged, uTEXT, u"anders"); })}},
        {keys, "Delete", {silent([](clsTSDB& db) { db.Delete(kChanged); })}},
        {memos, "Memo", {silent(setMemo)}},
        {memos, "TwoMemos", {[texts](clsTSDB& db) { return store(db.Record(kChanged), texts); }}},
        {memos, "NewMemos", {[texts](clsTSDB& db) { return store(db.Add(), texts); }}},
        {rows, "Replace", {chain(u"xyz")}},
        {rows, "Shrink", {chain(u"d")}},
        {rows, "Clear", {chain(u"")}},
        {rows, "Grow", {chain(u"defg")}},
        {rows, "FirstRow", {row(kBare, End::tail)}},
        {rows, "Tail", {row(kChanged, End::tail)}},
        {rows, "Head", {row(kChanged, End::head)}},
        {rows, "Merge", {merge}},
        {alone, "Sort", {[](clsTSDB& db) { return db.Sort(); }}},
        {alone, "Bulk", {load}},
        {wholeFiles, "Pack", {told(&clsTSDB::Pack)}},
        {wholeFiles, "PackMemoKette", {told(&clsTSDB::PackMemoKette)}},
        {wholeFiles, "Zap", {silent([](clsTSDB& db) { db.Zap(); })}},
        {wholeFiles, "Rebuild", {told(&clsTSDB::Rebuild)}},
        {wholeFiles, "CreateIndex", {index}},
        {wholeFiles, "DelIndex", {silent([](clsTSDB& db) { db.DelIndex(uNAME); }), index}},
        {wholeFiles, "ConvertToUnicode", {unicode}},
        {wholeFiles, "ConvertToAnsi", {told(&clsTSDB::ConvertToAnsi)}, unicode},
        {wholeFiles, "ConvertToWin", {told(&clsTSDB::ConvertToWin)}}};
    return table;
}

using Case = std::tuple<const Operation*, FullForm>;
inline std::string caseName(const testing::TestParamInfo<Case>& info) {
    const auto& [operation, form] = info.param;
    return std::string(form.max == kBig ? "tree" : "flat") + (form.windows ? "" : "WithoutWindows") +
           operation->name;
}
inline std::vector<Case> cases() {
    const FullForm forms[] = {{kNormal, true, 8}, {kBig, false, 8}, {kBig, true, 4}, {kNormal, false, 11}};
    std::vector<Case> out;
    for (const auto& one : operations())
        for (const auto& form : forms) {
            if (one.kind == Kind::memos && form.chain != 8) continue;
            if (one.kind == Kind::wholeFiles && !form.windows) continue;
            out.emplace_back(&one, form);
        }
    return out;
}
inline std::vector<Case> those(std::initializer_list<std::string> names) {
    auto all = cases();
    std::erase_if(all, [&](const Case& one) {
        const auto& [operation, form] = one;
        const bool flat = form.max == kNormal || operation->kind == Kind::wholeFiles;
        return std::count(names.begin(), names.end(), operation->name) == 0 || form.windows != flat;
    });
    return all;
}

class Deaths : public DyingUsers, public testing::TestWithParam<Case> {
 protected:
    const Operation& operation = *std::get<0>(GetParam());
    const bool wholeFiles = operation.kind == Kind::wholeFiles;
    const bool shared = operation.kind < Kind::alone;
    const bool single = operation.kind == Kind::alone;
    std::vector<FullRows> states;  // before the work, and behind each step

    void SetUp() override {
        disk.offerWindows(std::get<1>(GetParam()).windows);
        auto db = makeFull(rtm, kFolder, std::get<1>(GetParam()));
        ASSERT_TRUE(db);
        const bool keys = operation.kind == Kind::keys || operation.kind == Kind::alone;
        for (int32 n = 1; n <= (keys ? kTwoLeaves : kFew); ++n) {
            ASSERT_TRUE(store(db->Add(), numbered(n)));
            // Rows of a longer chain stay behind as free ones.
            for (const TextView letters : {u"abc", n % 4 == 0 ? u"" : n == kChanged ? u"de" : u"f"})
                ASSERT_EQ(writeChain(*db, n, named(letters)), 0);
            if (n % 3 == 0) db->Delete(n);
        }
        ASSERT_TRUE(!operation.first || operation.first(*db));
        db.reset();
        // Its texts are the same in both code pages.
        for (const TextView name : {u"Control.tsd", u"KetteCtl.007"})
            if (operation.name == std::string("ConvertToWin")) makeDos(name);
        const auto before = disk.snapshot();
        db = openAs(0, false, single);
        ASSERT_TRUE(db);
        states.push_back(rowsOf(*db));
        for (const auto& step : operation.steps) {
            ASSERT_TRUE(step(*db));
            states.push_back(rowsOf(*db));
        }
        db.reset();
        disk.restore(before);
    }
    // How many steps were told as done. What comes behind a failure is not tried.
    std::size_t work(clsTSDB& db) {
        std::size_t done = 0;
        for (const auto& step : operation.steps) {
            if (!step(db) || files.died()) break;
            ++done;
        }
        return done;
    }
    // The state behind as many steps, or the next one. `torn`: the record in work may be neither, for nothing
    // can mend one that was half written over.
    void expectState(const FullRows& found, std::size_t done, bool torn = false) {
        const auto& old = states[done];
        const auto& next = states[std::min(done + 1, states.size() - 1)];
        EXPECT_TRUE(!wholeFiles || found == old || found == next);
        EXPECT_TRUE(wholeFiles || (found.size() >= old.size() && found.size() <= next.size()))
            << found.size();
        for (std::size_t i = 0; i < found.size() && !wholeFiles; ++i) {
            const bool added = i >= old.size();
            if (torn && (added || i + 1 == kChanged)) continue;
            EXPECT_TRUE(found[i] == next[i] || (added ? found[i].deleted : found[i] == old[i]))
                << "record " << i + 1 << " is " << found[i];
        }
    }
    // As if nothing had been.
    void expectGoesOn(clsTSDB& db, FullRows now) {
        FullRow later = numbered(500);
        later.notiz = memo(u'w');
        EXPECT_TRUE(store(db.Add(), later));
        now.push_back(later);
        if (now.size() > kChanged) {
            EXPECT_EQ(change(db, kChanged, uNAME, u"Weiter"), 0);
            now[kChanged - 1].name = u"Weiter";
            now[kChanged - 1].deleted = false;
            for (const int32 number : {kChanged, kBare, 1}) {
                auto& chain = now[static_cast<std::size_t>(number - 1)].chain;
                EXPECT_EQ(addRow(db, number, End::tail, {u"t", u"1"}), 0);
                EXPECT_EQ(addRow(db, number, End::head, {u"h", u"1"}), 0);
                chain.insert(chain.begin(), {u"h", u"1"});
                chain.push_back({u"t", u"1"});
            }
        }
        EXPECT_EQ(rowsOf(db), now);
        EXPECT_TRUE(consistent(db));
        EXPECT_TRUE(!wholeFiles || db.Sort()) << "somebody still has it";
    }
    // The same by a process of its own.
    void expectState(MemoryFiles& left, std::size_t done) {
        Process process(left);
        const auto db = process.rtm.OpenTSDB(kFolder);
        ASSERT_TRUE(db);
        EXPECT_TRUE(consistent(*db));
        const FullRows found = rowsOf(*db);
        expectState(found, done);
        expectGoesOn(*db, found);
    }
};

}  // namespace tsRtm::test

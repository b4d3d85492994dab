#pragma once
// A small database in memory, one file of which is hostile.
//
// Most inputs come under a database that is open, as if another program had written them, and are worked on
// by what reads that file: three in four under the database lock, where nothing is looked at twice. One in
// 512, told by its bytes, and all inputs of a form without such work go the whole way: a sound database gets
// the file, is opened, searched, walked, changed, checked, mended and opened once more.
#include <algorithm>
#include <functional>
#include <vector>

#include "tests/support/MemoryFiles.hpp"
#include "tests/support/TestGround.hpp"
#include "tsRtm/tsRtm.hpp"

namespace tsRtm::fuzz {

struct Form {
    TextView hostile;    // name of the file that is replaced
    int32 most = 50000;  // records: trees from 32768 on
    bool serial = false;
    bool chain = false;
    bool memo = false;
    void (*work)(clsTSDB&) = nullptr;
};

enum Field : int32 { hNAME = 1, hNUMBER, hDATE, hDAY, hWIDE, hSIDE };
constexpr int32 kRecords = 70;
constexpr int32 kIndexes = 4;

// The sound files of the form.
inline test::MemoryFiles::Snapshot soundFiles(const Form& form) {
    test::MemoryFiles disk;
    test::TestGround ground;
    const test::StartedLibrary library(ground, disk);
    clsRtm rtm;
    TSIOArray fields;
    const auto add = [&](int32 typ, int32 length, int32 decimals) {
        auto field = std::make_shared<TSIO>();
        field->Typ(typ);
        field->Laenge(length);
        field->NachKomma(decimals);
        field->Titel(u"F@@7F" + toText(static_cast<int64>(fields.size())));
        fields.push_back(field);
    };
    add(tsAlphanumerisch, 6, 0);
    add(tsNumerisch, 6, 2);
    add(tsDate, 8, 0);
    add(tsDate, 8, 7);
    add(tsAlphanumerisch | fUTF8, 8, 0);
    if (form.serial) add(tsAutowert, 4, 0);
    if (form.chain) {
        add(tsKette, 8, 0);
        disk.put(u"/d/X.DBD/KetteCtl.006", "TS1,2\r\n0,1,1,6,1,\"T\"\r\n0,1,1,4,5,\"Z\"\r\n11,9,0\r\n0\r\n");
    }
    if (form.memo) add(tsMemo, 20, 0);
    rtm.DB_Create(u"/d/X", fields, form.most, u"  1  5  0  2  0  0  3  4  0");
    const auto db = rtm.OpenTSDB(u"/d/X");
    for (int32 n = 0; n < kRecords; ++n) {
        const auto record = db->Add();
        record->Fields(hNAME, u"N" + toText(n * 37 % 41));
        record->Fields(hNUMBER, toText(n));
        record->Fields(hDATE, u"010120" + toText(10 + n % 60));
        record->Fields(hWIDE, n % 3 == 0 ? u"Ωß" : u"b");
        if (form.memo && n % 5 != 0) record->Fields(hSIDE, Text(static_cast<std::size_t>(n * 7 % 100), u'm'));
        record->Update();
        if (!form.chain || n % 7 != 0) continue;
        db->AktSatzNr(n + 1);
        db->KetteSchreiben(1, TextTable(static_cast<std::size_t>(n % 4 + 1), {u"r", toText(n)}));
        if (n % 3 == 0) db->KetteSchreiben(1, {});
    }
    db->Schliesse();
    return disk.snapshot();
}

inline void searchAndWalk(clsTSDB& db, int32 index, int32 steps) {
    db.SetIndex(index);
    for (const TextView key : {u"", u"N12", u"#3", u"#-1", u"zzz", u"01.01.2020"}) {
        db.Gehezu(key);
        static_cast<void>(db.Exist(key, index));
        static_cast<void>(db.Rang(key));
    }
    db.MoveFirst();
    for (; steps > 0 && !db.EOFile(); --steps) {
        for (int32 field = 0; field <= db.CtrlEintraege() && field < 12; ++field)
            static_cast<void>(db.Fields(field));
        db.MoveNext();
    }
}

inline void change(clsTSDB& db, int32 record) {
    db.AktSatzNr(record);
    db.Fields(hNAME, u"N" + toText(record * 7 % 41));
    db.Update();
}

inline void add(clsTSDB& db) {
    const auto record = db.Add();
    if (!record) return;
    record->Fields(hNAME, u"neu");
    record->Update();
}

inline void workOnIndex(clsTSDB& db) {
    searchAndWalk(db, 1, 20);
    change(db, 3);
    add(db);
}

inline void workOnRecords(clsTSDB& db) {
    searchAndWalk(db, 1, 20);
    searchAndWalk(db, 0, 10);
    change(db, 3);
}

inline void workOnChain(clsTSDB& db, int32 record) {
    TextTable rows;
    db.AktSatzNr(record);
    static_cast<void>(db.KetteLesen(1, rows));
    rows.insert(rows.begin(), {u"n", u"1"});
    int32 count = 1;
    db.KetteAction(record % 2 == 0 ? 5 : 7, hSIDE, rows, count);
    if (record % 3 == 0) db.KetteSchreiben(1, rows);
}

inline void workOnMemo(clsTSDB& db, int32 number) {
    const auto record = db.Record(number);
    if (!record || record->Fields(hSIDE).size() % 2 == 0) return;
    record->Fields(hSIDE, Text(static_cast<std::size_t>(number), u'n'));
    record->Update();
}

inline void useAll(clsTSDB& db) {
    for (int32 index = 0; index <= kIndexes; ++index) {
        searchAndWalk(db, index, kRecords + 20);
        static_cast<void>(db.Finde(u"ß"));
    }
    for (int32 record = 1; db.AnzahlKetten() > 0 && record < kRecords; record += 7) workOnChain(db, record);
    for (int32 record = 1; db.AnzahlMemos() > 0 && record < kRecords; record += 6) workOnMemo(db, record);
    add(db);
    change(db, 3);
    db.Delete(2);
    static_cast<void>(db.GetSatz(1));
}

// The fuzzer's bytes as a file: those of an odd first byte are patches of the sound file (two bytes place,
// one byte value each), which reach deep into a format; all others are the file itself.
inline Bytes fileOf(BytesView input, Bytes sound) {
    if (input.empty() || (input[0] & 1) == 0 || sound.empty())
        return Bytes(input.substr(std::min<std::size_t>(1, input.size())));
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(input[i]); };
    // The second byte may cut the file short.
    if (input.size() > 1 && byte(1) < 64) sound.resize(sound.size() * (byte(1) + 1) / 64);
    for (std::size_t i = 2; i + 2 < input.size() && !sound.empty(); i += 3)
        sound[(byte(i) * 256u + byte(i + 1)) % sound.size()] = input[i + 2];
    return sound;
}

// What the library may raise on damage is no fault; a crash, a hang or a read outside a buffer is. The
// library is started once.
class Trial {
 public:
    explicit Trial(const Form& form)
        : form_(form), name_(Text(u"/d/X.DBD/").append(form.hostile)), sound_(soundFiles(form)) {
        disk_.restore(sound_);
        ground_.ui.defaultAnswer = 7;
        if (disk_.exists(name_)) soundFile_ = disk_.dump(name_);
        library_.emplace(ground_, disk_);
    }

    int run(BytesView input) {
        ground_.ui.boxes.clear();
        const Bytes file = fileOf(input, soundFile_);
        const std::size_t drawn = std::hash<BytesView>()(input);
        if (!form_.work || drawn % kWhole == 0)
            wholeWay(file);
        else
            underWork(file, drawn % 4 != 0);
        return 0;
    }

 private:
    static constexpr std::size_t kWhole = 512;

    template <class Work>
    static void guarded(Work work) {
        try {
            work();
        } catch (const Failure&) {
        }
    }

    void open() {
        guarded([&] { db_ = rtm_.OpenTSDB(u"/d/X"); });
    }

    void wholeWay(BytesView file) {
        db_.reset();
        disk_.restore(sound_);
        disk_.put(name_, file);
        open();
        if (db_) {
            guarded([&] { useAll(*db_); });
            guarded([&] { db_->Check(true, {}); });
            guarded([&] { useAll(*db_); });
            db_.reset();
            guarded([&] { db_ = rtm_.OpenTSDB(u"/d/X", true); });
            if (db_) guarded([&] { useAll(*db_); });
        }
        db_.reset();
        disk_.restore(sound_);
    }

    void underWork(BytesView file, bool locked) {
        if (!db_) open();
        disk_.put(name_, file);
        if (locked) guarded([&] { db_->LockDB(true); });
        guarded([&] { form_.work(*db_); });
        if (locked) db_->LockDB(false);
        for (const auto& [name, entry] : sound_)
            if (!entry.status.folder &&
                (!disk_.exists(entry.name) || disk_.dump(entry.name) != entry.content))
                disk_.put(entry.name, entry.content);
    }

    const Form form_;
    const Text name_;
    const test::MemoryFiles::Snapshot sound_;
    Bytes soundFile_;
    test::MemoryFiles disk_;
    test::TestGround ground_;
    std::optional<test::StartedLibrary> library_;
    clsRtm rtm_;
    std::shared_ptr<clsTSDB> db_;
};

// Where memory was allocated is told on demand (ASAN_OPTIONS=malloc_context_size=30): to keep it at each
// allocation takes a tenth of the time.
constexpr const char* kSanitizerOptions = "malloc_context_size=0";

// An open database keeps memory from one input to the next, which the fuzzer takes for leaks and looks for at
// each; and it weighs its inputs anew at each, which costs more than most inputs do.
inline void addOptions(int* count, char*** texts) {
    static char leaks[] = "-detect_leaks=0";
    static char entropic[] = "-entropic=0";
    static std::vector<char*> all(*texts, *texts + *count);
    // In front, so that who asks for them on the command line has his way.
    all.insert(all.begin() + 1, {leaks, entropic});
    *count = static_cast<int>(all.size());
    all.push_back(nullptr);
    *texts = all.data();
}

}  // namespace tsRtm::fuzz

#define TSRTM_FUZZ_DATABASE(...)                                                               \
    extern "C" int LLVMFuzzerInitialize(int* count, char*** texts) {                           \
        tsRtm::fuzz::addOptions(count, texts);                                                 \
        return 0;                                                                              \
    }                                                                                          \
    extern "C" const char* __asan_default_options() { return tsRtm::fuzz::kSanitizerOptions; } \
    extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {       \
        static tsRtm::fuzz::Trial trial(__VA_ARGS__);                                          \
        if (size > 20000) return 0;                                                            \
        return trial.run({reinterpret_cast<const char*>(data), size});                         \
    }

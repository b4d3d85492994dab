#pragma once
// A small database in memory, one file of which is hostile: opened, searched, walked, changed, checked and
// rebuilt.
#include <algorithm>

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
};

// The sound files of the form, made once per program.
inline const test::MemoryFiles::Snapshot& soundFiles(const Form& form) {
    static const test::MemoryFiles::Snapshot files = [&] {
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
            disk.put(u"/d/X.DBD/KetteCtl.006",
                     "TS1,2\r\n0,1,1,6,1,\"T\"\r\n0,1,1,4,5,\"Z\"\r\n11,9,0\r\n0\r\n");
        }
        if (form.memo) add(tsMemo, 20, 0);
        rtm.DB_Create(u"/d/X", fields, form.most, u"  1  5  0  2  0  0  3  4  0");
        const auto db = rtm.OpenTSDB(u"/d/X");
        for (int32 n = 0; n < 70; ++n) {
            const auto record = db->Add();
            record->Fields(1, u"N" + toText(n * 37 % 41));
            record->Fields(2, toText(n));
            record->Fields(3, u"010120" + toText(10 + n % 60));
            record->Fields(5, n % 3 == 0 ? u"Ωß" : u"b");
            if (form.memo && n % 5 != 0) record->Fields(6, Text(static_cast<std::size_t>(n * 7 % 100), u'm'));
            record->Update();
            if (!form.chain || n % 7 != 0) continue;
            db->AktSatzNr(n + 1);
            db->KetteSchreiben(1, TextTable(static_cast<std::size_t>(n % 4 + 1), {u"r", toText(n)}));
            if (n % 3 == 0) db->KetteSchreiben(1, {});
        }
        db->Schliesse();
        return disk.snapshot();
    }();
    return files;
}

inline void use(clsTSDB& db) {
    const TextView keys[] = {u"", u"N12", u"#3", u"#-1", u"zzz", u"01.01.2020"};
    for (int32 index = 0; index <= 4; ++index) {
        db.SetIndex(index);
        for (const auto key : keys) {
            db.Gehezu(key);
            static_cast<void>(db.Exist(key, index));
            static_cast<void>(db.Rang(key));
        }
        db.MoveFirst();
        for (int32 step = 0; step < 90 && !db.EOFile(); ++step) {
            for (int32 field = 0; field <= db.CtrlEintraege() && field < 12; ++field)
                static_cast<void>(db.Fields(field));
            db.MoveNext();
        }
        static_cast<void>(db.Finde(u"ß"));
    }
    for (int32 record = 1; db.AnzahlKetten() > 0 && record < 70; record += 7) {
        TextTable rows;
        db.AktSatzNr(record);
        static_cast<void>(db.KetteLesen(1, rows));
        rows.insert(rows.begin(), {u"n", u"1"});
        int32 count = 1;
        db.KetteAction(record % 2 == 0 ? 5 : 7, 6, rows, count);
        if (record % 3 == 0) db.KetteSchreiben(1, rows);
    }
    for (int32 number = 1; db.AnzahlMemos() > 0 && number < 70; number += 6) {
        const auto record = db.Record(number);
        if (!record || record->Fields(6).size() % 2 == 0) continue;
        record->Fields(6, Text(static_cast<std::size_t>(number), u'n'));
        record->Update();
    }
    if (const auto record = db.Add()) {
        record->Fields(1, u"neu");
        record->Update();
    }
    db.AktSatzNr(3);
    db.Fields(1, u"anders");
    db.Update();
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

// What the library may raise on damage is no fault; a crash, a hang or a read outside a buffer is.
inline int run(const Form& form, BytesView hostile) {
    test::MemoryFiles disk;
    disk.restore(soundFiles(form));
    const Text name = Text(u"/d/X.DBD/").append(form.hostile);
    disk.put(name, fileOf(hostile, disk.exists(name) ? disk.dump(name) : Bytes()));
    test::TestGround ground;
    ground.ui.defaultAnswer = 7;
    const test::StartedLibrary library(ground, disk);
    clsRtm rtm;
    const auto guarded = [](auto work) {
        try {
            work();
        } catch (const Failure&) {
        }
    };
    std::shared_ptr<clsTSDB> db;
    guarded([&] { db = rtm.OpenTSDB(u"/d/X"); });
    if (!db) return 0;
    guarded([&] { use(*db); });
    guarded([&] { db->Check(true, {}); });
    guarded([&] { use(*db); });
    db->Schliesse();
    db.reset();
    guarded([&] { db = rtm.OpenTSDB(u"/d/X", true); });
    if (db) guarded([&] { use(*db); });
    return 0;
}

}  // namespace tsRtm::fuzz

#define TSRTM_FUZZ_DATABASE(...)                                                           \
    extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {   \
        if (size > 20000) return 0;                                                        \
        return tsRtm::fuzz::run(__VA_ARGS__, {reinterpret_cast<const char*>(data), size}); \
    }

#pragma once
// Users at work on one database, real processes on real files, and a board beside it on which stands what
// each of them was told. Each user changes keys and memos under record locks, fields of his own in
// everybody's records and rows of his own in their chains, adds records and searches for what is always
// there; now and then all close and one of them reorganises. Whatever was told to be stored has to be there,
// from the first to the last, and whoever looks has to see it.
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <random>

#include "tests/stress/Apart.hpp"
#include "tests/stress/Board.hpp"
#include "tests/support/Table.hpp"
#include "tsRtm/tsRtm.hpp"

namespace tsRtm::test {

using Clock = std::chrono::steady_clock;

inline constexpr int32 kRecords = 300;                                  // at first
inline constexpr int32 kFixed = 40;                                     // whose keys nobody changes
inline constexpr int32 kMostRows = 5;                                   // of one user in one chain
enum Field : int32 { fKEY = 1, fVERSION, fTEXT, fMEMO, fCHAIN, fOWN };  // fOWN + user

// Of a database: its index is an array or a tree by `max`.
struct Form {
    int32 max;
    int32 text;
    eDBTyp typ;
    bool windows = true;  // on its files
};

inline Text fixedKey(int32 record) { return u"Fest" + toText(1000 + record); }
// Key and text of a version; a record that shows another pair is torn.
inline Text keyOf(int32 record, int32 version) {
    return record <= kFixed ? fixedKey(record) : u"Käse" + toText(version * 7919 % 997);
}
inline Text textOf(int32 version, int32 length) {
    return Text(static_cast<std::size_t>(length), static_cast<char16_t>(u'a' + version % 26));
}
inline Text memoOf(int32 version) { return textOf(version, 1 + version * 131 % 700); }

class User {
 public:
    enum Kind { worker, reader, leavesAtRefusal };
    User(const Form& form, const Text& folder, int32 me, uint32 seed, Kind kind = worker)
        : form_(form), folder_(folder), me_(me), kind_(kind), random_(seed) {}

    void work() {
        while (!board->stop && (kind_ != leavesAtRefusal || refusals_ == 0)) {
            if (board->alone != 0 && board->alone != me_ + 1) {
                close();
                ::usleep(1000);
                continue;
            }
            board->open[me_] = true;
            if (!db_ && !(db_ = rtm_.OpenTSDB(folder_, kind_ == reader))) {
                refused(1);
                continue;
            }
            const auto start = Clock::now();
            try {
                step(1 + below(board->records));
            } catch (const Failure& failure) {
                std::printf("raised %d: %s\n", failure.Number(), toUtf8(failure.Description()).c_str());
                if (kind_ == leavesAtRefusal) break;
                fault("failure", 0, failure.Number());
            }
            const auto took = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
            if (took.count() > board->longest) board->longest = took.count();
            ++board->works[me_];
            if (below(50) == 0) close();
        }
        close();
    }
    // The first records, by one who is alone.
    void begin() {
        db_ = rtm_.OpenTSDB(folder_);
        while (board->records < kRecords && board->faults == 0) add(board->records + 1);
    }
    // By somebody who comes when nobody is at work.
    void verify() {
        if (!(db_ = rtm_.OpenTSDB(folder_))) return fault("opening", 0);
        if (!db_->Check(false, {})) {
            fault("check", 0);
            for (const auto& line : db_->Befunde()) std::printf("  %s\n", toUtf8(line).c_str());
        }
        const int32 count = std::min(db_->AnzahlDSaetze(), kMost);
        if (count < board->records) fault("count", board->records, count);
        for (int32 record = 1; record <= count; ++record) {
            board->at[record].holder = 0;
            if (db_->Gesperrt(record)) fault("lock left", record);
            if (!look(record)) continue;
            for (int32 user = 0; user < kUsers; ++user) own(user, record);
            for (int32 user = 0; user < kUsers; ++user) rows(user, record);
        }
        for (int32 record = 1; record <= kFixed; ++record) search(record);
        board->records = pack(count);
    }

 private:
    void close() {
        db_.reset();
        board->open[me_] = false;
    }
    int32 below(int32 limit) { return static_cast<int32>(random_() % static_cast<uint32>(limit)); }
    bool refused(int32 error) {
        if (error == 0) return false;
        ++board->refusals;
        ++refusals_;
        return true;
    }

    // Takes out what deaths in adding left, from the board, too; how many records there are then.
    int32 pack(int32 count) {
        int32 left = 0;
        for (int32 record = 1; record <= count; ++record) {
            db_->AktSatzNr(record);
            if (!db_->IsDeleted() && ++left != record) board->at[left].take(board->at[record]);
        }
        if (!db_->Pack()) fault("packing", 0, db_->Error());
        if (db_->AnzahlDSaetze() != left) fault("packed", left, db_->AnzahlDSaetze());
        for (int32 record = left + 1; record <= count; ++record) board->at[record].clear();
        return left;
    }
    void step(int32 record) {
        if (kind_ == reader)
            return below(2) == 0 ? search(1 + below(kFixed)) : static_cast<void>(look(record));
        switch (below(11)) {
            case 0:
            case 1:
                return change(record);
            case 2:
                if (below(4) == 0 && board->records < kMost - kUsers) add(kFixed + 1);
                return;
            case 3:
                return note(record, false);
            case 4:
                return note(record, true);
            case 5:
                static_cast<void>(look(record));
                return;
            case 6:
                return below(4) == 0 ? scan() : walk();
            case 7:
                return rowOf(record);
            case 8:
                if (below(200) == 0) reorganise();
                return;
            default:
                return search(1 + below(kFixed));
        }
    }
    void fill(clsTSRecord& record, int32 version, int32 number) {
        record.Fields(fKEY, keyOf(number, version));
        record.Fields(fVERSION, toText(version));
        record.Fields(fTEXT, textOf(version, form_.text));
        record.Fields(fMEMO, memoOf(version));
    }
    // Reads a record; false where it was never filled. Under its lock, where nobody works, and where nobody
    // came by meanwhile, its version is what was told.
    bool look(int32 record) {
        auto& at = board->at[record];
        const bool mine = at.holder == me_ + 1 || me_ == kUsers;
        const bool quiet = at.quiet();
        const int32 told = at.version.stored;
        db_->AktSatzNr(record);
        if (refused(db_->Error())) return false;
        const int32 version = number(db_->Fields(fVERSION));
        if (version == 0) {
            if (!db_->IsDeleted() && told != 0) fault("lost record", record);
            return false;
        }
        if (db_->Fields(fKEY) != keyOf(record, version) || db_->Fields(fTEXT) != textOf(version, form_.text))
            fault("torn record", record, version);
        const bool missed = !db_->Exist(keyOf(record, version), 1) && !refused(db_->Error());
        const auto object = db_->Record(record);
        const Text memo = object ? object->Fields(fMEMO) : Text();
        const bool noMemo = memo != memoOf(version) && !(object && refused(object->Error()));
        if (!mine && !(quiet && at.quiet() && at.version.stored == told)) return true;
        if (missed) fault("missed by its key", record, version);
        if (told != 0 && !at.version.admits(version)) fault("lost version", record, version, told);
        if (noMemo) fault("lost memo", record, static_cast<int32>(memo.size()), version);
        if (mine) at.version.settle(version);
        return true;
    }
    void own(int32 user, int32 record) {
        auto& told = board->at[record].own[user];
        const int32 have = number(db_->GetField(record, fOWN + user));
        if (refused(db_->Error())) return;
        if (!told.admits(have)) fault("lost field", record, have, told.stored);
        told.settle(have);
    }
    void change(int32 record) {
        if (!db_->Sperren(record, -1)) return static_cast<void>(refused(db_->Error()));
        auto& at = board->at[record];
        const int32 before = at.holder.exchange(me_ + 1);
        if (before != 0 && !board->dying[before - 1]) fault("lock of two", record, me_, before - 1);
        const auto object = look(record) ? db_->Record(record) : nullptr;
        if (object) {
            const int32 version = ++board->version;
            at.version.tried = version;
            fill(*object, version, record);
            if (object->Update())
                at.version.stored = version;
            else
                refused(object->Error());
        }
        at.holder = 0;
        db_->Entsperren(record);
    }
    void add(int32 expected) {
        const auto object = db_->Add();
        if (!object) return static_cast<void>(refused(db_->Error()));
        const int32 version = ++board->version;
        fill(*object, version, expected);
        if (!object->Update()) return static_cast<void>(refused(object->Error()));
        const int32 record = object->Satznummer();
        if (record > kMost) return;
        if (board->at[record].version.stored != 0) fault("number given twice", record);
        board->at[record].version.settle(version);
        for (int32 last = board->records;
             record > last && !board->records.compare_exchange_weak(last, record);) {
        }
    }
    // A field that only this user changes, in a record that anybody may be changing.
    void note(int32 record, bool directly) {
        auto& told = board->at[record].own[me_];
        own(me_, record);
        const int32 value = 1 + (++board->version) % 99999;
        told.tried = value;
        int32 error = 0;
        if (directly) {
            db_->PutField(record, fOWN + me_, toText(value));
            error = db_->Error();
        } else {
            const auto object = db_->Record(record);
            if (!object) return static_cast<void>(refused(db_->Error()));
            object->Fields(fOWN + me_, toText(value));
            if (!object->Update()) error = object->Error();
        }
        if (!refused(error)) told.stored = value;
    }
    // The rows of a user in a chain are numbered from 1; gives how many there are, less than none where it
    // can't be read.
    int32 rows(int32 user, int32 record) {
        const auto object = db_->Record(record);
        const auto set = object ? object->Kette(fCHAIN) : nullptr;
        if (!set) return refused(db_->Error()), -1;
        const auto cells = set->Inhalt();
        if (refused(db_->Error())) return -1;
        int32 have = 0;
        for (const auto& row : cells)
            if (number(row[0]) == user + 1 && number(row[1]) != ++have)
                fault("row of a chain", record, number(row[1]), have);
        auto& told = board->at[record].rows[user];
        if (!told.admits(have)) fault("lost row", record, have, told.stored);
        told.settle(have);
        return have;
    }
    void rowOf(int32 record) {
        const int32 have = rows(me_, record);
        if (have < 0) return;
        auto& told = board->at[record].rows[me_];
        const auto set = db_->Record(record)->Kette(fCHAIN);
        bool stored = false;
        if (have < kMostRows) {
            told.tried = have + 1;
            const auto row = set->Add(false);
            row->Fields(1, toText(me_ + 1));
            row->Fields(2, toText(have + 1));
            stored = row->Update();
        } else {
            told.tried = have - 1;
            const auto cells = set->Inhalt();
            for (int32 i = 1; i <= static_cast<int32>(cells.size()); ++i) {
                const auto& row = cells[static_cast<std::size_t>(i - 1)];
                if (number(row[0]) != me_ + 1 || number(row[1]) != have) continue;
                stored = set->Remove(i) && set->Update();
                break;
            }
        }
        if (stored) return told.settle(told.tried);
        refused(db_->Error());
    }
    void reorganise() {
        int32 nobody = 0;
        if (!board->alone.compare_exchange_strong(nobody, me_ + 1)) return;
        const auto othersWork = [this] {
            for (int32 user = 0; user < kUsers; ++user)
                if (user != me_ && board->open[user]) return true;
            return false;
        };
        for (int32 i = 0; i < 1000 && othersWork(); ++i) ::usleep(1000);
        if (below(2) == 0 ? db_->PackMemoKette() : db_->Sort())
            ++board->reorganised;
        else
            refused(db_->Error());
        board->alone = 0;
    }
    void search(int32 record) {
        if (!db_->Exist(fixedKey(record), 1) && !refused(db_->Error())) fault("missed", record);
        db_->SetIndex(1);
        db_->Gehezu(fixedKey(record));
        if (refused(db_->Error())) return;
        if (db_->AktSatzNr() != record || db_->Fields(fKEY) != fixedKey(record))
            fault("found another", record, db_->AktSatzNr());
    }
    void walk() {
        db_->SetIndex(1);
        db_->Gehezu(u"#" + toText(1 + below(board->records)));
        for (int32 i = 0; i < 20 && db_->Error() == 0; ++i) db_->MoveNext();
        static_cast<void>(db_->Error());
    }
    void scan() {
        RecordScan all(*db_);
        while (all.next()) {
            const int32 version = number(Text(all.value(fVERSION)));
            if (version != 0 && (all.value(fKEY) != keyOf(all.number(), version) ||
                                 all.value(fTEXT) != textOf(version, form_.text)))
                fault("torn in a scan", all.number(), version);
        }
        refused(db_->Error());
    }

    const Form& form_;
    Text folder_;
    int32 me_;
    Kind kind_;
    std::mt19937 random_;
    int64 refusals_ = 0;
    clsRtm rtm_;
    std::shared_ptr<clsTSDB> db_;
};

// Makes the database and its first records, by somebody who is alone.
inline void prepare(const Form& form, const Text& folder) {
    clsRtm rtm;
    TSIOArray fields;
    const auto field = [&](const Text& name, int32 length, eTyp typ = tsAlphanumerisch) {
        fields.push_back(std::make_shared<TSIO>());
        fields.back()->Typ(typ);
        fields.back()->Laenge(length);
        fields.back()->Titel(name + u"@@7" + name);
    };
    field(u"KEY", 10);
    field(u"VERSION", 9);
    field(u"TEXT", form.text);
    field(u"MEMO", 60, tsMemo);
    field(u"CHAIN", 8, tsKette);
    for (int32 user = 0; user < kUsers; ++user) field(u"OWN" + toText(user), 6);
    if (!rtm.DBCreateExt(form.typ, folder, {}, fields, form.max, u"  1  0  0  2  0  0"))
        return fault("creation", 0);
    std::ofstream(toUtf8(folder + u".DBD/KetteCtl.005"), std::ios::binary)
        << "TS1,2\r\n0,1,1,4,1,\"User@@7USER\"\r\n0,2,1,6,1,\"Zahl@@7ZAHL\"\r\n11,100,0\r\n0\r\n";
    User(form, folder, kUsers, 1).begin();
}

// Work in a process of its own, to its end; false where it did not come there.
template <class Work>
bool asOne(const Form& form, Work work) {
    int status = 0;
    ::waitpid(apart(form.windows, work), &status, 0);
    if (status != 0) fault("end of a process", status);
    return status == 0;
}
// Holds all that is stored against the board, when nobody is at work.
inline bool verify(const Form& form, const Text& folder) {
    return asOne(form, [&] { User(form, folder, kUsers, 1).verify(); });
}

}  // namespace tsRtm::test

#include "tests/share/ShareUser.hpp"

#include <cstdio>
#include <fstream>

namespace tsRtm::test {
namespace {

constexpr int32 kNo = 7;
constexpr TextView kDeleted = u"*";
constexpr int32 kAddAtEnd = 5;

}  // namespace

std::shared_ptr<clsTSDB> makeOffice(clsRtm& rtm, const std::string& folder) {
    const Text name = fromUtf8(folder + "/Adressen");
    TSIOArray fields = addressFields();
    for (auto& field : fieldsOf({{u"NOTIZ", tsMemo, 60}, {u"POS", tsKette, 8}})) fields.push_back(field);
    if (!rtm.DBCreateExt(DBAnsi, name, {}, fields, kBig, kAddressIndexes)) return nullptr;
    std::ofstream(folder + "/Adressen.DBD/KetteCtl.006", std::ios::binary)
        << "TS1,1\r\n0,1,1,12,1,\"Text@@7TEXT\"\r\n13,100,0\r\n0\r\n";
    return rtm.OpenTSDB(name);
}

ShareUser::ShareUser(Board& board, const std::string& folder, int32 user, bool readOnly)
    : board_(board),
      user_(user),
      readOnly_(readOnly),
      random_(static_cast<uint32>(user) + 1),
      real_(ground_.on(platform::posixPlatform().files, platform::posixPlatform().clock)) {
    ground_.ui.defaultAnswer = kNo;
    ground_.system.folders[platform::FolderId::applicationData] = fromUtf8(folder);
    rtmMain::TEST_restart(real_);
    rtm_ = std::make_unique<clsRtm>();
    db_ = rtm_->OpenTSDB(fromUtf8(folder + "/Adressen"), readOnly);
    if (db_) db_->SetIndex(1);
    if (db_ && !readOnly) adopt();
}

ShareUser::~ShareUser() {
    db_.reset();
    rtm_.reset();
    rtmMain::TEST_forget();
}

void ShareUser::hearBoxes() {
    for (; heard_ < ground_.ui.boxes.size(); ++heard_)
        board_.say(ground_.ui.boxes[heard_].headline + u" " + ground_.ui.boxes[heard_].body);
}

bool ShareUser::done(bool success, std::atomic<int64>& count) {
    hearBoxes();
    ++(success ? count : board_.refused);
    return success;
}

void ShareUser::wrong(const std::string& what) {
    ++board_.wrong;
    std::printf("  WRONG, user %d%s: %s\n", user_, readOnly_ ? " (reads only)" : "", what.c_str());
    std::fflush(stdout);
}

void ShareUser::adopt() {
    for (int32 row = 0; row < kRows; ++row) {
        const RowState state = board_.state(user_, row);
        if (state.word() == 0) continue;
        numbers_.resize(static_cast<std::size_t>(row) + 1, 0);
        if (state.versions > 0 && standsOn(contentOf(user_, row, state.versions)))
            numbers_.back() = db_->AktSatzNr();
    }
}

bool ShareUser::standsOn(const Address& row) {
    db_->Gehezu(keyOf(row));
    return db_->Error() == 0 && !db_->EOFile() && db_->Fields(fNAME) == row.name;
}

bool ShareUser::shows(const Address& row, bool deleted) {
    return !db_->EOFile() && db_->Fields(fNAME) == row.name && db_->Fields(fORT) == row.ort &&
           db_->IsDeleted() == deleted;
}

bool ShareUser::add() {
    const auto row = static_cast<int32>(numbers_.size());
    if (full()) return true;
    board_.state(user_, row, {1, false, true});
    const int32 number = addAddress(*db_, contentOf(user_, row, 1));
    if (!done(number > 0, board_.adds)) return false;
    db_->Entsperren(number);
    numbers_.push_back(number);
    board_.state(user_, row, {1, false, false});
    return true;
}

bool ShareUser::change(int32 row) {
    const int32 number = numbers_[static_cast<std::size_t>(row)];
    const RowState before = board_.state(user_, row);
    if (!done(db_->Sperren(number, -1), board_.changes)) return false;
    --board_.changes;
    board_.state(user_, row, {before.versions, before.deleted, true});
    db_->AktSatzNr(number);
    const Address old = contentOf(user_, row, before.versions);
    if (db_->Fields(fNAME) != old.name && db_->Error() == 0)
        wrong("record " + std::to_string(number) + " is " + toUtf8(db_->Fields(fNAME)) + ", not " +
              toUtf8(old.name));
    const Address now = contentOf(user_, row, before.versions + 1);
    db_->Fields(fNAME, now.name);
    db_->Fields(fORT, now.ort);
    db_->Fields(fBETRAG, now.betrag);
    db_->Update();
    const bool stored = done(db_->Error() == 0, board_.changes);
    db_->Entsperren(number);
    if (stored) board_.state(user_, row, {before.versions + 1, false, false});
    return stored;
}

bool ShareUser::mark(int32 row) {
    const int32 number = numbers_[static_cast<std::size_t>(row)];
    const RowState before = board_.state(user_, row);
    board_.state(user_, row, {before.versions, before.deleted, true});
    db_->PutField(number, 0, before.deleted ? u" " : kDeleted);
    if (!done(db_->Error() == 0, board_.marks)) return false;
    board_.state(user_, row, {before.versions, !before.deleted, false});
    return true;
}

bool ShareUser::note(int32 row) {
    const RowState before = board_.note(user_, row);
    const uint32 now = before.versions + 1;
    board_.note(user_, row, {before.versions, false, true});
    db_->AktSatzNr(numbers_[static_cast<std::size_t>(row)]);
    db_->Memo(1, noteOf(user_, row, now));
    bool stored = db_->Error() == 0;
    TextTable rows = rowsOf(user_, row, now);
    if (stored && rows.size() < 2) {
        db_->KetteSchreiben(1, rows);
    } else if (stored) {
        TextTable last{{}, rows.back()};
        int32 count = 1;
        db_->KetteAction(kAddAtEnd, fPOS, last, count);
    }
    stored = stored && db_->Error() == 0;
    if (stored) board_.note(user_, row, {now, false, false});
    return done(stored, board_.noted);
}

bool ShareUser::hasNote(int32 owner, int32 row, uint32 version) {
    TextTable rows;
    db_->KetteLesen(1, rows);
    const Text memo = version == 0 ? Text() : noteOf(owner, row, version);
    return db_->Memo(1) == memo && rows == rowsOf(owner, row, version);
}

bool ShareUser::lookAtNote(int32 owner, int32 row, uint32 version) {
    const RowState before = board_.note(owner, row);
    const Address address = contentOf(owner, row, version);
    if (before.busy || version == 0) return true;
    db_->Gehezu(keyOf(address));
    const bool found = db_->Error() == 0 && db_->Fields(fNAME) == address.name;
    const bool right = found && hasNote(owner, row, before.versions);
    if (!done(db_->Error() == 0, readOnly_ ? board_.looks : board_.searches)) return false;
    const bool stood = board_.note(owner, row) == before && board_.state(owner, row).versions == version &&
                       !board_.state(owner, row).busy;
    if (stood && !right) wrong("memo or rows of " + toUtf8(address.name) + (found ? "" : ", not found"));
    return true;
}

bool ShareUser::lookAtFixed() {
    const Address row = fixedRow(random(kFixed));
    db_->Gehezu(keyOf(row));
    if (!done(db_->Error() == 0, readOnly_ ? board_.looks : board_.searches)) return false;
    if (!shows(row, false)) wrong("a search for " + toUtf8(row.name) + " gave " + toUtf8(db_->Fields(fNAME)));
    return true;
}

bool ShareUser::look() {
    const int32 owner = random(kUsers);
    const int32 row = random(static_cast<int32>(board_.adds / kUsers) + 20) % kRows;
    const RowState before = board_.state(owner, row);
    if (before.busy || random(4) == 0) return lookAtFixed();
    if (random(3) == 0) return lookAtNote(owner, row, before.versions);
    const Address want = contentOf(owner, row, std::max(before.versions, 1u));
    const Address gone = contentOf(owner, row, before.versions > 1 ? before.versions - 1 : 9999);
    bool right = true;
    std::string gave;
    if (before.versions != 0) {
        db_->Gehezu(keyOf(want));
        right = shows(want, before.deleted);
        gave = toUtf8(db_->Fields(fNAME)) + (db_->IsDeleted() ? " deleted" : "") +
               (db_->EOFile() ? " behind the last" : "");
    }
    const bool ghost = db_->Exist(keyOf(before.versions == 0 ? want : gone), 1);
    if (!done(db_->Error() == 0, readOnly_ ? board_.looks : board_.searches)) return false;
    // Its owner came by meanwhile.
    if (board_.state(owner, row) != before) return true;
    if (!right) wrong("a search for " + toUtf8(keyOf(want)) + " gave " + gave);
    if (ghost) wrong("found what is not there: " + toUtf8(before.versions == 0 ? want.name : gone.name));
    return true;
}

void ShareUser::work(bool endsAtRefusal) {
    while (!board_.stop) {
        const int32 what = random(10);
        bool success = true;
        const auto own = static_cast<int32>(numbers_.size());
        try {
            if (readOnly_ || what >= 6)
                success = look();
            else if (what < 2 || own == 0)
                success = add();
            else if (const int32 row = random(own); numbers_[static_cast<std::size_t>(row)] > 0)
                success = what < 4 ? change(row) : what < 5 ? note(row) : mark(row);
        } catch (const Failure& failure) {
            hearBoxes();
            ++board_.refused;
            board_.say(failure.Description());
            success = false;
        }
        // What was refused may be there or not: the row stays busy, and its owner leaves it alone.
        if (!success && endsAtRefusal) return;
        if (!success) db_->Error();
    }
}

bool ShareUser::settleAndPack() {
    for (int32 owner = 0; owner < kUsers; ++owner)
        for (int32 row = 0; row < kRows; ++row) {
            RowState state = board_.state(owner, row);
            if (state.word() == 0) continue;
            if (state.busy && standsOn(contentOf(owner, row, state.versions + 1)))
                ++state.versions;
            else if (state.versions == 0 || !standsOn(contentOf(owner, row, state.versions)))
                state.versions = 0;
            state = {state.versions, state.versions > 0 && db_->IsDeleted(), false};
            RowState note = board_.note(owner, row);
            if (note.busy && state.versions > 0) {
                // Its memo may be new and its rows old: from here on both are as if nothing was.
                db_->Memo(1, {});
                db_->KetteSchreiben(1, {});
                note = {};
            }
            if (state.deleted || state.versions == 0) state = {}, note = {};
            board_.state(owner, row, state);
            board_.note(owner, row, {note.versions, false, false});
        }
    return db_->Error() == 0 && db_->Pack() && db_->PackMemoKette();
}

bool ShareUser::holdsNotes() {
    for (int32 owner = 0; owner < kUsers; ++owner)
        for (int32 row = 0; row < kRows; ++row) {
            const RowState state = board_.state(owner, row), note = board_.note(owner, row);
            if (state.versions == 0 || state.busy || note.busy) continue;
            const Address address = contentOf(owner, row, state.versions);
            if (standsOn(address) && hasNote(owner, row, note.versions)) continue;
            std::printf("  LOST: memo or rows of %s\n", toUtf8(address.name).c_str());
            return false;
        }
    return true;
}

bool ShareUser::holdsAll() {
    bool all = consistent(*db_);
    if (!all)
        for (const auto& line : db_->Befunde()) std::printf("  UNSOUND: %s\n", toUtf8(line).c_str());
    int32 told = kFixed, open = 0, there = 0;
    for (int32 owner = 0; owner < kUsers; ++owner)
        for (int32 row = 0; row < kRows; ++row) {
            const RowState state = board_.state(owner, row);
            if (state.versions == 0) continue;
            const Address old = contentOf(owner, row, state.versions);
            const Address next = contentOf(owner, row, state.versions + 1);
            const auto found = db_->Exist(keyOf(old), 1) + (state.busy ? db_->Exist(keyOf(next), 1) : 0);
            const bool maybeNew = state.busy && state.versions == 1;
            ++(maybeNew ? open : told);
            there += maybeNew ? found : 0;
            if (found == 1 || (maybeNew && found == 0)) continue;
            std::printf("  LOST: %s\n", toUtf8(old.name).c_str());
            all = false;
        }
    for (int32 n = 0; n < kFixed; ++n)
        if (!db_->Exist(keyOf(fixedRow(n)), 1)) all = false, std::printf("  LOST: fixed row %d\n", n);
    const int32 records = db_->AnzahlDSaetze();
    if (records < told + there || records > told + open) {
        std::printf("  WRONG: %d records, told were %d and perhaps %d\n", records, told, open);
        all = false;
    }
    for (int32 n = 0; n <= records; ++n)
        if (db_->Gesperrt(n)) all = false, std::printf("  LOCKED: %d\n", n);
    return holdsNotes() && all && db_->Error() == 0;
}

}  // namespace tsRtm::test

#include "tests/share/ShareUser.hpp"

#include <cstdio>

namespace tsRtm::test {
namespace {

constexpr int32 kNo = 7;
constexpr TextView kDeleted = u"*";

}  // namespace

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
            else if (what < 3 || own == 0)
                success = add();
            else
                success = what < 5 ? change(random(own)) : mark(random(own));
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
    return all && db_->Error() == 0;
}

}  // namespace tsRtm::test

// clsTSIndex: the loop over a range.
#include <algorithm>
#include <limits>
#include <optional>

#include "tsRtm/database/clsTSIndex.hpp"
#include "tsRtm/database/sets/ListedOrder.hpp"
#include "tsRtm/database/sets/LoopProgress.hpp"
#include "tsRtm/database/sets/RangeWalk.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"

namespace tsRtm {
namespace {

constexpr TextView kSource = u"clsTSIndex.ActionLoop";
enum Button : int32 { buttonAbort = 3, buttonRetry = 4, buttonIgnore = 5 };

}  // namespace

class clsTSIndex::Loop {
 public:
    Loop(clsTSIndex& cursor, bool all, Variant& zusatz, bool update)
        : cursor_(cursor),
          set_(cursor.set_),
          database_(set_->DB()),
          all_(all),
          update_(update),
          zusatz_(zusatz) {}

    void run(TextView from, TextView to) {
        if (cursor_.Count() == 0) return;
        collect(from, to);
        LoopProgress progress(static_cast<int32>(visits_.size()),
                              [this](int32 done, int32 sum) { database_->UpdateProgress(1, done, sum); });
        for (const auto& visit : visits_) {
            if (!goesOn()) break;
            pass(visit, false);
            progress.step();
        }
        const auto delayed = std::exchange(delayed_, {});
        for (const auto& visit : delayed) {
            if (!goesOn()) break;
            pass(visit, true);
        }
        cursor_.ActionEnd();
    }

 private:
    struct Visit {
        Place at;
        std::shared_ptr<ChainRow> row;  // of a chain
    };
    enum class Won { yes, no, later };

    bool goesOn() const { return !cursor_.cancel_ && set_->DB() && cursor_.set_; }

    // The numbers first: whatever a handler changes, each is visited once.
    void collect(TextView from, TextView to) {
        if (cursor_.fields_[0] != 0) {
            keys_ = cursor_.keys();
            range_ = KeyRange::beginning(*keys_, set_->content().layout(), from, to);
        }
        const int32 first = from.empty() ? 1 : std::max(roundToInt32(Val(from)), 1);
        const int32 last = to.empty() ? std::numeric_limits<int32>::max() : roundToInt32(Val(to));
        for (const auto& at : cursor_.places(range_ ? &*range_ : nullptr, first, last))
            visits_.push_back(
                {at, set_->rows_ ? set_->rows_->list()[static_cast<std::size_t>(at.number - 1)] : nullptr});
    }

    // Whether it belongs to the loop now.
    bool belongs(int32 number) {
        auto& content = set_->content();
        if (!content.read(number, room_) || (range_ && !range_->holds(room_))) return false;
        return all_ || set_->rows_ || !RecordLayout::isDeleted(room_);
    }

    void pass(const Visit& visit, bool again) {
        const int32 number = numberNow(visit);
        if (number == 0 || !belongs(number)) return;
        cursor_.stand(visit.at.position, number, static_cast<int32>(visits_.size()));
        const auto record = set_->recordOf(number);
        if (!record) return;
        if (!std::exchange(begun_, true)) cursor_.ActionStart(zusatz_);
        if (!goesOn()) return;
        const bool had =
            !update_ || set_->rows_ || record->Locked() || database_->engine_->d.locks.owns(number);
        if (!had) {
            const Won won = lock(record, again);
            if (won == Won::later) delayed_.push_back(visit);
            if (won != Won::yes) return;
        }
        if (had || belongs(number)) {
            cursor_.Action(record, zusatz_);
            if (update_ && record->Changed()) record->Update();
        }
        if (!had) record->Entsperren();
    }

    // Rows are found again where others came before them.
    int32 numberNow(const Visit& visit) { return visit.row ? set_->placeOfRow(*visit.row) : visit.at.number; }

    Won lock(const std::shared_ptr<clsTSRecord>& record, bool again) {
        for (eLockedAction ask = again ? AskUserAgain : AskUser;; ask = AskUserAgain) {
            if (record->Sperren(-1)) return Won::yes;
            database_->Error();
            eLockedAction action = ask;
            cursor_.ActionLocked(record, zusatz_, action);
            if (!goesOn()) return Won::no;
            // It was put off once already.
            if (action == Delay && again) action = AskUserAgain;
            if (action == AskUser || action == AskUserAgain) action = askUser(record, action);
            if (action == Retry) continue;
            if (action == Cancel) cursor_.cancel_ = true;
            return action == Delay ? Won::later : Won::no;
        }
    }

    eLockedAction askUser(const std::shared_ptr<clsTSRecord>& record, eLockedAction how) {
        auto& messages = database_->engine_->d.folder.messages();
        Text text =
            how == AskUser
                ? u"Der Datensatz Nummer %1: \"%2\" kann nicht bearbeitet werden, weil er von einem anderen "
                  u"Benutzer gesperrt ist."
                : u"Der Datensatz Nummer %1: \"%2\" kann nicht bearbeitet werden, weil er noch immer "
                  u"gesperrt "
                  u"ist.";
        messages.InsertMsgNr(text, 1, record->Satznummer());
        messages.InsertMsg(text, 2, record->Fields(std::max(cursor_.IndexFeld(), 1)));
        switch (messages.TSMsgBox(text, dlgAbortRetryIgnore | dlgQuestion, u"Datenbearbeitung")) {
            case buttonRetry:
                return Retry;
            case buttonIgnore:
                return Ignore;
            default:
                return Cancel;
        }
    }

    clsTSIndex& cursor_;
    const std::shared_ptr<clsTSRecordSet> set_;
    const std::shared_ptr<clsTSDB> database_;
    bool all_, update_;
    Variant& zusatz_;
    std::optional<IndexKeys> keys_;  // of its own: a handler may add or drop an index
    std::optional<KeyRange> range_;
    std::vector<Visit> visits_, delayed_;
    bool begun_ = false;
    Bytes room_;
};

void clsTSIndex::ActionLoop(TextView Von, TextView Bis, bool Alle, Variant& Zusatz, bool DoUpdate) {
    if (!DB()) raise(91, kSource, u"Der Index ist nicht mehr gültig");
    if (DoUpdate && set_->ReadOnly()) raise(70, kSource, u"Der Recordset ist Readonly");
    const auto self = shared_from_this();
    cancel_ = false;
    Loop(*this, Alle, Zusatz, DoUpdate).run(Von, Bis);
}

}  // namespace tsRtm

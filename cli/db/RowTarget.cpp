#include "cli/db/RowTarget.hpp"

#include <algorithm>

#include "cli/db/RecordLock.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/ErrorText.hpp"
#include "tsRtm/database/BulkLoader.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/database/clsTSRecordSet.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::cli {
namespace {

constexpr int32 kNoRoom = 61;

class SharedTarget final : public RowTarget {
 public:
    explicit SharedTarget(Session& session) : session_(session) {}

    Stored add(const ImportRow& row, std::string& reason) override {
        auto& db = session_.db();
        const auto record = db.Add();
        if (!record) return refuse(db.Error(), reason);
        for (const auto& value : row.values) record->Fields(value.field, value.text);
        for (const auto& [field, rows] : row.chains) {
            const auto set = record->Kette(field);
            if (!set) return refuse(db.Error(), reason);
            set->Inhalt(rows, MemoCells::texts);
            if (!set->Update()) return refuse(db.Error(), reason);
        }
        if (!record->Update()) return refuse(record->Error(), reason);
        ++kept_;
        return Stored::yes;
    }
    int64 kept() const override { return kept_; }
    void finish() override {}

 private:
    static Stored refuse(int32 error, std::string& reason) {
        reason = "not stored: " + databaseErrorText(error == 0 ? kLocked : error);
        return error == kNoRoom ? Stored::never : Stored::no;
    }

    Session& session_;
    int64 kept_ = 0;
};

class BulkTarget final : public RowTarget {
 public:
    explicit BulkTarget(Session& session)
        : session_(session), loader_(session.db()), serialField_(session.control().AutowertFeld()) {
        if (serialField_ != 0) serial_ = lastSerial();
    }

    Stored add(const ImportRow& row, std::string& reason) override {
        int32 serial = 0;
        for (const auto& value : row.values) {
            loader_.set(value.field, value.text);
            if (value.field == serialField_) serial = roundToInt32(Val(value.text));
        }
        for (const auto& [field, rows] : row.chains) loader_.setChain(field, rows);
        if (serialField_ != 0 && serial == 0) loader_.set(serialField_, nextSerial());
        serial_ = std::max(serial_, serial);
        if (loader_.add()) return Stored::yes;
        const int32 error = session_.db().Error();
        reason = "not stored: " + databaseErrorText(error);
        return error == kFull ? Stored::no : Stored::never;
    }
    // What was not finished is taken back.
    int64 kept() const override { return 0; }

    void finish() override {
        if (!loader_.finish())
            session_.fail("the rows are stored, but not all indexes are built", session_.db().Error());
    }

 private:
    int32 lastSerial() {
        int32 last = 0;
        for (int32 number = 1; number <= session_.count(); ++number)
            last = std::max(last, roundToInt32(Val(session_.db().GetField(number, serialField_))));
        return last;
    }
    Text nextSerial() {
        const Text digits = toText(++serial_);
        const auto width =
            static_cast<std::size_t>(std::max(session_.control().field(serialField_).Laenge(), 0));
        return Text(width - std::min(width, digits.size()), u'0') + digits;
    }

    Session& session_;
    BulkLoader loader_;
    int32 serialField_;
    int32 serial_ = 0;
};

}  // namespace

std::unique_ptr<RowTarget> makeRowTarget(Session& session, bool bulk) {
    if (bulk) return std::make_unique<BulkTarget>(session);
    return std::make_unique<SharedTarget>(session);
}

}  // namespace tsRtm::cli

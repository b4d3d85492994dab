#include "tsRtm/banking/BankImport.hpp"

#include <unordered_map>

#include "tsRtm/database/NewRecords.hpp"
#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/database/clsTSRecord.hpp"

namespace tsRtm {
namespace {

constexpr int64 kRowsPerProgress = 256;
constexpr char16_t kOwnBank = u'1';
constexpr int32 kReadOnly = 5, kFull = 7, kOtherFields = 53, kLocked = 70;

using Bank = std::array<Text, bankRegister::kFields + 1>;  // from 1

// False where the file has more banks than a register can hold.
bool readBanks(BankFileReader& reader, const BankImportListener& listener, BankImportResult& result,
               std::vector<Bank>& banks) {
    BankRow row;
    while (reader.next(row)) {
        if (listener.progress && reader.line() % kRowsPerProgress == 0)
            listener.progress(reader.position(), reader.size());
        if (reader.fault() != BankRowFault::none) {
            ++result.rejected;
            if (listener.rejected) listener.rejected(reader.line(), reader.fault());
        } else if (row.mark != kOwnBank) {
            ++result.otherRows;
        } else {
            const auto values = bankRegister::values(row);
            std::copy(values.begin(), values.end(), banks.emplace_back().begin());
            if (banks.size() > static_cast<std::size_t>(bankRegister::kMaxRecords)) return false;
        }
    }
    return true;
}

template <class Record>
void setFields(Record& record, const Bank& bank) {
    for (int32 field = 1; field <= bankRegister::kFields; ++field)
        record.Fields(field, bank[static_cast<std::size_t>(field)]);
}

// A register in which others read, brought in line record by record.
class Merging {
 public:
    Merging(clsTSDB& db, const std::vector<Bank>& banks, BankImportResult& result)
        : db_(db), banks_(banks), result_(result) {
        for (const auto& bank : banks) byCode_.try_emplace(bank[fBANKEN_BLZ], &bank);
    }

    // False where a record could not be written; what was written before stays.
    bool run() {
        const int32 count = db_.AnzahlDSaetze();
        for (int32 number = 1; number <= count; ++number)
            if (!bringInLine(number)) return false;
        for (const auto& bank : banks_)
            if (byCode_.erase(bank[fBANKEN_BLZ]) > 0 && !add(bank)) return false;
        return true;
    }

 private:
    bool bringInLine(int32 number) {
        const auto record = db_.Record(number);
        if (!record) return false;
        const auto found = byCode_.find(record->Fields(fBANKEN_BLZ));
        if (record->Deleted() || found == byCode_.end()) return empty(*record);
        const Bank& bank = *found->second;
        byCode_.erase(found);
        if (has(*record, bank)) return true;
        if (!record->Sperren(-1)) return false;
        setFields(*record, bank);
        ++result_.changed;
        return record->Update();
    }
    bool add(const Bank& bank) {
        const auto record = db_.Add();
        if (!record) return false;
        setFields(*record, bank);
        ++result_.added;
        return record->Update();
    }
    // The mark comes first: who dies behind it leaves a bank that nobody finds.
    bool empty(clsTSRecord& record) {
        if (record.Deleted() && has(record, {})) return true;
        if (!record.Sperren(-1)) return false;
        if (!record.Deleted()) {
            record.Deleted(true);
            ++result_.gone;
        }
        setFields(record, {});
        return record.Update();
    }
    static bool has(clsTSRecord& record, const Bank& bank) {
        for (int32 field = 1; field <= bankRegister::kFields; ++field)
            if (record.Fields(field) != bank[static_cast<std::size_t>(field)]) return false;
        return true;
    }

    clsTSDB& db_;
    const std::vector<Bank>& banks_;
    std::unordered_map<Text, const Bank*> byCode_;  // those that no record has so far
    BankImportResult& result_;
};

// The error number of the database, 0 for none.
int32 store(clsTSDB& db, const std::vector<Bank>& banks, BankImportResult& result) {
    const bool replaced = db.Replace([&](NewRecords& records) {
        for (const auto& bank : banks) {
            for (int32 field = 1; field <= bankRegister::kFields; ++field)
                records.set(field, bank[static_cast<std::size_t>(field)]);
            if (!records.add()) return false;
        }
        return true;
    });
    const int32 error = db.Error();
    if (replaced || error != kLocked || !db.IsShared()) return error;
    result.beside = true;
    if (Merging(db, banks, result).run()) return 0;
    const int32 failed = db.Error();
    return failed != 0 ? failed : kLocked;
}

}  // namespace

BankImportResult importBanks(BankFileReader& reader, clsTSDB& banks, const BankImportListener& listener) {
    BankImportResult result;
    if (banks.IsReadOnly())
        result.databaseError = kReadOnly;
    else if (!bankRegister::fits(*banks.Control()))
        result.databaseError = kOtherFields;
    if (result.databaseError != 0) return result;
    std::vector<Bank> rows;
    if (!readBanks(reader, listener, result, rows))
        result.databaseError = kFull;
    else if (result.readError = reader.error(); !failed(result.readError))
        result.databaseError = store(banks, rows, result);
    result.complete = result.databaseError == 0 && !failed(result.readError);
    if (result.complete) result.loaded = static_cast<int32>(rows.size());
    return result;
}

}  // namespace tsRtm

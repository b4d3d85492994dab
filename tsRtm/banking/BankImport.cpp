#include "tsRtm/banking/BankImport.hpp"

#include "tsRtm/database/BulkLoader.hpp"

namespace tsRtm {
namespace {

constexpr int64 kRowsPerProgress = 256;
constexpr char16_t kOwnBank = u'1';

}  // namespace

BankImportResult importBanks(BankFileReader& reader, clsTSDB& banks, const BankImportListener& listener) {
    BankImportResult result;
    BulkLoader loader(banks);
    BankRow row;
    while (reader.next(row)) {
        if (listener.progress && reader.line() % kRowsPerProgress == 0)
            listener.progress(reader.position(), reader.size());
        if (reader.fault() != BankRowFault::none) {
            ++result.rejected;
            if (listener.rejected) listener.rejected(reader.line(), reader.fault());
            continue;
        }
        if (row.mark != kOwnBank) {
            ++result.otherRows;
            continue;
        }
        const auto values = bankRegister::values(row);
        for (int32 field = 1; field <= bankRegister::kFields; ++field)
            loader.set(field, values[static_cast<std::size_t>(field)]);
        if (!loader.add()) {
            result.databaseError = banks.Error();
            return result;
        }
        ++result.loaded;
    }
    result.readError = reader.error();
    if (failed(result.readError)) return result;
    result.complete = loader.finish();
    if (!result.complete) result.databaseError = banks.Error();
    return result;
}

}  // namespace tsRtm

#pragma once
// From the bank code file to the register.
#include <functional>

#include "tsRtm/banking/BankFile.hpp"
#include "tsRtm/banking/BankRegister.hpp"

namespace tsRtm {

class clsTSDB;

struct BankImportResult {
    int32 loaded = 0;     // rows of mark 1, now records
    int32 otherRows = 0;  // rows of mark 2, which the register leaves out
    int32 rejected = 0;
    bool complete = false;  // the whole file was read and the indexes are built
    platform::SystemError readError = platform::SystemError::none;
    int32 databaseError = 0;  // as clsTSDB::Error
};

// Told of the way: a row that is none (its line and why), and bytes read of how many.
struct BankImportListener {
    std::function<void(int64 line, BankRowFault fault)> rejected;
    std::function<void(uint64 done, uint64 of)> progress;
};

// Appends the rows of mark 1 to a register, which is open in single use, and builds its indexes at the end.
// Where the result is not complete, no row stays.
BankImportResult importBanks(BankFileReader& reader, clsTSDB& banks, const BankImportListener& listener = {});

}  // namespace tsRtm

#pragma once
// From the bank code file to the register.
#include <functional>

#include "tsRtm/banking/BankFile.hpp"
#include "tsRtm/banking/BankRegister.hpp"

namespace tsRtm {

class clsTSDB;

struct BankImportResult {
    int32 loaded = 0;     // rows of mark 1, each a bank of the register now
    int32 otherRows = 0;  // rows of mark 2, which the register leaves out
    int32 rejected = 0;
    bool complete = false;  // the whole file was read, and the register has its banks and no others
    platform::SystemError readError = platform::SystemError::none;
    int32 databaseError = 0;  // as clsTSDB::Error
    // Others had the register open: banks that differ were written one by one.
    bool beside = false;
    int32 changed = 0, added = 0, gone = 0;  // so many, beside others
};

// Told of the way: a row that is none (its line and why), and bytes read of how many.
struct BankImportListener {
    std::function<void(int64 line, BankRowFault fault)> rejected;
    std::function<void(uint64 done, uint64 of)> progress;
};

// Puts the rows of mark 1 in the place of the register's banks. Where nobody else has the register open, all
// its files are exchanged at once: who asks sees the old ones or the new ones. Else the records are brought
// in line one by one: those of banks that have gone are emptied and marked as deleted. Of rows with the same
// bank code the first one counts there. A register open for reading gives 5, one with other fields 53; where
// the result is not complete and nobody else was there, the register is as it was.
BankImportResult importBanks(BankFileReader& reader, clsTSDB& banks, const BankImportListener& listener = {});

}  // namespace tsRtm

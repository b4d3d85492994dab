#pragma once
// Questions about German banks, answered from the register "Banken".
#include <chrono>
#include <memory>

#include "tsRtm/banking/BankRegister.hpp"
#include "tsRtm/database/DatabasesTopic.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/validation/iBankRegister.hpp"

namespace tsRtm {

class clsTSIndex;

// The register lies below RuntimeDataDir, else below SupportDBPath. It is opened for reading at the first
// question and stays open until CloseDB; where it cannot be opened the next question tries again, and one
// that was replaced under its name is opened anew. A bank that is not known is no failure: the answer is
// empty. Failures of the database pass through.
class clsBanken final : public iBankRegister {
 public:
    clsBanken();
    // On this register in the place of the usual ones.
    explicit clsBanken(TextView DBName);
    ~clsBanken() override;
    clsBanken(const clsBanken&) = delete;
    clsBanken& operator=(const clsBanken&) = delete;

    // The open register, nothing where there is none.
    std::shared_ptr<clsTSDB> DB();
    // Of a bank code, or of the one in a text that begins with "DE" as an IBAN does.
    Text BIC(TextView BLZ);
    // Of an account with a bank, by the digits in Konto; in groups of four where it is to be printed. Empty
    // unless BLZ has eight characters and Konto is not empty. Asks no register.
    static Text IBAN(TextView BLZ, TextView Konto, bool PrintFormat = true);
    Text Name(TextView BLZorBIC) override;
    // Postal code and place.
    Text PLZOrt(TextView BLZorBIC);
    // The record that the user chose from the order of a field, from StartPos on; nothing where he did not.
    std::shared_ptr<clsTSRecord> SelectRecord(int32 IndexFeld, TextView StartPos = {});
    // By digits: the first bank code that begins with them; by 8 or 11 other characters: the first BIC.
    // Deleted banks do not count.
    std::shared_ptr<clsTSRecord> Record(TextView BICorBLZ);
    void CloseDB();

    bool IsOpen() override { return DB() != nullptr; }
    bool HasRecord(TextView BICorBLZ) override { return Record(BICorBLZ) != nullptr; }

 private:
    // Names by code, in memory, as long as the register stays as it was. They are learnt by who still asks
    // when two looks have found it the same: not for a question or two, and not while somebody imports.
    struct Names {
        struct Entry {
            uint32 code;
            Text name;
        };
        std::vector<Entry> entries;  // in the order of codes
        uint64 at = 0;               // the register's change number
        Datenstand stand;            // at the last look
        bool quiet = false;          // the same as at the look before
        bool known = false;
    };

    const Text* knownName(TextView code);
    void learnNames();
    Text field(TextView key, int32 number);

    std::unique_ptr<MessagesTopic> messages_;
    std::unique_ptr<FilesTopic> files_;
    DatabasesTopic databases_;
    Text name_;  // empty: the usual ones
    std::shared_ptr<clsTSDB> db_;
    std::shared_ptr<clsTSIndex> byCode_, byBic_;
    std::chrono::nanoseconds looked_{};  // when db_ was last seen in its place
    Names names_;
};

}  // namespace tsRtm

#pragma once
// The structure of the bank register, the database "Banken".
#include <array>

#include "tsRtm/banking/BankRow.hpp"
#include "tsRtm/fields/TSIO.hpp"

namespace tsRtm {

class DatabasesTopic;
class clsControl;

// Field numbers of the register.
enum FelderBanken : int32 {
    fBANKEN_BLZ = 1,  // bank code, eight digits; primary field of index 1
    fBANKEN_NAME = 2,
    fBANKEN_PLZ = 3,        // postal code
    fBANKEN_ORT = 4,        // place; primary field of index 3, the name behind it
    fBANKEN_BIC = 5,        // primary field of index 2
    fBANKEN_PZMETHODE = 6,  // method of the account number's check digit; only stored
};

namespace bankRegister {

inline constexpr int32 kFields = 6;
// From 32768 on a database has counted trees: the rank of a bank is one walk. The file has some 3500 banks.
inline constexpr int32 kMaxRecords = 100000;

// Numbers of the indexes.
inline constexpr int32 kByCode = 1;
inline constexpr int32 kByBic = 2;
inline constexpr int32 kByPlaceAndName = 3;

// As DBCreateExt takes them. The names of the fields are those of the enumeration without "fBANKEN_".
TSIOArray fields();
Text indexes();
// Whether a database has these fields and indexes.
bool fits(const clsControl& control);
// Makes an empty register; ".DBD" is added to the name where it is missing. False where its files cannot be
// made.
bool create(DatabasesTopic& databases, TextView name);

// The texts of a row by field number, 1..kFields.
std::array<TextView, kFields + 1> values(const BankRow& row) noexcept;

}  // namespace bankRegister
}  // namespace tsRtm

#pragma once
// One row of the official German bank code file, which the Deutsche Bundesbank publishes four times a year.
//
// Rows of 168 characters, ended by CR LF or LF. Columns count characters, so that a row in UTF-8 may have
// more bytes.
//
//   offset  size  column
//        0     8  bank code
//        8     1  mark: 1 the bank of the code itself, 2 another office under it
//        9    58  name
//       67     5  postal code
//       72    35  place
//      107    27  short name
//      134     5  number in the card system (PAN)
//      139    11  BIC; blank in rows of mark 2
//      150     2  method of the account number's check digit
//      152     6  number of the row
//      158     1  change since the last issue: A added, D deleted, M modified, U unchanged
//      159     1  1 where the code is to be given up, else 0
//      160     8  code that follows, 00000000 where there is none
#include <optional>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

namespace bankFormat {

struct Column {
    std::size_t offset;
    std::size_t size;
    constexpr std::size_t end() const noexcept { return offset + size; }
};

inline constexpr Column kCode{0, 8};
inline constexpr Column kMark{kCode.end(), 1};
inline constexpr Column kName{kMark.end(), 58};
inline constexpr Column kPostalCode{kName.end(), 5};
inline constexpr Column kPlace{kPostalCode.end(), 35};
inline constexpr Column kShortName{kPlace.end(), 27};
inline constexpr Column kPan{kShortName.end(), 5};
inline constexpr Column kBic{kPan.end(), 11};
inline constexpr Column kCheckMethod{kBic.end(), 2};
inline constexpr Column kRowNumber{kCheckMethod.end(), 6};
inline constexpr Column kChange{kRowNumber.end(), 1};
inline constexpr Column kToBeGivenUp{kChange.end(), 1};
inline constexpr Column kSuccessor{kToBeGivenUp.end(), 8};

inline constexpr std::size_t kRowLength = 168;
static_assert(kSuccessor.end() == kRowLength);
static_assert(kBic.offset == 139 && kCheckMethod.offset == 150);

}  // namespace bankFormat

// Why a row of the file is none.
enum class BankRowFault {
    none,
    length,       // not 168 characters
    encoding,     // malformed UTF-8
    characters,   // a character that code page 1252 lacks, or a control character
    code,         // no eight digits
    mark,         // neither 1 nor 2
    name,         // empty
    postalCode,   // neither five digits nor blank
    bic,          // neither 8 or 11 letters and digits nor blank
    checkMethod,  // no two letters or digits
};

// A row without the blanks that fill its columns.
struct BankRow {
    Text code, name, postalCode, place, shortName, pan, bic, checkMethod, successor;
    char16_t mark = u' ';
    char16_t change = u' ';
    bool toBeGivenUp = false;
};

enum class BankFileEncoding { latin1, utf8 };

// Decides by the most frequent: a file in UTF-8 stays one when single characters in it are damaged. Latin-1
// for plain ASCII.
class BankEncodingDetector {
 public:
    // The next bytes of the file, in any portions.
    void feed(BytesView bytes) noexcept;
    BankFileEncoding encoding() const noexcept {
        return marked_ || sequences_ > broken_ ? BankFileEncoding::utf8 : BankFileEncoding::latin1;
    }

 private:
    void feed(uint8 byte) noexcept;

    uint64 position_ = 0;
    uint64 sequences_ = 0;  // whole sequences of two bytes and more
    uint64 broken_ = 0;     // other bytes above 127
    int32 following_ = 0;   // bytes that the sequence under way still needs
    int32 markBytes_ = 0;   // of a byte order mark at the start
    bool marked_ = false;
};

// A row without its line end; a byte order mark before the first one is passed over. On a fault `into` holds
// no row.
BankRowFault decodeBankRow(BytesView line, BankFileEncoding encoding, BankRow& into);

}  // namespace tsRtm

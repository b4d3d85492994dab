#pragma once
// The words of validation: grades, kinds of validators, and what the built-in checkers take as Options.
#include "tsRtm/types/Numbers.hpp"

namespace tsRtm {

// How well a value does, by gravity.
enum eValidResult : int32 {
    validOK = 0,
    validInfo = 1,
    validQuestion = 2,
    validWarning = 3,
    validError = 4,
};

// Where the status picture stands beside its control: bit 0 is the side (0 left), the rest the height.
enum eValidatorAlignment : int32 {
    TopLeft = 0,
    TopRight = 1,
    MiddleLeft = 2,
    MiddleRight = 3,
    BottomLeft = 4,
    BottomRight = 5,
};

// The checkers that clsValidationHelper makes.
enum eValidatorType : int32 {
    Numeric = 1,
    IsLike = 2,
    PLZundOrt = 3,
    Datum = 4,
    BLZ = 5,
    BLZBIC = 6,
    IBAN = 7,
    Konto = 8,
    KontoOrIBAN = 9,
    LikeEMail = 10,
    BIC = 11,
    DTAUSText = 12,
    LikeEGVP = 13,
    LikeEMailOrEGVP = 14,
};

// Options of every built-in checker: a mode of its own in the low three bits, and flags.
inline constexpr int32 voMode = 7;       // the bits of the mode
inline constexpr int32 voError = 8;      // what fails is an error, else a warning
inline constexpr int32 voRequired = 16;  // an empty value fails
inline constexpr int32 voSpecial = 32;  // loIgnoreCase, datDayCritical; clsValidValue: the field must be full

enum eValidValueOptions : int32 { voRange = 0 };

enum eValidLikeOptions : int32 {
    loRegExp = 0,
    loLike = 1,
    loIgnoreCase = 32,
};

enum eValidBankingOptions : int32 {
    btKontoDE = 1,
    btBLZDE = 2,
    btIBAN = 3,
    btBIC = 4,
    btKontoOrIBAN = 5,
    btBLZBIC = 6,
};

enum eValidDateOptions : int32 {
    datAllDays = 0,
    datMoBisFr = 1,
    datMoBisSa = 2,
    datSaUndSo = 3,
    datWerktag = 4,
    datNichtWerktag = 5,
    datSonnUndFeiertag = 6,
    datNichtSUF = 7,
    datDayCritical = 32,  // a day of the wrong kind is an error
};

// In the low two bits.
enum eValidEAdrOptions : int32 {
    eaEMail = 0,
    eaEGVP = 1,
    eaEMailOrEGVP = 2,
};

}  // namespace tsRtm

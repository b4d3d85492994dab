#pragma once
// Hash algorithms and text forms by the numbers that applications and their stored data use.
#include "tsRtm/types/Numbers.hpp"

namespace tsRtm {

enum HashType : int32 {
    CALG_MD2 = 32769,     // 16 bytes, RFC 1319
    CALG_MD4 = 32770,     // 16 bytes, RFC 1320
    CALG_MD5 = 32771,     // 16 bytes, RFC 1321
    CALG_SHA = 32772,     // SHA-1: 20 bytes, FIPS 180
    CALG_SHA256 = 32780,  // 32 bytes, FIPS 180
    CALG_SHA384 = 32781,  // 48 bytes, FIPS 180
    CALG_SHA512 = 32782,  // 64 bytes, FIPS 180
};

// One form, and flags on top of it.
enum CryptStringFlags : int32 {
    CRYPT_STRING_BASE64HEADER = 0,         // base 64 between the lines of a certificate
    CRYPT_STRING_BASE64 = 1,               // lines of 64 characters (RFC 4648)
    CRYPT_STRING_BINARY = 2,               // the bytes as they are
    CRYPT_STRING_BASE64REQUESTHEADER = 3,  // base 64 between the lines of a certificate request
    CRYPT_STRING_HEX = 4,                  // "30 81 bd", 16 bytes a line
    CRYPT_STRING_HEXASCII = 5,             // the same with the characters behind
    CRYPT_STRING_BASE64_ANY = 6,           // reading only: base 64 with or without header
    CRYPT_STRING_ANY = 7,                  // reading only: as CRYPT_STRING_BASE64_ANY
    CRYPT_STRING_HEX_ANY = 8,              // reading only: any of the hexadecimal forms
    CRYPT_STRING_BASE64X509CRLHEADER = 9,  // base 64 between the lines of a revocation list
    CRYPT_STRING_HEXADDR = 10,             // as CRYPT_STRING_HEX with the address in front
    CRYPT_STRING_HEXASCIIADDR = 11,        // address and characters
    CRYPT_STRING_HEXRAW = 12,              // "3081bd", one line

    CRYPT_STRING_SHORT = 65536,            // no line ends, and no "=" at the end
    CRYPT_STRING_STRICT = 268435456,       // reading: base 64 with all its "="
    CRYPT_STRING_STRICT_STOB = 536870912,  // the same
    CRYPT_STRING_NOCRLF = 1073741824,      // no line ends
    CRYPT_STRING_NOCR = -2147483647 - 1,   // lines end in LF alone
};

constexpr CryptStringFlags operator|(CryptStringFlags a, CryptStringFlags b) noexcept {
    return static_cast<CryptStringFlags>(static_cast<int32>(a) | static_cast<int32>(b));
}

}  // namespace tsRtm

#pragma once
// Hash values, text forms of bytes, and random numbers.
#include <memory>

#include "tsRtm/types/CryptTypes.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// Bytes go in and come out as ByteText: one byte a character, through the ANSI code page 1252; "?" for a
// character that it lacks. Objects may come and go freely; all draw from the one source of the system.
class clsTSCrypt {
 public:
    // An object for which the system has no source of random bytes can still write and read text forms.
    // Hashes are then empty and ZufallBytes and Zufall raise 70.
    clsTSCrypt();
    // As the constructor, but raises the system's error number where there is no such source.
    static std::shared_ptr<clsTSCrypt> Create();

    // The bytes in base 64, or in any other of the forms. Empty for an empty text.
    Text Base64(TextView InputStr, CryptStringFlags Method = CRYPT_STRING_BASE64) const;
    // Its inverse. Empty for what is not of the form.
    Text FromBase64(TextView Base64Str, CryptStringFlags Method = CRYPT_STRING_ANY) const;
    // Two hexadecimal digits a byte, in upper case, nothing between.
    Text TextToHex(TextView text) const;

    // So many random bytes. Empty for 0 and below, and where the source fails.
    Text ZufallBytes(int32 Anzahl) const;
    // A number from Von to Bis, each as likely as any other; the limits may be given in either order.
    // Raises 70 where the source fails, too.
    int32 Zufall(int32 Von, int32 Bis) const;

    // The bytes of the hash, for TextToHex. Raises -2146893816 for a type that is none.
    Text GetHash(TextView Daten, HashType Typ) const;
    // The same of a file, read in blocks of 65536 bytes. Empty for a file that cannot be opened; raises the
    // system's error number where it cannot be read to its end.
    Text GetHashFromFile(TextView Datei, HashType Typ) const;

 private:
    int32 refusal_ = 0;  // the system's error number where it has no source
};

}  // namespace tsRtm

#pragma once
// The texts of memo fields as payloads of entries, and back.
#include <utility>

#include "tsRtm/database/memos/MemoFormat.hpp"
#include "tsRtm/fields/TSIO.hpp"
#include "tsRtm/services/bytes/Scrambler.hpp"

namespace tsRtm {

// How a field wants its texts stored.
struct MemoKind {
    MemoKind() = default;
    explicit MemoKind(const TSIO& field)
        : blob(field.IsBlob()),
          wide(field.IsUnicode()),
          utf8(field.IsUTF8()),
          scrambled(field.IsEncryptedMemo() || field.IsEncryptedBlob()) {}

    bool blob = false;       // bytes, as they are
    bool wide = false;       // UTF-16
    bool utf8 = false;       // UTF-8
    bool scrambled = false;  // by the key file of the installation
};

// An entry as it lies in a store.
struct MemoEntry {
    enum class Kind { none, free, entry, raw } kind = Kind::none;  // none: behind the end of the file
    memoFormat::Head head;
    Bytes payload;
};

// Entry and text of one kind of field. A text that code page 1252 lacks, or that would be taken for UTF-16
// when it is read, is stored in UTF-16 whatever the field says: every reader goes by the form of the entry.
// Raises 53 where a scrambled text is to be made or read and there is no key file.
class MemoText {
 public:
    MemoText(MemoKind kind, Scrambler& scrambler) : kind_(kind), scrambler_(scrambler) {}

    // Head and payload of a text; of a blob the text is its bytes, one a character in code page 1252.
    std::pair<memoFormat::Head, Bytes> encode(TextView text) const;
    Text decode(const MemoEntry& entry) const;
    // The same for bytes, which no field converts.
    std::pair<memoFormat::Head, Bytes> encodeBytes(Bytes bytes) const;
    Bytes decodeBytes(const MemoEntry& entry) const;

 private:
    void needKeys() const;

    MemoKind kind_;
    Scrambler& scrambler_;
};

}  // namespace tsRtm

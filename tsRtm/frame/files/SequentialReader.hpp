#pragma once
// Items and lines out of a file's bytes, read ahead in blocks.
#include <optional>

#include "tsRtm/platform/File.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// Reads at a position that its owner keeps and that every call moves on. Not bound to a file: the same one is
// given to every call. A line ends with CR LF, CR or LF; the old end-of-file mark (26) ends the text.
class SequentialReader {
 public:
    using Step = platform::Result<std::optional<Bytes>> (SequentialReader::*)(platform::File& file,
                                                                              uint64& position);

    // Bytes up to the line's end, which is read as well; nothing at the end of the text.
    platform::Result<std::optional<Bytes>> line(platform::File& file, uint64& position);
    // One comma-separated item; nothing at the end of the text.
    platform::Result<std::optional<Bytes>> item(platform::File& file, uint64& position);
    platform::Result<bool> atEnd(platform::File& file, uint64 position);
    // Forgets what was read ahead.
    void forget() noexcept { block_.clear(); }

 private:
    // The byte at a position, -1 at the end of the text. On an error it is kept and -1 returned.
    int32 byteAt(platform::File& file, uint64 position);
    void skipLineEnd(platform::File& file, uint64& position);
    void skipBlanks(platform::File& file, uint64& position);

    Bytes block_;
    uint64 begin_ = 0;
    platform::SystemError error_ = platform::SystemError::none;
};

}  // namespace tsRtm

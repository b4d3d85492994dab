#pragma once
// Writes a text file piece by piece in one encoding.
#include "tsRtm/types/Encodings.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

class FilesTopic;

// Opens its file at the first write, locked against all others, and closes it in Dispose or at its end of
// life: one that never wrote leaves the file untouched. The FilesTopic outlives it.
class clsStreamWriter {
 public:
    clsStreamWriter() = default;
    ~clsStreamWriter() { Dispose(); }
    clsStreamWriter(const clsStreamWriter&) = delete;
    clsStreamWriter& operator=(const clsStreamWriter&) = delete;

    // With Appending an existing file is opened at once and its encoding used instead, but for an empty one,
    // which has none. False for an empty name, a file that cannot be opened, and on an object that is
    // initialised already, which then keeps its file. Never fails.
    bool Init(FilesTopic& Rtm, TextView Datei, Encodings Encoding, bool Appending = false);

    const Text& FieldSeparator() const noexcept { return fieldSeparator_; }
    void FieldSeparator(TextView Value) { fieldSeparator_ = Value; }
    const Text& LineSeparator() const noexcept { return lineSeparator_; }
    void LineSeparator(TextView Value) { lineSeparator_ = Value; }
    Encodings Encoding() const noexcept { return encoding_; }
    // Bytes; 0 while no file is open.
    int32 FileLength() const;

    // Nothing before a successful Init. Raises 321 for an encoding other than 1252, 1200, 1201 and 65001,
    // before the file is touched; 75 where it cannot be opened; 5 where writing fails, and nothing of the
    // text stays in the file.
    void WriteString(TextView Value);
    void WriteLine(TextView Value);
    // Closes the file. A later write opens it again and goes on behind its end.
    void Dispose() noexcept;

 private:
    void open();
    void put(BytesView bytes);

    FilesTopic* files_ = nullptr;
    Text name_;
    Encodings encoding_ = ANSI1252;
    int32 handle_ = 0;
    bool appending_ = false;
    int64 position_ = 0;  // bytes
    Text fieldSeparator_ = u",";
    Text lineSeparator_ = u"\r\n";
};

}  // namespace tsRtm

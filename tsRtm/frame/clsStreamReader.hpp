#pragma once
// Reads a text file piece by piece: lines, separated items, characters.
//
//     clsStreamReader reader;
//     if (reader.Init(files, u"Adressen.csv", u";"))
//         while (!reader.EndOfStream()) use(reader.ReadItem());
#include "tsRtm/types/Encodings.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

class FilesTopic;

// Takes the whole file into memory at Init and does not hold it open. Positions are characters of the decoded
// text, from 1.
class clsStreamReader {
 public:
    // Whether the file could be read and was not empty. Never fails.
    bool Init(FilesTopic& Rtm, TextView Datei, TextView FieldSeparator = u",");

    const Text& FieldSeparator() const noexcept { return fieldSeparator_; }
    void FieldSeparator(TextView Value) { fieldSeparator_ = Value; }
    Encodings Encoding() const noexcept { return static_cast<Encodings>(encoding_); }

    int32 FilePos() const noexcept { return position_; }
    // A negative one counts from the end, -1 being the last character; 0 does nothing.
    void FilePos(int32 Value) noexcept;
    int32 FileLength() const noexcept { return length(); }
    bool EndOfStream() const noexcept { return position_ > length(); }

    // Up to Count characters; the position moves by Count all the same. Empty at the end.
    Text Read(int32 Count);
    // The next character, without moving; empty at the end.
    Text Peek() const;
    // Up to CR LF, CR or LF. Raises 62 at the end of the text.
    Text ReadLine();
    // The next item of the line, which may stand in double quotes; inside them a separator is text, and two
    // quotes are one. An item does not reach beyond its line. Raises 62 at the end of the text.
    Text ReadItem();

 private:
    int32 length() const noexcept { return static_cast<int32>(content_.size()); }
    void needMore(TextView operation) const;
    TextView nextLine();

    Text name_;
    Text content_;
    int32 encoding_ = 0;
    int32 position_ = 1;
    // From the first place to the second, counted from 0, there is no line end, and one at the second; none
    // is known while the first lies behind.
    std::size_t seenFrom_ = 1, seenEnd_ = 0;
    Text fieldSeparator_ = u",";
};

}  // namespace tsRtm

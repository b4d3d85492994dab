// Work on a file number.
#include "tsRtm/frame/files/NumberedFiles.hpp"

#include <algorithm>
#include <limits>

#include "tsRtm/frame/files/SystemFailures.hpp"
#include "tsRtm/frame/messages/Messages.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm {

NumberedFile& NumberedFiles::numbered(int32 FileNummer, TextView Operation) {
    NumberedFile* const opened = numbers_.find(FileNummer);
    if (!opened) raiseNumbered(toText(FileNummer), Operation, 52);
    return *opened;
}

void NumberedFiles::raiseNumbered(TextView name, TextView Operation, int32 number) {
    raise(number, u"clsRtm:" + Text(Operation), u"Datei: " + Text(name) + u": " + failureText(number));
}

void NumberedFiles::check(const NumberedFile& opened, TextView Operation, platform::SystemError error) {
    if (platform::failed(error)) raiseNumbered(opened.name, Operation, failureNumber(error));
}

void NumberedFiles::needMode(const NumberedFile& opened, TextView Operation,
                             std::initializer_list<int32> modes) {
    if (std::find(modes.begin(), modes.end(), opened.mode) == modes.end())
        raiseNumbered(opened.name, Operation, 54);
}

platform::File& NumberedFiles::file(int32 FileNummer) { return *numbered(FileNummer, u"file").file; }

bool NumberedFiles::TS_Eof(int32 FileNummer) {
    NumberedFile& opened = numbered(FileNummer, u"TS_Eof");
    if (opened.mode == 1) {
        const auto atEnd = opened.reader.atEnd(*opened.file, opened.position);
        check(opened, u"TS_Eof", atEnd.error());
        return *atEnd;
    }
    const auto size = opened.file->size();
    check(opened, u"TS_Eof", size.error());
    return opened.position >= *size;
}

void NumberedFiles::TS_Close(int32 FileNummer) {
    numbered(FileNummer, u"TS_Close");
    numbers_.release(FileNummer);
}

Text NumberedFiles::nextText(int32 FileNummer, TextView Operation, SequentialReader::Step step) {
    NumberedFile& opened = numbered(FileNummer, Operation);
    needMode(opened, Operation, {0, 1, 4, 5});
    auto next = (opened.reader.*step)(*opened.file, opened.position);
    check(opened, Operation, next.error());
    if (!*next) raiseNumbered(opened.name, Operation, 62);
    return fromAnsi(**next);
}

Text NumberedFiles::TS_Input(int32 FileNummer) {
    return nextText(FileNummer, u"TS_Input", &SequentialReader::item);
}

Text NumberedFiles::TS_LineInput(int32 FileNummer) {
    return nextText(FileNummer, u"TS_LineInput", &SequentialReader::line);
}

void NumberedFiles::TS_Print(int32 FileNummer, TextView A) {
    NumberedFile& opened = numbered(FileNummer, u"TS_Print");
    needMode(opened, u"TS_Print", {2, 3});
    append(opened, u"TS_Print", toAnsi(A) + "\r\n");
}

void NumberedFiles::append(NumberedFile& opened, TextView Operation, BytesView bytes) {
    const auto error = opened.file->writeAt(opened.position, std::as_bytes(std::span(bytes)));
    if (platform::failed(error)) {
        // No half line stays behind; that this may fail as well changes nothing for the caller.
        static_cast<void>(opened.file->resize(opened.end));
        check(opened, Operation, error);
    }
    opened.position += bytes.size();
    opened.end = std::max(opened.end, opened.position);
}

Bytes NumberedFiles::getBytes(NumberedFile& opened, TextView Operation, uint64 offset, std::size_t count) {
    Bytes bytes(count, '\0');
    const auto read = opened.file->readAt(offset, std::as_writable_bytes(std::span(bytes)));
    check(opened, Operation, read.error());
    bytes.resize(*read);
    opened.position = offset + *read;
    return bytes;
}

void NumberedFiles::TS_Get(int32 FileNummer, int32 Position, ByteText& A) {
    NumberedFile& opened = numbered(FileNummer, u"TS_Get");
    needMode(opened, u"TS_Get", {0, 1, 4, 5});
    if (opened.mode == 1)
        TS_Seek(FileNummer, Position);
    else if (Position < 1)
        raiseNumbered(opened.name, u"TS_Get", 63);
    const uint64 offset = opened.mode == 1 ? opened.position : static_cast<uint64>(Position) - 1;
    const Bytes bytes = getBytes(opened, u"TS_Get", offset, A.size());
    if (opened.mode == 1 && bytes.size() < A.size()) {
        opened.position = offset;
        raiseNumbered(opened.name, u"TS_Get", 62);
    }
    A.replace(0, bytes.size(), fromAnsi(bytes));
}

void NumberedFiles::TS_Put(int32 FileNummer, int32 Position, TextView A) {
    NumberedFile& opened = numbered(FileNummer, u"TS_Put");
    needMode(opened, u"TS_Put", {0, 4, 5});
    if (Position < 1) raiseNumbered(opened.name, u"TS_Put", 63);
    const uint64 offset = static_cast<uint64>(Position) - 1;
    const Bytes bytes = toAnsi(A);
    opened.reader.forget();
    check(opened, u"TS_Put", opened.file->writeAt(offset, std::as_bytes(std::span(bytes))));
    opened.position = offset + bytes.size();
}

int32 NumberedFiles::TS_Lof(int32 FileNummer) {
    const NumberedFile& opened = numbered(FileNummer, u"TS_Lof");
    const auto size = opened.file->size();
    check(opened, u"TS_Lof", size.error());
    if (*size > std::numeric_limits<int32>::max()) raiseNumbered(opened.name, u"TS_Lof", 6);
    return static_cast<int32>(*size);
}

int32 NumberedFiles::TS_Seek(int32 FileNummer, int32 Position) {
    NumberedFile& opened = numbered(FileNummer, u"TS_Seek");
    int64 target = Position;
    // Behind the end, not before it: the length minus a negative position.
    if (Position < 0) target = int64{TS_Lof(FileNummer)} - Position;
    if (target > 0) {
        opened.position = static_cast<uint64>(target) - 1;
        opened.reader.forget();
    }
    if (opened.position >= std::numeric_limits<int32>::max()) raiseNumbered(opened.name, u"TS_Seek", 6);
    return static_cast<int32>(opened.position) + 1;
}

bool NumberedFiles::DB_IsLocked(int32 FileNummer, int32 Satz) {
    NumberedFile* const opened = numbers_.find(FileNummer);
    if (!opened || Satz < 1) return false;
    const auto locked = opened->file->isLocked({static_cast<uint64>(Satz) - 1, 1});
    return locked.ok() && *locked;
}

}  // namespace tsRtm

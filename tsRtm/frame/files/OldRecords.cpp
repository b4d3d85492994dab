// Old record files: text fields that end with CR in records of one length.
#include "tsRtm/frame/files/NumberedFiles.hpp"
#include "tsRtm/frame/messages/Messages.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm {

namespace {

constexpr char fieldEnd = '\r';
constexpr char16_t freeMark = 0xFF;  // a record that begins with this field is free

Bytes padded(Bytes record, int32 length) {
    record.resize(static_cast<std::size_t>(length), ' ');
    return record;
}

Bytes freeRecord(int32 length) { return padded({static_cast<char>(freeMark), fieldEnd}, length); }

bool isFreeMark(TextView field) { return field == TextView(&freeMark, 1); }

uint64 offsetOf(int32 record, int32 length) {
    return (static_cast<uint64>(record) - 1) * static_cast<uint64>(length);
}

}  // namespace

void NumberedFiles::OldOpenRandom(TextView Datei, int32& FileNummer, int32 Laenge, int32 Anzahl) {
    rtmMain::state().F = 0;
    OpenBinary(Datei, FileNummer);
    if (FileNummer == 0 || Anzahl < 1 || Laenge < 1) return;
    try {
        if (TS_Lof(FileNummer) == 0) writeFreeRecords(numbered(FileNummer, u"OldOpenRandom"), Laenge, Anzahl);
    } catch (const Failure& failure) {
        record(failure, u"OldOpenRandom");
    }
    messages_.ErrorHandler(0, u"OldOpenRandom");
}

void NumberedFiles::writeFreeRecords(NumberedFile& opened, int32 length, int32 count) {
    const Bytes record = freeRecord(length);
    for (int32 number = 1; number <= count; ++number) {
        const auto error = opened.file->writeAt(offsetOf(number, length), std::as_bytes(std::span(record)));
        if (!platform::failed(error)) continue;
        // An empty file gets its records at the next try.
        static_cast<void>(opened.file->resize(0));
        check(opened, u"OldOpenRandom", error);
    }
}

void NumberedFiles::OldGet(int32 FileNummer, int32 Rec, int32 Laenge, std::vector<Text>& Feld) {
    for (Text& field : Feld) field.clear();
    NumberedFile& opened = numbered(FileNummer, u"OldGet");
    if (Rec < 1 || Laenge < 1) raiseNumbered(opened.name, u"OldGet", 63);
    const Bytes record = getBytes(opened, u"OldGet", offsetOf(Rec, Laenge), static_cast<std::size_t>(Laenge));
    std::size_t begin = 0;
    for (Text& field : Feld) {
        const auto end = record.find(fieldEnd, begin);
        if (end == Bytes::npos) return;
        Text text = fromAnsi(BytesView(record).substr(begin, end - begin));
        if (isFreeMark(text)) return;
        field = std::move(text);
        begin = end + 1;
        if (begin < record.size() && record[begin] == '\n') ++begin;
    }
}

void NumberedFiles::OldPut(int32 FileNummer, int32 Rec, int32 Laenge, const std::vector<Text>& Feld) {
    if (rtmMain::state().F != 0) return;
    try {
        NumberedFile& opened = numbered(FileNummer, u"OldPut");
        if (Rec < 1 || Laenge < 1) raiseNumbered(opened.name, u"OldPut", 63);
        Bytes record;
        if (!Feld.empty() && isFreeMark(Feld.front())) {
            record = freeRecord(Laenge);
        } else {
            for (const Text& field : Feld) record += toAnsi(field) + fieldEnd;
            record = padded(std::move(record), Laenge);
        }
        opened.reader.forget();
        check(opened, u"OldPut",
              opened.file->writeAt(offsetOf(Rec, Laenge), std::as_bytes(std::span(record))));
    } catch (const Failure& failure) {
        record(failure, u"OldPut");
    }
    messages_.ErrorHandler(0, u"OldPut");
    // Cleared even after a failure, which has been shown by now.
    rtmMain::state().F = 0;
}

}  // namespace tsRtm

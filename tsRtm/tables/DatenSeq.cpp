#include "tsRtm/tables/DatenSeq.hpp"

#include <algorithm>
#include <limits>
#include <new>

#include "tsRtm/frame/ConversionsTopic.hpp"
#include "tsRtm/frame/files/SystemFailures.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/tables/storage/LineCode.hpp"
#include "tsRtm/tables/storage/TableFile.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr TextView kType = u"DatenSeq";
constexpr TextView kGerman = u"äöüÄÖÜß§";

// A text is counted in int32, and each line has at least its end.
constexpr int32 kMostLines = std::numeric_limits<int32>::max() / 2;

Text source(TextView Operation) { return Text(kType) + Text(Operation); }

std::size_t place(int32 index) { return static_cast<std::size_t>(index) - 1; }

}  // namespace

DatenSeq::DatenSeq() : file_(std::make_unique<TableFile>()), code_(std::make_unique<LineCode>()) {}

DatenSeq::~DatenSeq() {
    try {
        // What was stored already is not stored once more: another process may have gone on with the file.
        if (dirty_ && pending_) save(0);
    } catch (const std::exception& failure) {
        rtmMain::DebugLog(Datei() + u": " + fromUtf8(failure.what()));
    }
}

void DatenSeq::Init(TextView Datei, int32 MaxItems, TextView Maske, bool SyncAlways, bool UseWriteMethod,
                    bool WriteMethodForInputOnly) {
    if (dirty_ && pending_) save(0);
    file_->bind(Datei, SyncAlways);
    file_->sensible = true;
    maxItems_ = std::max(MaxItems, 0);
    mask_ = Maske;
    useWriteMethod_ = UseWriteMethod;
    writeMethodForInputOnly_ = WriteMethodForInputOnly;
    lines_.clear();
    dirty_ = pending_ = recoded_ = false;
}

const Text& DatenSeq::Datei() const noexcept { return file_->name(); }
bool DatenSeq::Sensible() const noexcept { return file_->sensible; }
void DatenSeq::Sensible(bool Value) noexcept { file_->sensible = Value; }
int32 DatenSeq::Encoding() const noexcept { return file_->encoding; }
void DatenSeq::Encoding(int32 Value) noexcept { file_->encoding = Value; }

void DatenSeq::sync() { sync(TableLook::nowAndThen); }

void DatenSeq::sync(TableLook how) {
    const auto news = file_->look(how);
    if (news.what == TableFile::News::none) return;
    lines_ = linesOf(news.text);
    if (maxItems_ > 0 && held() > maxItems_) lines_.resize(static_cast<std::size_t>(maxItems_));
    if (encrypted_)
        for (Text& line : lines_) line = code_->decoded(line);
    pending_ = recoded_ = false;
    Change();
}

void DatenSeq::Encrypted(bool Value) noexcept {
    if (std::exchange(encrypted_, Value) != Value && file_->seen()) recoded_ = !recoded_;
}

bool DatenSeq::has(int32 Index) const noexcept { return Index >= 1 && Index <= held(); }
bool DatenSeq::full() const noexcept { return maxItems_ > 0 && held() >= maxItems_; }

bool DatenSeq::IsEmpty() {
    sync();
    return file_->bound() ? !file_->exists() : Count() < 1;
}

int32 DatenSeq::Count() {
    // The limit, not the lines: callers fill the list up to it by index.
    if (maxItems_ > 0) return maxItems_;
    sync();
    return held();
}

Text DatenSeq::Item(int32 Index) {
    sync();
    return has(Index) ? lines_[place(Index)] : Text();
}

void DatenSeq::beforeChange(TextView Value, TextView Operation) {
    beforeChange(Value, Operation, TableLook::nowAndThen);
}

void DatenSeq::beforeChange(TextView Value, TextView Operation, TableLook how) {
    sync(how);
    file_->needRead(source(Operation));
    needHeld(Value, Operation);
}

void DatenSeq::needHeld(TextView line, TextView Operation) const {
    if (file_->bound() && !encrypted_) tsRtm::needHeld(line, Holds::oneLine, source(Operation), Datei());
}

void DatenSeq::afterChange(int32 appended) {
    dirty_ = pending_ = true;
    if (file_->syncAlways()) save(appended);
    Change();
}

void DatenSeq::Item(int32 Index, TextView Value) {
    beforeChange(Value, u".Item");
    if (Index < 1 || (maxItems_ > 0 && Index > maxItems_)) return;
    if (Index > held()) lengthen(Index);
    lines_[place(Index)] = Value;
    afterChange();
}

void DatenSeq::lengthen(int32 count) {
    try {
        if (count > kMostLines) raise(9, source(u".Item"), failureText(9));
        lines_.resize(static_cast<std::size_t>(count));
    } catch (const std::bad_alloc&) {
        raise(7, source(u".Item"), failureText(7));
    }
}

int32 DatenSeq::Add(TextView Value) {
    beforeChange(Value, u".Add", file_->syncAlways() ? TableLook::forAppending : TableLook::nowAndThen);
    if (full()) return 0;
    lines_.emplace_back(Value);
    const int32 index = held();
    afterChange(index);
    return index;
}

int32 DatenSeq::Insert(int32 Index, TextView Value) {
    beforeChange(Value, u".Insert");
    if (!has(Index) || full()) return 0;
    lines_.emplace(lines_.begin() + (Index - 1), Value);
    afterChange();
    return Index;
}

Text DatenSeq::Remove(int32 Index) {
    beforeChange({}, u".Remove");
    if (!has(Index)) return {};
    Text removed = std::move(lines_[place(Index)]);
    lines_.erase(lines_.begin() + (Index - 1));
    afterChange();
    return removed;
}

void DatenSeq::Clear() {
    if (file_->bound()) file_->remove(kType);
    lines_.clear();
    pending_ = recoded_ = false;
    Change();
}

void DatenSeq::Commit() {
    if (dirty_) save(0);
}

// The lines from this one on (0-based). A list without lines is an empty file: a line end alone would come
// back as an empty line.
Text DatenSeq::fileText(std::size_t from) {
    Text text;
    for (std::size_t i = from; i < lines_.size(); ++i) {
        // Encrypted may have been switched off since the line was set.
        needHeld(lines_[i], u".Commit");
        (text += encrypted_ ? code_->encoded(lines_[i]) : lines_[i]) += kLineEnd;
    }
    return text;
}

void DatenSeq::save(int32 from) {
    if (!file_->bound() || !dirty_) return;
    if (file_->unread()) sync(TableLook::forced);
    file_->needRead(source(u".Commit"));
    if (from > 0 && !recoded_ && file_->canAppend())
        file_->append(fileText(place(from)));
    else
        file_->rewrite(fileText(0));
    pending_ = recoded_ = false;  // while dirty_ stays set: the program clears it
}

void DatenSeq::MigrateToAnsi() {
    if (IsAnsi || !file_->bound()) return;
    IsAnsi = true;
    FilesTopic& files = file_->files();
    int32 number = 0;
    if (!file_->exists()) return;
    files.OpenBinary(Datei(), number);
    if (number == 0) return;
    try {
        Text content(static_cast<std::size_t>(files.TS_Lof(number)), u' ');
        if (!content.empty()) files.TS_Get(number, 1, content);
        const Text converted = ConversionsTopic().ConvertToWin(content, typALLES);
        if (converted.find_first_of(kGerman) != Text::npos) files.TS_Put(number, 1, converted);
        files.TS_Close(number);
    } catch (const Failure&) {
        files.TS_Close(number);
        throw;
    }
}

}  // namespace tsRtm

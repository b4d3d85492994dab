// What a list or table sees of its file. How a new version gets into its place stands in TableReplacing.cpp.
#include "tsRtm/tables/storage/TableFile.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "tsRtm/frame/files/Encodings.hpp"
#include "tsRtm/frame/files/SystemFailures.hpp"
#include "tsRtm/frame/files/Waiting.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/Lifetime.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

using platform::FileStatus;
using platform::SystemError;

constexpr float64 kBetweenLooks = 5e-5;        // days, 4.32 seconds
constexpr float64 kYoung = 2.0 / (24 * 3600);  // days
constexpr int32 kReadings = 20;
constexpr int32 kNotFound = 53;
constexpr int32 kEmptyLooks = 3;  // one writer may begin where another one ends
constexpr int64 kLongestGap = 1;  // seconds

// FNV-1a, which goes on from the hash of a beginning.
constexpr uint64 kHashOfNothing = 0xCBF29CE484222325;
uint64 hashOf(TextView text, uint64 hash = kHashOfNothing) {
    for (const char16_t c : text) hash = (hash ^ c) * 0x100000001B3;
    return hash;
}

uint64 sizeIn(int32 encoding, TextView text) {
    return text.empty() ? 0 : encodings::encode(text, encoding).size();
}

// Lines can be put behind the text. Not where it has LF alone: with the first CR these would be line ends no
// more.
bool takesLines(TextView text) {
    return text.empty() || text.ends_with(u'\r') || (text.ends_with(u'\n') && text.find(u'\r') != text.npos);
}

}  // namespace

TableFile::TableFile() { rtmMain::ensureStarted(); }

void TableFile::bind(TextView Datei, bool SyncAlways) {
    name_ = Datei;
    syncAlways_ = SyncAlways;
    looked_ = false;
    forget();
}

void TableFile::forget() {
    seen_ = false;
    wasYoung_ = false;
    appendable_ = true;
    fileEncoding_ = 0;
    readFailure_ = 0;
    stamp_ = {};
    size_ = 0;
    hash_ = kHashOfNothing;
}

std::optional<FileStatus> TableFile::status() const {
    const auto found = rtmMain::system().files.status(name_);
    if (!found || found->folder) return std::nullopt;
    return *found;
}

bool TableFile::exists() const { return status().has_value(); }

// On some volumes the writer of a sensible file takes the old one away before it puts the new one there, and
// for this moment both lie beside the place.
std::optional<FileStatus> TableFile::statusOrGap(bool firstLook) const {
    auto found = status();
    if (found || !(seen_ || firstLook)) return found;
    int32 emptyLooks = 0;
    for (Waiting waiting; !found && !waiting.longerThan(kLongestGap); waiting.pause()) {
        emptyLooks = hasTemporaryBeside() ? 0 : emptyLooks + 1;
        found = status();
        if (emptyLooks == kEmptyLooks) break;
    }
    return found;
}

bool TableFile::hasTemporaryBeside() const {
    const Text folder = FilesTopic::PathName(name_);
    const auto entries = rtmMain::system().files.list(folder.empty() ? TextView(u".") : TextView(folder));
    return entries && std::any_of(entries->begin(), entries->end(), [](const auto& entry) {
               return entry.name.starts_with(u"rad") && entry.name.ends_with(u".tmp");
           });
}

bool TableFile::young(Date stamp) const {
    return std::fabs(rtmMain::system().clock.now().serial() - stamp.serial()) < kYoung;
}

TableFile::News TableFile::look(Look how) {
    if (!bound()) return {};
    const Date now = rtmMain::system().clock.now();
    const bool soon = looked_ && std::fabs(now.serial() - lastLook_.serial()) < kBetweenLooks;
    if (soon && !syncAlways_ && how == Look::nowAndThen) return {};
    const bool firstLook = !std::exchange(looked_, true);
    lastLook_ = now;
    News news;
    if (const auto found = statusOrGap(firstLook)) {
        const bool same = seen_ && !unread() && found->changed == stamp_ && found->size == size_;
        news = same ? verified(*found, how) : changed(*found);
    } else if (seen_ || unread()) {
        forget();
        news.what = News::gone;
    }
    if (encoding == 0 && !unread()) encoding = UTF8;
    return news;
}

TableFile::News TableFile::changed(FileStatus before) {
    int32 fileEncoding = encoding;
    auto text = content(fileEncoding);
    // Somebody may have written between the look at the status and the reading.
    for (int32 tries = 0; tries < kReadings && (text || readFailure_ == kNotFound); ++tries) {
        const auto after = text ? status() : statusOrGap(true);
        if (!after) break;
        if (text && after->changed == before.changed && after->size == before.size) break;
        before = *after;
        text = content(fileEncoding = encoding);
    }
    if (!text) return {};
    if (encoding == 0) encoding = fileEncoding;
    remember(*text, fileEncoding, before);
    return {News::content, std::move(*text)};
}

TableFile::News TableFile::verified(const FileStatus& status, Look how) {
    const bool mayChangeStill = young(stamp_) && !syncAlways_;
    if (!wasYoung_ || mayChangeStill || how == Look::forAppending) return {};
    const auto before = hash_;
    News news = changed(status);
    if (hash_ == before) news.what = News::none;
    return news;
}

std::optional<Text> TableFile::content(int32& fileEncoding) {
    int32& F = rtmMain::state().F;
    const int32 before = std::exchange(F, 0);
    try {
        Date ignored;
        Text text = files_.GetContentAPI(name_, fileEncoding, ignored);
        readFailure_ = F;
        if (F != 0) return std::nullopt;  // F stays: it says why
        F = before;
        return text;
    } catch (const Failure& failure) {
        F = before;
        readFailure_ = failure.Number();
        throw;
    }
}

void TableFile::remember(TextView text, int32 fileEncoding, const FileStatus& status) {
    seen_ = true;
    stamp_ = status.changed;
    size_ = status.size;
    hash_ = hashOf(text);
    wasYoung_ = young(stamp_);
    fileEncoding_ = fileEncoding;
    readFailure_ = 0;
    // Behind an end-of-file mark or an unfinished line nothing is to be appended.
    const uint64 whole =
        size_ == 0 ? 0 : encodings::markBytes(fileEncoding).size() + sizeIn(fileEncoding, text);
    appendable_ = takesLines(text) && whole == size_;
}

void TableFile::disregard() {
    if (!bound()) return;
    forget();
    looked_ = true;
    lastLook_ = rtmMain::system().clock.now();
    if (const auto found = status()) {
        seen_ = true;
        stamp_ = found->changed;
        size_ = found->size;
        appendable_ = false;
    }
}

void TableFile::rememberWritten(TextView text, int32 fileEncoding) {
    looked_ = true;
    lastLook_ = rtmMain::system().clock.now();
    if (const auto found = status())
        remember(text, fileEncoding, *found);
    else
        forget();
}

void TableFile::needRead(TextView Source) const {
    if (!unread()) return;
    raise(readFailure_, Source,
          u"Die Datei \"" + name_ + u"\" kann nicht gelesen werden: " + failureText(readFailure_));
}

int32 TableFile::readableEncoding(int32 wanted, TextView text) {
    if (!encodings::supported(wanted)) return wanted;  // PutContentAPI says so
    // As many characters as the longest mark has bytes.
    const Bytes head = Bytes(encodings::markBytes(wanted)) + encodings::encode(text.substr(0, 4), wanted);
    const int32 unmarked = wanted == CP850 ? static_cast<int32>(ANSI1252) : wanted;
    return encodings::detect(head).encoding == unmarked ? wanted : static_cast<int32>(UTF8);
}

void TableFile::append(TextView text) {
    if (encoding == 0) encoding = UTF8;
    const bool fresh = size_ == 0;
    const int32 fileEncoding = fresh || fileEncoding_ == 0 ? readableEncoding(encoding, text) : fileEncoding_;
    Date ignored;
    const int64 end = files_.PutContentAPI(name_, text, fileEncoding, true, ignored);
    const uint64 added = sizeIn(fileEncoding, text) + (fresh ? encodings::markBytes(fileEncoding).size() : 0);
    const auto hash = hashOf(text, hash_);
    const auto found = status();
    // Somebody else was here in between: the next look reads it all.
    const bool alone = found && static_cast<uint64>(end) == size_ + added && found->size == size_ + added;
    looked_ = alone;
    lastLook_ = rtmMain::system().clock.now();
    seen_ = true;
    stamp_ = alone ? found->changed : Date();
    size_ += added;
    hash_ = hash;
    wasYoung_ = alone && young(stamp_);
    fileEncoding_ = fileEncoding;
}

}  // namespace tsRtm

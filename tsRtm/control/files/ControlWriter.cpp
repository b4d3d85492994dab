#include "tsRtm/control/files/ControlWriter.hpp"

#include <span>

#include "tsRtm/frame/files/SystemFailures.hpp"
#include "tsRtm/frame/files/Waiting.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr TextView kSource = u"clsControl.Save";
constexpr TextView kLineEnd = u"\r\n";
constexpr BytesView kUtf8Mark = "\xEF\xBB\xBF";

void appendNumbers(Text& out, std::initializer_list<int32> numbers) {
    bool first = true;
    for (const auto number : numbers) {
        if (!first) out += u',';
        out += toText(number);
        first = false;
    }
}

// A line end or the old end-of-file mark would end the title's line, a "_" at its end would swallow the next
// one.
bool isWritable(TextView title, bool unicode) noexcept {
    if (title.ends_with(u'_')) return false;
    for (const auto c : title)
        if (c == u'\r' || c == u'\n' || c == 26 || (!unicode && unicodeToAnsi(c) < 0)) return false;
    return true;
}

// The length as the file states it: of a memo its block length, which the field itself no longer shows.
class StatedLengths {
 public:
    explicit StatedLengths(const ControlContent& content) : memos_(content.memos) {}
    // For fields in rising order.
    int32 of(int32 number, const TSIO& field) noexcept {
        if (next_ < memos_.size() && memos_[next_].Feld() == number) return memos_[next_++].Breit();
        return field.Laenge();
    }

 private:
    const std::vector<clsMemo>& memos_;
    std::size_t next_ = 0;
};

void appendField(Text& out, const TSIO& field, int32 laenge, const ControlContent& content, eControlTyp typ) {
    appendNumbers(out, {field.NachKomma(), field.Zeile(), field.Spalte(), laenge, field.Typ()});
    out += u',';
    if (typ == ControlTyp_Maske) {
        // A name that no parent could resolve stays a name.
        const bool byName = field.DBFeld() < 1 && !field.DBFeldName().empty();
        (out += byName ? field.DBFeldName() : toText(field.DBFeld())) += u',';
    }
    if (!isWritable(field.Titel(), content.unicode))
        raise(380, kSource,
              u"Der Titel \"" + field.Titel() + u"\" lässt sich nicht in die Steuerdatei schreiben.");
    out += u'"';
    out += content.nichtAnsi ? CharToOem(field.Titel()) : field.Titel();
    (out += u'"') += kLineEnd;
}

Text controlText(const ControlContent& content, eControlTyp typ) {
    Text out;
    if (!content.nichtAnsi) out += content.unicode ? u"TS2," : u"TS1,";
    (out += toText(static_cast<int64>(content.felder.size()))) += kLineEnd;
    StatedLengths lengths(content);
    int32 number = 0;
    for (const auto& field : content.felder) {
        ++number;
        appendField(out, *field, lengths.of(number, *field), content, typ);
    }
    if (typ == ControlTyp_Maske) return out;
    appendNumbers(out,
                  {content.satzLaenge + 1, content.maxRecords, static_cast<int32>(content.indizes.size())});
    out += kLineEnd;
    for (const auto& entry : content.indizes) {
        appendNumbers(out, {entry[0], entry[1], entry[2]});
        out += kLineEnd;
    }
    // Nobody reads it, but every such file has it.
    return (out += u"0") += kLineEnd;
}

using platform::SystemError;

// Writes the whole temporary file and hands it to the device; what the file system says otherwise.
SystemError writeWhole(TextView name, BytesView bytes) {
    auto file = rtmMain::system().files.open(
        name, {platform::Access::readWrite, platform::Sharing::none, platform::Disposition::createEmpty});
    if (!file) return file.error();
    const auto written = (*file)->writeAt(0, std::as_bytes(std::span(bytes)));
    return platform::failed(written) ? written : (*file)->flush();
}

}  // namespace

Bytes encodeControl(const ControlContent& content, eControlTyp typ) {
    const auto text = controlText(content, typ);
    return content.unicode ? Bytes(kUtf8Mark) + toUtf8(text) : toAnsi(text);
}

void replaceControlFile(TextView dir, TextView target, BytesView bytes) {
    auto& files = rtmMain::system().files;
    const auto temporary = rtmMain::JoinPath({dir, u"Control.tmp"});
    auto error = writeWhole(temporary, bytes);
    if (!platform::failed(error))
        error = patiently([&] {
            return files.rename(temporary, rtmMain::JoinPath({dir, target}), /*replace=*/true);
        });
    if (!platform::failed(error)) {
        // The new name, too, is on the device.
        static_cast<void>(files.flushFolder(dir));
        return;
    }
    // Another opening's temporary file is not ours to take away.
    if (error != SystemError::sharingViolation) static_cast<void>(files.remove(temporary));
    raise(failureNumber(error), kSource,
          u"Die Datei \"" + rtmMain::JoinPath({dir, target}) + u"\" kann nicht geschrieben werden.");
}

}  // namespace tsRtm

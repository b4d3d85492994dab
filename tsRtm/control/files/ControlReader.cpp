#include "tsRtm/control/files/ControlReader.hpp"

#include <limits>

#include "tsRtm/control/files/ControlMessages.hpp"
#include "tsRtm/control/files/ControlText.hpp"
#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr int32 kAnsiCodePage = 1252;
// Two bytes a character in a field with IsUnicode: even the largest record is an int32.
static_assert(int64{kMaxFelder} * kMaxLaenge * 2 + kMaxLaenge < std::numeric_limits<int32>::max());

int32 toNumber(TextView text) noexcept { return roundToInt32(Val(text)); }

bool isNumber(TextView text) noexcept { return IstNumerisch(text, u"", u""); }

[[noreturn]] void refuse(TextView what) { raise(380, u"clsControl.Oeffne", what); }

// Trimmed; where the first character is a double quote, it and the last one are taken off.
TextView unquoted(TextView text) noexcept {
    text = trim(text);
    if (text.empty() || text.front() != u'"') return text;
    return text.size() < 2 ? TextView() : text.substr(1, text.size() - 2);
}

struct Head {
    bool ansi = false;
    int32 version = 0;
    int32 count = 0;
};

Head parseHead(TextView line) {
    Head head;
    line = trim(line);
    head.ansi = equalIgnoringCase(line.substr(0, 2), u"TS");
    const auto comma = line.find(u',');
    if (comma != TextView::npos) {
        if (head.ansi) head.version = toNumber(line.substr(2, comma - 2));
        head.count = toNumber(line.substr(comma + 1));
    } else if (isNumber(line)) {
        head.count = toNumber(line);
    }
    return head;
}

class Reader {
 public:
    Reader(Text text, const ControlSurroundings& around, ControlContent& content)
        : text_(std::move(text)), around_(around), content_(content) {}

    void readFields(int32 count) {
        content_.felder.reserve(static_cast<std::size_t>(std::min(count, 256)));
        for (int32 number = 1; number <= count; ++number) {
            text_.skipComments();
            auto field = readDefinition();
            place(number, *field);
            content_.felder.push_back(std::move(field));
        }
    }

    void readIndexes() {
        text_.skipComments();
        if (text_.atEnd()) return;
        text_.readItem();  // the record length as the writer saw it; the fields tell the true one
        content_.maxRecords = toNumber(text_.readItem());
        const auto count = toNumber(text_.readItem());
        if (count > kMaxFelder) refuse(u"Zu viele Indizes");
        for (int32 i = 0; i < count; ++i) readIndex();
        addAutowertIndex();
    }

 private:
    std::shared_ptr<TSIO> readDefinition() {
        auto field = std::make_shared<TSIO>();
        field->NachKomma(toNumber(text_.readItem()));
        field->Zeile(toNumber(text_.readItem()));
        field->Spalte(toNumber(text_.readItem()));
        field->Laenge(toNumber(text_.readItem()));
        field->Typ(toNumber(text_.readItem()));
        // A memo states the length of its blocks; its columns in the record are few whatever that is.
        const bool inRecord = !field->IsMemo() && !field->IsBlob();
        if (field->Laenge() < 0 || (inRecord && field->Laenge() > kMaxLaenge))
            refuse(u"Feldlänge außerhalb des Bereichs");
        if (around_.typ == ControlTyp_Maske) readDBFeld(*field);
        field->Titel(readTitle());
        return field;
    }

    void readDBFeld(TSIO& field) {
        const auto item = text_.readItem();
        if (isNumber(item) || trim(item).empty()) return field.DBFeld(toNumber(item));
        field.DBFeldName(item);
        field.DBFeld(around_.dbFeld ? around_.dbFeld(item) : 0);
    }

    Text readTitle() {
        Text title(unquoted(text_.readRest()));
        while (title.ends_with(u'_')) {
            title.pop_back();
            title += unquoted(text_.readLine());
        }
        return content_.nichtAnsi ? OemToChar(title) : title;
    }

    // What follows from a field's words and from its place among the fields.
    void place(int32 number, TSIO& field) {
        constexpr int32 kNewPage = 16;
        if (number == 1 || (field.NachKomma() & kNewPage) != 0) ++content_.seiten;
        field.Seite(content_.seiten);
        if (around_.typ != ControlTyp_Maske) field.DBFeld(number);
        sortByKind(number, field);
        if (content_.autowertFeld == 0 && field.Typ() == tsAutowert && field.NachKomma() == 0)
            content_.autowertFeld = number;
        field.Position(content_.satzLaenge);
        content_.satzLaenge += field.IsUnicode() ? field.Laenge() * 2 : field.Laenge();
        content_.unicodeFelder = content_.unicodeFelder || field.IsUnicode();
    }

    void sortByKind(int32 number, TSIO& field) {
        const auto kette = ketteNummer(around_.typ, number, field);
        if (TSIO::isSpecial(field.Typ())) {
            // A hidden field with a chain file is a chain, though its word keeps saying otherwise.
            if (!hasKetteCtl(kette)) return;
            field.IstKetteFeld(true);
            content_.ketten.push_back(number);
        } else if (field.IsMemo()) {
            content_.memos.emplace_back(field.Laenge(), number);
            field.Laenge(kPointerLaenge);
            if ((field.Typ() & TSIO::kKindMask) == tsProperties) content_.propFeld = number;
        } else if (field.IsBlob()) {
            content_.blobs.push_back(number);
            field.Laenge(kPointerLaenge);
        } else if (field.IsKette()) {
            content_.ketten.push_back(number);
            const bool standsAlone = equalIgnoringCase(lastCharacters(around_.file, 4), u".CTL");
            if (!standsAlone && !hasKetteCtl(kette)) showMissingKette(around_.files, around_.dir, kette);
        }
    }

    static TextView lastCharacters(TextView text, std::size_t count) noexcept {
        return text.substr(text.size() - std::min(text.size(), count));
    }

    bool hasKetteCtl(int32 number) const {
        return around_.files.Exist(rtmMain::JoinPath({around_.dir, ketteCtlName(number)}));
    }

    void readIndex() {
        IndexEntry entry{};
        for (auto& component : entry) component = readComponent();
        const auto primary = entry.front();
        for (const auto& earlier : content_.indizes)
            if (primary != 0 && earlier.front() == primary) {
                showDoubleIndexes(around_.files, around_.file, around_.dir);
                break;
            }
        content_.indizes.push_back(entry);
        for (const auto number : entry)
            if (number != 0) content_.felder[static_cast<std::size_t>(number - 1)]->IstIndexFeld(true);
    }

    // A field number that is there, or 0: a wrong one is shown and counts as none.
    int32 readComponent() {
        const auto item = text_.readItem();
        const bool number = isNumber(item) || trim(item).empty();
        const auto field = number ? toNumber(item) : around_.eigenesFeld(trim(item));
        if (field >= 0 && field <= static_cast<int32>(content_.felder.size())) return field;
        showWrongIndex(around_.files, around_.file, around_.dir);
        return 0;
    }

    void addAutowertIndex() {
        const auto field = content_.autowertFeld;
        if (field == 0) return;
        for (const auto& entry : content_.indizes)
            if (entry.front() == field) return;
        content_.indizes.push_back({field, 0, 0});
        content_.felder[static_cast<std::size_t>(field - 1)]->IstIndexFeld(true);
    }

    ControlText text_;
    const ControlSurroundings& around_;
    ControlContent& content_;
};

// The text behind its head, decoded by the version that the head tells.
Text body(TextView text, std::size_t headLength, bool unicode, int32 encoding) {
    const auto rest = text.substr(headLength);
    // A file of version 2 is UTF-8 even where it bears no mark.
    return unicode && encoding == kAnsiCodePage ? fromUtf8(toAnsi(rest)) : Text(rest);
}

}  // namespace

bool readControl(TextView text, int32 encoding, const ControlSurroundings& around, ControlContent& content) {
    if (text.empty()) raise(62, u"clsControl.Oeffne", u"Die Steuerdatei ist leer.");
    const auto headEnd = text.find_first_of(u"\r\n");
    const auto head = parseHead(text.substr(0, headEnd));
    if (head.ansi) content.nichtAnsi = false;
    if (head.version >= 3) return false;
    content.unicode = head.version == 2;
    if (head.count < 0 || head.count > kMaxFelder) refuse(u"Anzahl der Felder außerhalb des Bereichs");

    const auto bodyStart = std::min(headEnd, text.size());
    Reader reader(body(text, bodyStart, content.unicode, encoding), around, content);
    reader.readFields(head.count);
    if (around.typ != ControlTyp_Maske) reader.readIndexes();
    return true;
}

}  // namespace tsRtm

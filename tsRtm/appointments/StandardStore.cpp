// clsTerminkalender: the store that it makes for itself.
#include <set>

#include "tsRtm/appointments/clsTerminkalender.hpp"
#include "tsRtm/frame/FilesTopic.hpp"

namespace tsRtm {
namespace {

struct FieldRow {
    int32 nachKomma, zeile, spalte, laenge, typ;
    TextView titel;
};

constexpr FieldRow kFields[] = {
    {0, 0, 0, 8, 253, u"ID@@7ID"},
    {0, 8, 5, 8, 0, u"Termin      @@7TERMIN"},
    {0, 9, 5, 10, 1, u"&Tag         @Geben Sie hier den Tag ein; für Vorplanung . bzw ..@7TAG"},
    {2, 10, 5, 5, 39, u"&Uhrzeit     @Sie können eine Uhrzeit für den Termin festlegen@7UHRZEIT"},
    {2, 11, 5, 5, 39, u"&Dauer       @Hier wird die Dauer des Termins in Stunden bestimmt@7DAUER"},
    {0, 12, 5, 40, 1, u"&Anlass      @Das Sonderzeichen # zählt die Termine ab 0; ^ ab 1@7TEXT"},
    {0, 13, 5, 78, 22, u"&Bemerkung   @Mit der Taste F9 rufen Sie das MEMO-Fenster auf@7MEMO"},
    {0, 14, 5, 8, 7,
     u"T&ermin ab Datum (TTMMJJJJ) @bei regelmäßigen Terminen müssen Sie hier das Startdatum "
     u"angeben@7ABDATUM"},
    {0, 14, 45, 8, 7, u"b&is @hier kann für regelmäßige Termine das letzte Datum angegeben werden@7BISDATUM"},
    {0, 15, 5, 5, 1, u"&Wer (A-Z,?) @Sie können dieses Feld für Kennbuchstaben benutzen@7WER"},
    {0, 16, 5, 2, 1, u"&Kennzeichen @Hier können Sie den Termin klassifizieren@7KZ"},
};
constexpr int32 kMaxRecords = 999999999;
// Key with time and duration; subject with key and time.
constexpr TextView kIndexes = u"002004005006002004";
constexpr std::size_t kIndexCharacters = 9;
constexpr int32 kLongest = 32767;
constexpr int32 kTypes = 256;

TSIOArray standardFields() {
    TSIOArray out;
    for (const auto& row : kFields) {
        auto field = std::make_shared<TSIO>();
        field->NachKomma(row.nachKomma);
        field->Zeile(row.zeile);
        field->Spalte(row.spalte);
        field->Laenge(row.laenge);
        field->Typ(row.typ);
        field->Titel(Text(row.titel));
        out.push_back(std::move(field));
    }
    return out;
}

// What an extender made of the fields can be a database.
bool areSound(const TSIOArray& fields) {
    std::set<Text> names;
    int64 total = 0;
    for (const auto& field : fields) {
        if (!field || field->Laenge() < 1 || field->Laenge() > kLongest) return false;
        if (field->Typ() < 0 || field->Typ() >= kTypes) return false;
        if (!field->Name().empty() && !names.insert(upper(field->Name())).second) return false;
        total += field->Laenge();
    }
    return !fields.empty() && total <= std::numeric_limits<int32>::max();
}

}  // namespace

// Whoever comes second, where two begin, opens what the first one made.
bool clsTerminkalender::create(TextView name) {
    TSIOArray fields = standardFields();
    int32 most = kMaxRecords;
    Text indexes(kIndexes);
    if (extender_) extender_->Create(fields, most, indexes);
    if (!areSound(fields) || most < 1 || indexes.size() < kIndexCharacters || fields.size() < 3) return false;
    return databases_.DB_Create(name, fields, most, indexes);
}

}  // namespace tsRtm

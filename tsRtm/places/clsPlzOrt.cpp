#include "tsRtm/places/clsPlzOrt.hpp"

#include <algorithm>

#include "tsRtm/database/clsTSRecordSet.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/places/codes/CodeIndex.hpp"
#include "tsRtm/types/Digits.hpp"

namespace tsRtm {
namespace {

constexpr std::size_t kCode = 5;

bool isWithin(TextView shorter, TextView longer) { return upper(longer).find(upper(shorter)) != Text::npos; }

// What a wished name makes of an entry of a list: its number for the first one that matches, a negative one
// where another one does, too.
int32 matched(TextView wished, TextView name, int32 number, int32 before) {
    if (wished.empty() || before < 0) return before;
    if (!(wished.size() < name.size() ? isWithin(wished, name) : isWithin(name, wished))) return before;
    return before == 0 ? number : -before;
}

}  // namespace

// "Orte" and its index of codes, for the length of a look-up.
class clsPlzOrt::Opened {
 public:
    explicit Opened(clsPlzOrt& owner) : owner_(owner) {
        if (owner.places_) return;
        const auto& folder = rtmMain::state().runtimeDataDir;
        owner.places_ = owner.databases_.OpenReference(folder, placeRegister::kPlaces);
        if (!owner.places_) return;
        // Behind the database: while that is held open no other index can come.
        const Text name =
            FilesTopic::MakePath({Variant(folder), Variant(Text(placeRegister::kPlaces) + u".DBD"),
                                  Variant(Text(CodeIndex::kFileName))});
        if (auto file = rtmMain::system().files.open(name, {})) owner.codes_ = std::move(*file);
    }
    ~Opened() {
        if (!owner_.staysOpen_) owner_.close();
    }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;

 private:
    clsPlzOrt& owner_;
};

clsPlzOrt::clsPlzOrt()
    : messages_(std::make_unique<MessagesTopic>()),
      files_(std::make_unique<FilesTopic>(*messages_)),
      databases_(*files_) {}

clsPlzOrt::~clsPlzOrt() = default;

void clsPlzOrt::close() {
    codes_.reset();
    places_.reset();
}

void clsPlzOrt::Offenhalten(bool value) {
    staysOpen_ = value;
    if (!value) close();
}

bool clsPlzOrt::PLZOrt(TextView PLZ, TextView Strasse, Text& Postleitzahl, Text& Ort, Text& GemeindeKZ,
                       bool NurPLZ) {
    // What comes in may be what goes out.
    const Text typed(PLZ), street(Strasse);
    Ort.clear();
    GemeindeKZ.clear();
    const Opened opened(*this);
    Found found;
    if (!places_ || !find(typed, street, NurPLZ, found)) return false;
    Postleitzahl = found.code;
    Ort = found.place.name.substr(0, found.place.name.find(u','));  // "Aachen, Stadt"
    GemeindeKZ = found.place.municipality;
    return true;
}

bool clsPlzOrt::PLZOrt(TextView PLZ, TextView Strasse, Text& Postleitzahl, Text& Ort) {
    Text municipality;
    return PLZOrt(PLZ, Strasse, Postleitzahl, Ort, municipality);
}

std::shared_ptr<clsTSRecordSet> clsPlzOrt::OrtsSatzAusGeschl(TextView Geschl) {
    const Opened opened(*this);
    if (!places_) return nullptr;
    const Text all = Text(Geschl) + rtmMain::state().locale.lastChar;
    return places_->Records()->GetRange(fOrteGemeindeSchluessel, Geschl, all);
}

Text clsPlzOrt::OrtsName(TextView PLZ) {
    const Opened opened(*this);
    Found found;
    if (!places_ || !find(PLZ, {}, true, found) || found.shared) return {};
    return found.place.name.substr(0, found.place.name.find(u','));
}

Text clsPlzOrt::Bundesland(TextView PLZ) {
    const Opened opened(*this);
    Found found;
    if (!places_) return {};
    if (placeOf(PLZ.substr(0, kCode), found) && found.shared) {
        const auto places = sharing(PLZ.substr(0, kCode), found.place);
        Text state = StateOf(places.front().municipality);
        if (!state.empty() && std::all_of(places.begin(), places.end(), [&](const Place& place) {
                return StateOf(place.municipality) == state;
            }))
            return state;
    }
    return find(PLZ, {}, false, found) ? StateOf(found.place.municipality) : Text();
}

bool clsPlzOrt::find(TextView typed, TextView street, bool codesOnly, Found& found) {
    found = {};
    if (typed.empty()) return false;
    if (isDigit(typed.front())) return byCode(typed, codesOnly, found);
    return !codesOnly && byName(typed, street, found);
}

// --- By code

bool clsPlzOrt::byCode(TextView typed, bool codesOnly, Found& found) {
    const TextView code = typed.substr(0, kCode);
    if (!placeOf(code, found)) return false;
    found.code = Text(code);
    if (codesOnly || !found.shared) return true;
    const TextView wished = trimLeft(typed.substr(code.size()));
    return choosePlace(sharing(code, found.place), wished, found.place);
}

bool clsPlzOrt::placeOf(TextView code, Found& found) {
    if (code.size() != kCode || !IstZiffern(code) || !codes_) return false;
    const auto entry = CodeIndex(*codes_).at(roundToInt32(Val(code)));
    found.shared = entry.shared;
    return read(entry.record, found.place);
}

bool clsPlzOrt::read(int32 number, Place& place) {
    const auto record = number > 0 ? places_->Record(number) : nullptr;
    if (!record || record->Deleted()) return false;
    place = {record->Fields(fOrteALORT), record->Fields(fOrteName), record->Fields(fOrteGemeindeSchluessel),
             record->Fields(fOrteZustellPLZ), record->Fields(fOrtePostfachPLZ)};
    return !place.name.empty();  // of another layout
}

std::vector<clsPlzOrt::Place> clsPlzOrt::placesWith(int32 field, TextView value) {
    std::vector<Place> places;
    const auto records = value.empty() ? nullptr : places_->Records()->GetRange(field, value, value);
    if (!records) return places;
    for (const int32 number : records->Satznummern())
        if (Place place; read(number, place)) places.push_back(std::move(place));
    return places;
}

// Those to which mail for that code goes; for a code of boxes those that have the boxes.
std::vector<clsPlzOrt::Place> clsPlzOrt::sharing(TextView code, const Place& first) {
    auto places = placesWith(first.delivery == code ? fOrteZustellPLZ : fOrtePostfachPLZ, code);
    if (places.empty()) places.push_back(first);
    // A place has a record for each of its boxes.
    for (std::size_t i = 1; i < places.size();)
        if (!places[i].key.empty() && places[i].key == places[i - 1].key)
            places.erase(places.begin() + static_cast<std::ptrdiff_t>(i));
        else
            ++i;
    return places;
}

bool clsPlzOrt::choosePlace(const std::vector<Place>& places, TextView wished, Place& place) {
    int32 line = places.size() == 1 ? 1 : 0;
    for (std::size_t i = 0; places.size() > 1 && i < places.size(); ++i)
        line = matched(wished, places[i].name, static_cast<int32>(i) + 1, line);
    if (line < 1) {
        platform::ChoiceList list;
        list.caption = u"Ortauswahl";
        list.titles = {u"PLZ", u"Ort"};
        list.count = static_cast<int32>(places.size());
        list.start = std::max(1, -line);
        list.cells = [&](int32 n) {
            const Place& entry = places[static_cast<std::size_t>(n - 1)];
            return std::vector<Text>{entry.delivery, entry.name};
        };
        line = rtmMain::system().choices.choose(list);
    }
    if (line < 1 || line > static_cast<int32>(places.size())) return false;
    place = places[static_cast<std::size_t>(line - 1)];
    return true;
}

// --- By name

bool clsPlzOrt::byName(TextView typed, TextView street, Found& found) {
    Text name = lower(typed);
    name.front() = upper(name.front());
    places_->SetIndex(places_->IndexNr(Variant(fOrteName)));
    const auto record = databases_.DBSelectAt(*places_, u"Ortauswahl", name);
    if (!record || !read(record->Satznummer(), found.place)) return false;
    found.code = found.place.delivery;
    return chooseCode(placesWith(fOrteALORT, found.place.key), street, found);
}

// Of a place that has several: its codes of delivery with those of its boxes, and the way to its streets.
bool clsPlzOrt::chooseCode(const std::vector<Place>& places, TextView street, Found& found) {
    if (!street.empty())
        if (const auto streets = streetsOf(found.place)) return chooseStreet(*streets, street, found);
    struct Line {
        Text delivery, firstBox, lastBox;
    };
    std::vector<Line> lines;
    for (const auto& place : places) {
        if (lines.empty() || lines.back().delivery != place.delivery)
            lines.push_back({place.delivery, place.box, place.box});
        else if (!place.box.empty())
            lines.back().lastBox = place.box;
    }
    if (lines.size() < 2) return true;
    platform::ChoiceList list;
    list.caption = found.place.name;
    list.titles = {u"Zustellung", u"Straße", u"Postfach", u"Ortteile"};
    list.count = static_cast<int32>(lines.size()) + 1;
    list.cells = [&](int32 n) -> std::vector<Text> {
        if (n > static_cast<int32>(lines.size())) return {u"", u"(Straßenverzeichnis)", u"", u""};
        const Line& line = lines[static_cast<std::size_t>(n - 1)];
        Text boxes = line.firstBox.empty() ? Text() : u" PF " + line.firstBox;
        if (line.lastBox != line.firstBox) boxes += u" -" + line.lastBox;
        return {line.delivery, u"", boxes, u""};
    };
    const int32 line = rtmMain::system().choices.choose(list);
    if (line < 1 || line > list.count) return false;
    if (line <= static_cast<int32>(lines.size())) {
        found.code = lines[static_cast<std::size_t>(line - 1)].delivery;
        return true;
    }
    if (const auto streets = streetsOf(found.place)) return chooseStreet(*streets, {}, found);
    messages_->TSMsgBox(u"Bitte benutzen Sie das Straßenverzeichnis der Post.", dlgOKOnly,
                        u"Straßenverzeichnis");
    found.code.clear();
    return true;
}

// The list of streets, where it has any of the place.
std::shared_ptr<clsTSDB> clsPlzOrt::streetsOf(const Place& place) {
    auto streets = databases_.OpenReference(rtmMain::state().runtimeDataDir, placeRegister::kStreets);
    if (!streets || place.key.empty()) return nullptr;
    streets->SetIndex(streets->IndexNr(Variant(fStrassenALORT)));
    streets->Gehezu(place.key);
    return !streets->EOFile() && streets->FieldView(fStrassenALORT) == place.key ? streets : nullptr;
}

bool clsPlzOrt::chooseStreet(clsTSDB& streets, TextView street, Found& found) {
    const Text start = (found.place.key + u" ").append(street);
    const auto record = databases_.DBSelectAt(streets, u"Strassenauswahl", start);
    if (!record || record->Fields(fStrassenALORT) != found.place.key) return false;
    found.code = record->Fields(fStrassenPLZ);
    return true;
}

}  // namespace tsRtm

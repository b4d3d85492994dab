#include "tsRtm/places/PlaceImport.hpp"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

#include "tsRtm/database/NewRecords.hpp"
#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/places/codes/CodeIndex.hpp"

namespace tsRtm {
namespace {

constexpr int32 kFull = 7;

// The text can stand in a field of the databases.
bool isName(TextView name) {
    return !name.empty() && name.size() <= static_cast<std::size_t>(placeRegister::kNameLength) &&
           fromAnsi(toAnsi(name)) == name &&
           std::none_of(name.begin(), name.end(), [](char16_t c) { return c < u' '; });
}
bool isCode(TextView code) {
    return code.size() == static_cast<std::size_t>(placeRegister::kCodeLength) && IstZiffern(code) &&
           code != u"00000";
}
bool isMunicipality(TextView key) {
    return key.empty() ||
           (IstZiffern(key) && key.size() <= static_cast<std::size_t>(placeRegister::kKeyLength));
}

auto order(const PlaceRow& row) { return std::tie(row.code, row.name, row.municipality, row.box); }
int32 numberOf(TextView code) { return roundToInt32(Val(code)); }

Text placeKey(std::size_t number) {
    const Text digits = toText(static_cast<int64>(number));
    return Text(static_cast<std::size_t>(placeRegister::kKeyLength) - digits.size(), u'0') + digits;
}

// Keys by name and municipality.
using PlaceKeys = std::map<std::pair<Text, Text>, Text>;

// Which places have a code, by their keys. A code is shared where these are several.
using PlacesByCode = std::map<int32, std::set<Text>>;

CodeIndex::Writer codeIndex(const std::vector<PlaceRow>& rows, const PlaceKeys& keys,
                            PlaceImportResult& result) {
    CodeIndex::Writer index;
    PlacesByCode deliveries, boxes;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto record = static_cast<int32>(i) + 1;
        const Text& key = keys.at({rows[i].name, rows[i].municipality});
        const int32 delivery = numberOf(rows[i].code), box = numberOf(rows[i].box);
        if (deliveries[delivery].insert(key).second) index.delivery(delivery, record);
        if (box > 0 && boxes[box].insert(key).second) index.box(box, record);
    }
    deliveries.merge(boxes);  // a code of delivery is none of boxes
    result.codes = static_cast<int32>(deliveries.size());
    result.sharedCodes = static_cast<int32>(std::count_if(
        deliveries.begin(), deliveries.end(), [](const auto& code) { return code.second.size() > 1; }));
    return index;
}

}  // namespace

PlaceFault faultOf(const PlaceRow& row) {
    if (!isName(row.name)) return PlaceFault::name;
    if (!isCode(row.code)) return PlaceFault::code;
    if (!row.box.empty() && !isCode(row.box)) return PlaceFault::box;
    return isMunicipality(row.municipality) ? PlaceFault::none : PlaceFault::municipality;
}

PlaceFault faultOf(const StreetRow& row) {
    if (!isName(row.street) || row.place.empty()) return PlaceFault::name;
    if (!isCode(row.code)) return PlaceFault::code;
    return isMunicipality(row.municipality) ? PlaceFault::none : PlaceFault::municipality;
}

PlaceImportResult importPlaces(clsTSDB& orte, std::vector<PlaceRow> rows) {
    PlaceImportResult result;
    std::sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) { return order(a) < order(b); });
    rows.erase(std::unique(rows.begin(), rows.end(),
                           [](const auto& a, const auto& b) { return order(a) == order(b); }),
               rows.end());
    if (rows.size() > static_cast<std::size_t>(placeRegister::kMostPlaces)) {
        result.error = kFull;
        return result;
    }
    PlaceKeys keys;
    for (const auto& row : rows) keys.try_emplace({row.name, row.municipality}, Text());
    std::size_t next = 0;
    for (auto& [place, key] : keys) key = placeKey(++next);
    const bool replaced = orte.Replace([&](NewRecords& records) {
        for (const auto& row : rows) {
            records.set(fOrteALORT, keys.at({row.name, row.municipality}));
            records.set(fOrteName, row.name);
            records.set(fOrteGemeindeSchluessel, row.municipality);
            records.set(fOrteZustellPLZ, row.code);
            records.set(fOrtePostfachPLZ, row.box);
            if (!records.add()) return false;
        }
        return !failed(codeIndex(rows, keys, result).write(records.file(CodeIndex::kFileName)));
    });
    result.error = orte.Error();
    if (!replaced) return result;
    result.stored = static_cast<int32>(rows.size());
    result.places = static_cast<int32>(keys.size());
    return result;
}

PlaceImportResult importStreets(clsTSDB& strassen, clsTSDB& orte, const std::vector<StreetRow>& rows) {
    PlaceImportResult result;
    PlaceKeys keys;
    for (int32 number = 1; number <= orte.AnzahlDSaetze(); ++number)
        if (const auto place = orte.Record(number); place && !place->Deleted())
            keys.try_emplace({place->Fields(fOrteName), place->Fields(fOrteGemeindeSchluessel)},
                             place->Fields(fOrteALORT));
    std::set<std::tuple<Text, Text, Text>> streets;
    for (const auto& row : rows) {
        const auto key = keys.find({row.place, row.municipality});
        if (key == keys.end())
            ++result.unknown;
        else
            streets.emplace(key->second, row.street, row.code);
    }
    const bool replaced = strassen.Replace([&](NewRecords& records) {
        for (const auto& [key, street, code] : streets) {
            records.set(fStrassenALORT, key);
            records.set(fStrassenName, street);
            records.set(fStrassenPLZ, code);
            if (!records.add()) return false;
        }
        return true;
    });
    result.error = strassen.Error();
    if (replaced) result.stored = static_cast<int32>(streets.size());
    return result;
}

}  // namespace tsRtm

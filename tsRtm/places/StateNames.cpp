// clsPlzOrt: the federal states.
#include <algorithm>

#include "tsRtm/places/clsPlzOrt.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

struct StateRow {
    int32 key;  // the first two digits of its municipalities' keys, in an order of their own
    TextView name;
};

// By the numbers of Bundeslaender, from 1.
constexpr StateRow kStates[] = {
    {8, u"Baden-Württemberg"},
    {9, u"Bayern"},
    {11, u"Berlin"},
    {4, u"Bremen"},
    {2, u"Hamburg"},
    {6, u"Hessen"},
    {3, u"Niedersachsen"},
    {5, u"Nordrhein-Westfalen"},
    {7, u"Rheinland-Pfalz"},
    {10, u"Saarland"},
    {1, u"Schleswig-Holstein"},
    {12, u"Brandenburg"},
    {13, u"Mecklenburg-Vorpommern"},
    {14, u"Sachsen"},
    {15, u"Sachsen-Anhalt"},
    {16, u"Thüringen"},
};

}  // namespace

Text clsPlzOrt::BundeslandName(int32 LandNr) {
    if (LandNr < BADENW || LandNr > THUERINGEN)
        raise(9, u"clsPlzOrt.Bundeslandname", u"Bundesland " + toText(LandNr) + u" gibt es nicht");
    return Text(kStates[LandNr - 1].name);
}

Text clsPlzOrt::StateOf(TextView GemeindeKZ) {
    if (GemeindeKZ.empty()) return {};
    const int32 key = roundToInt32(Val(GemeindeKZ.substr(0, 2)));
    const auto* row = std::find_if(std::begin(kStates), std::end(kStates),
                                   [&](const auto& state) { return state.key == key; });
    return row == std::end(kStates) ? u"Bundesland " + toText(key) : Text(row->name);
}

}  // namespace tsRtm

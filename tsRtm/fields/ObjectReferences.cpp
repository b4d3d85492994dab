#include "tsRtm/fields/ObjectReferences.hpp"

#include "tsRtm/fields/clsControl.hpp"

namespace tsRtm {
namespace {

ObjectReference parseReference(TextView entry) {
    ObjectReference result;
    const auto dot = entry.find(u'.');
    if (dot != TextView::npos) result.property = entry.substr(dot + 1);
    const auto object = entry.substr(0, dot);
    const auto open = object.find(u'(');
    result.name = object.substr(0, open);
    if (open == TextView::npos) return result;
    const auto inside = object.substr(open + 1);
    const auto number = inside.substr(0, inside.find(u')'));
    if (IstNumerisch(number, u"", u"")) result.index = roundToInt32(Val(number));
    return result;
}

}  // namespace

std::vector<ObjectReference> parseObjectReferences(TextView list) {
    std::vector<ObjectReference> references;
    while (!list.empty()) {
        const auto comma = list.find(u',');
        references.push_back(parseReference(trim(list.substr(0, comma))));
        list = comma == TextView::npos ? TextView() : list.substr(comma + 1);
    }
    return references;
}

int32 clsControl::ValueFeld(TextView ValueName, int32 Index) const {
    const auto object = upper(ValueName);
    for (int32 number = 1; number <= Felder(); ++number)
        for (const auto& reference : parseObjectReferences(field(number).ObjectName()))
            if (reference.means(object, Index)) return number;
    // One past the last field, not 0: forms test for it.
    return Felder() + 1;
}

int32 clsControl::ObjectCount(TextView ObjectName) const {
    const auto object = upper(ObjectName);
    int32 largest = ObjectReference::kNoIndex;
    for (const auto& feld : content_.felder)
        for (const auto& reference : parseObjectReferences(feld->ObjectName())) {
            if (reference.name != object) continue;
            if (reference.index < 0) break;
            largest = std::max(largest, reference.index);
        }
    return largest;
}

int32 clsControl::ObjectFelder(TextView ObjectName, int32 Index, std::vector<int32>& Felder,
                               std::vector<Text>& PropNames) const {
    const auto object = upper(ObjectName);
    Felder.clear();
    PropNames.clear();
    for (int32 number = 1; number <= this->Felder(); ++number)
        for (auto& reference : parseObjectReferences(field(number).ObjectName()))
            if (reference.means(object, Index)) {
                Felder.push_back(number);
                PropNames.push_back(std::move(reference.property));
                break;
            }
    return static_cast<int32>(Felder.size());
}

}  // namespace tsRtm

// The objects that the fields of a control refer to.
#include "tsRtm/control/clsControl.hpp"
#include "tsRtm/control/files/ObjectReferences.hpp"

namespace tsRtm {

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

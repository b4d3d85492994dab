#include "tsRtm/control/files/ObjectReferences.hpp"

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

}  // namespace tsRtm

#pragma once
// References "Objekt(Index).Eigenschaft" in the name part of a field's title.
#include <vector>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

struct ObjectReference {
    static constexpr int32 kNoIndex = -1;
    Text name;
    int32 index = kNoIndex;
    Text property;

    // Whether the reference is to this object, with this index or with none.
    bool means(TextView object, int32 objectIndex) const noexcept {
        return name == object && (index == objectIndex || index < 0);
    }
};

// The references of a comma-separated list, in their order; empty for an empty list.
std::vector<ObjectReference> parseObjectReferences(TextView list);

}  // namespace tsRtm

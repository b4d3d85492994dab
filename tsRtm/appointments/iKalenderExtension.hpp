#pragma once
// What an application knows of one appointment beyond its record: how it looks and what can be done with it.
#include <memory>
#include <vector>

#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/types/TerminTypes.hpp"
#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

class iKalenderExtension {
 public:
    virtual ~iKalenderExtension() = default;
    // Set once, at the start.
    virtual void Record(const std::shared_ptr<clsTSRecord>& value) = 0;
    // The text for a view; empty for the one that it would have without an extension.
    virtual tsRtm::Text Text(eKalenderAnzeigen Typ, TextView StdText) = 0;
    virtual tsRtm::Text Title(eKalenderAnzeigen Typ) = 0;
    virtual int32 DisplayColor(eColorElement Element) = 0;  // -1 none
    virtual eTerminIcons Icons() = 0;
    virtual bool ReadOnly() = 0;
    // Captions, and what happens when one of them is chosen.
    virtual std::vector<tsRtm::Text> ContextMenu() = 0;
    virtual bool Command(int32 ID) = 0;
    // Whether what a form holds may be stored.
    virtual bool Validate(const std::shared_ptr<tsRtm::Object>& IOM) = 0;
    virtual std::shared_ptr<tsRtm::Object> Object(int32& ObjType) = 0;
};

}  // namespace tsRtm

#pragma once
// The masks of a database directory.
#include <memory>
#include <vector>

#include "tsRtm/types/Text.hpp"
#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

class clsControl;
class FilesTopic;

// The list of "*.MASKE" files is read once, at first use. Knows the control it came from weakly; masks
// opened after that one is gone resolve no field names.
class clsMasken {
 public:
    clsMasken(FilesTopic& Files, TextView Dir, std::weak_ptr<const clsControl> Parent)
        : files_(Files), dir_(Dir), parent_(std::move(Parent)) {}

    int32 Count();
    // Without ".MASKE"; empty outside 1..Count.
    Text Name(int32 Index);
    // By number in 1..Count or by name, with or without ".MASKE" in any case; nothing where it cannot be
    // opened.
    std::shared_ptr<clsControl> Maske(const Variant& Item);

 private:
    const std::vector<Text>& names();

    FilesTopic& files_;
    Text dir_;
    std::weak_ptr<const clsControl> parent_;
    bool listed_ = false;
    std::vector<Text> names_;
};

}  // namespace tsRtm

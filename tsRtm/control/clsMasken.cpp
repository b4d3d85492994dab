#include "tsRtm/control/clsMasken.hpp"

#include <algorithm>

#include "tsRtm/control/clsControl.hpp"
#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"

namespace tsRtm {
namespace {

constexpr TextView kExtension = u".MASKE";

TextView withoutExtension(TextView name) noexcept {
    const auto stem = name.size() - std::min(name.size(), kExtension.size());
    return equalIgnoringCase(name.substr(stem), kExtension) ? name.substr(0, stem) : name;
}

}  // namespace

const std::vector<Text>& clsMasken::names() {
    if (listed_) return names_;
    listed_ = true;
    files_.GetAllFiles(dir_, u"*.MASKE", names_);
    for (auto& name : names_) name = Text(withoutExtension(name));
    return names_;
}

int32 clsMasken::Count() { return static_cast<int32>(names().size()); }

Text clsMasken::Name(int32 Index) {
    return Index >= 1 && Index <= Count() ? names()[static_cast<std::size_t>(Index - 1)] : Text();
}

std::shared_ptr<clsControl> clsMasken::Maske(const Variant& Item) {
    Text name;
    if (const auto* number = Item.number())
        name = Name(*number);
    else if (const auto* text = Item.text())
        name = Text(withoutExtension(*text));
    if (name.empty()) return nullptr;
    auto mask = std::make_shared<clsControl>(files_);
    mask->parent_ = parent_;
    bool nichtAnsi = true;
    return mask->Oeffne(rtmMain::JoinPath({dir_, name + Text(kExtension)}), nichtAnsi) ? mask : nullptr;
}

}  // namespace tsRtm

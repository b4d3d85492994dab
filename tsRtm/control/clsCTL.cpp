#include "tsRtm/control/clsCTL.hpp"

#include "tsRtm/control/clsControl.hpp"
#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"

namespace tsRtm {

std::shared_ptr<clsControl> clsCTL::OpenControl(TextView Datei) {
    auto file = rtmMain::JoinPath({Text(Datei) + u".DBD", u"Control.tsd"});
    if (!files_.Exist(file)) file = Text(Datei) + u".CTL";
    auto control = std::make_shared<clsControl>(files_);
    bool nichtAnsi = true;
    return control->Oeffne(file, nichtAnsi) ? control : nullptr;
}

int32 clsCTL::ReadCtl(TextView Datei, TSIOArray& Feld, bool& NichtAnsi) {
    Feld.clear();
    const auto control = OpenControl(Datei);
    if (!control) return 0;
    NichtAnsi = !control->IstAnsi();
    Feld = std::move(control->content_.felder);
    return static_cast<int32>(Feld.size());
}

}  // namespace tsRtm

#include "tsRtm/frame/clsHostApp.hpp"

#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {

Text clsHostApp::Name() const { return Text(rtmMain::NameOf(rtmMain::state().hostPath)); }

Text clsHostApp::Path() const {
    const Text& path = rtmMain::state().hostPath;
    const auto folder = path.size() - rtmMain::NameOf(path).size();
    return folder == 0 ? Text{} : path.substr(0, folder - 1);
}

}  // namespace tsRtm

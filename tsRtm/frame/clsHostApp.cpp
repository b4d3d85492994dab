#include "tsRtm/frame/clsHostApp.hpp"

#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {

namespace {

// Start of the file name.
std::size_t nameStart(TextView path) noexcept {
    const auto last = path.find_last_of(u"\\/");
    return last == TextView::npos ? 0 : last + 1;
}

}  // namespace

Text clsHostApp::Name() const {
    const Text& path = rtmMain::state().hostPath;
    return path.substr(nameStart(path));
}

Text clsHostApp::Path() const {
    const Text& path = rtmMain::state().hostPath;
    const auto start = nameStart(path);
    return start == 0 ? Text{} : path.substr(0, start - 1);
}

}  // namespace tsRtm

#pragma once
// Where the library's status text stands in a window.
#include <memory>

#include "tsRtm/types/Variant.hpp"

class QWidget;

namespace tsRtm::desktop {

// A widget as the control that MessagesTopic::SetMessage and the message line of the application write to:
//
//     clsCommon().MessageLine(desktop::statusControl(*window.statusBar()));
//
// A status bar shows the text in its first label, and where it has none as its message; a label and every
// other widget with a text as their text. It shows at once, also while the library waits. The widget may go.
std::shared_ptr<Object> statusControl(QWidget& widget);

}  // namespace tsRtm::desktop

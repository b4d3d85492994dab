#pragma once
// The desktop of an application: asks and tells in windows, measures and lays out texts, makes PDF files and
// shows previews, with Qt.
//
//     QApplication application(argc, argv);  // a QGuiApplication: no windows; also on the platform
//     "offscreen" tsRtm::desktop::Desktop desktop;       // from now on
#include <memory>

#include "tsRtm/platform/Previews.hpp"

namespace tsRtm::desktop {

// Lasts as long as the object; print jobs end before it. One at a time. Starts the library on the ground of
// this machine where rtmMain::Main has not started it on another one.
class Desktop {
 public:
    Desktop();
    ~Desktop();
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    // A page as PNG, so many dots an inch. A file of the name is replaced.
    platform::SystemError savePicture(const platform::PageSource& page, TextView name, int32 dotsPerInch);

 private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace tsRtm::desktop

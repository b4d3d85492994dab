#pragma once
// The measures of the screen.
#include "tsRtm/types/Numbers.hpp"

namespace tsRtm::platform {

// Pixels, but for the twips.
struct ScreenMetrics {
    int32 twipsPerPixelX = 15, twipsPerPixelY = 15;
    int32 smallIconX = 16, smallIconY = 16;
    int32 fullX = 1920, fullY = 1080;
    int32 borderX = 1, borderY = 1;
    int32 edgeX = 2, edgeY = 2;
    int32 scrollBarWidth = 17;
    int32 virtualLeft = 0, virtualTop = 0, virtualWidth = 1920, virtualHeight = 1080;
    int32 caretWidth = 1;
    int32 workLeft = 0, workTop = 0, workRight = 1920, workBottom = 1080;
};

struct PixelArea {
    int32 left = 0, top = 0, right = 0, bottom = 0;
};

class Screen {
 public:
    virtual ~Screen() = default;
    virtual ScreenMetrics metrics() = 0;
    // Work area of the screen that a window is on or next to; empty where the ground cannot tell.
    virtual PixelArea workAreaOf(int32 window) = 0;
};

}  // namespace tsRtm::platform

#pragma once
#include <QPainter>

#include "tsRtm/platform/Drawing.hpp"

namespace tsRtm::desktop {

class RichText;

// Plays pages on whatever Qt paints on. The painter outlives it.
class PainterDevice final : public platform::PageDevice {
 public:
    PainterDevice(QPainter& painter, platform::DeviceResolution resolution)
        : painter_(painter), resolution_(resolution) {}

    platform::DeviceResolution resolution() override { return resolution_; }
    void map(const platform::PageMapping& mapping) override;
    void draw(const platform::DrawingCommand& command) override;
    void draw(const platform::PlacedText& text) override;

 private:
    void drawText(const platform::TextOut& text);
    void drawShape(const platform::Shape& shape);

    QPainter& painter_;
    platform::DeviceResolution resolution_;
    QTransform commands_, twips_;  // from the places of commands, and from twips
    QColor textColour_;
    int32 escapement_ = 0;
};

}  // namespace tsRtm::desktop

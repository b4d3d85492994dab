#include "desktop/paper/PainterDevice.hpp"

#include "desktop/paper/Qt.hpp"
#include "desktop/paper/RichText.hpp"

namespace tsRtm::desktop {
namespace {

using namespace platform;

template <class... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

QPointF at(Place place) { return {static_cast<qreal>(place.x), static_cast<qreal>(place.y)}; }

QPen penOf(const Pen& pen) {
    constexpr Qt::PenStyle styles[] = {Qt::SolidLine,   Qt::DashLine,       Qt::DotLine,
                                       Qt::DashDotLine, Qt::DashDotDotLine, Qt::NoPen};
    const auto style = static_cast<std::size_t>(std::clamp(pen.style, 0, 5));
    return QPen(colourOf(pen.colour), pen.width, styles[style], Qt::RoundCap, Qt::RoundJoin);
}

QBrush brushOf(const Brush& brush) {
    constexpr Qt::BrushStyle hatches[] = {Qt::HorPattern,   Qt::VerPattern,   Qt::FDiagPattern,
                                          Qt::BDiagPattern, Qt::CrossPattern, Qt::DiagCrossPattern};
    if (brush.style == 1) return Qt::NoBrush;
    const auto hatch = static_cast<std::size_t>(std::clamp(brush.hatch, 0, 5));
    return QBrush(colourOf(brush.colour), brush.style == 2 ? hatches[hatch] : Qt::SolidPattern);
}

}  // namespace

void PainterDevice::map(const PageMapping& mapping) {
    const auto scale = [](int32 device, int32 page) {
        return static_cast<qreal>(device) / static_cast<qreal>(std::max(page, 1));
    };
    twips_ = QTransform();
    twips_.translate(mapping.originX, mapping.originY);
    twips_.scale(scale(mapping.deviceWidth, mapping.width), scale(mapping.deviceHeight, mapping.height));
    commands_ = twips_;
    commands_.scale(mapping.factor, mapping.factor);
    painter_.setTransform(commands_);
    painter_.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                            QPainter::SmoothPixmapTransform);
    painter_.setPen(QPen(Qt::black, 0));
    painter_.setBrush(Qt::NoBrush);
    painter_.setBackgroundMode(Qt::TransparentMode);
    textColour_ = Qt::black;
}

void PainterDevice::draw(const DrawingCommand& command) {
    std::visit(
        Overloaded{
            [&](const Pen& pen) { painter_.setPen(penOf(pen)); },
            [&](const Brush& brush) { painter_.setBrush(brushOf(brush)); },
            [&](const Font& font) {
                painter_.setFont(fontOf(font));
                escapement_ = font.escapement;
            },
            [&](const TextColour& colour) { textColour_ = colourOf(colour.colour); },
            [&](const TextBackground& background) {
                painter_.setBackgroundMode(background.mode == 2 ? Qt::OpaqueMode : Qt::TransparentMode);
            },
            [&](const TextOut& text) { drawText(text); },
            [&](const Line& line) { painter_.drawLine(at(line.from), at(line.to)); },
            [&](const Shape& shape) { drawShape(shape); },
            [&](const Picture& picture) {
                const auto image = QImage::fromData(reinterpret_cast<const uchar*>(picture.bytes.data()),
                                                    static_cast<int>(picture.bytes.size()));
                painter_.drawImage(QRectF(at(picture.from), at(picture.to)), image);
            },
        },
        command);
}

void PainterDevice::drawText(const TextOut& text) {
    const QPen pen = painter_.pen();
    painter_.setPen(textColour_);
    if (escapement_ == 0) {
        painter_.drawText(at(text.from), qt(text.text));
    } else {
        painter_.translate(at(text.from));
        painter_.rotate(-escapement_ / 10.0);
        painter_.drawText(QPointF(), qt(text.text));
        painter_.setTransform(commands_);
    }
    painter_.setPen(pen);
}

void PainterDevice::drawShape(const Shape& shape) {
    const auto& p = shape.places;
    if (shape.kind == ShapeKind::polygon) {
        QPolygonF polygon;
        for (const auto place : p) polygon << at(place);
        painter_.drawPolygon(polygon);
        return;
    }
    const auto rectangle = QRectF(at(p[0]), at(p[1])).normalized();
    if (shape.kind == ShapeKind::ellipse)
        painter_.drawEllipse(rectangle);
    else
        painter_.drawRoundedRect(rectangle, p[2].x / 2.0, p[2].y / 2.0);
}

void PainterDevice::draw(const PlacedText& text) {
    painter_.setTransform(twips_);
    RichText::draw(painter_, text);
    painter_.setTransform(commands_);
}

}  // namespace tsRtm::desktop

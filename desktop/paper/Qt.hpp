#pragma once
// Between the library's texts, colours and fonts and those of Qt.
#include <QColor>
#include <QFont>
#include <QString>

#include "tsRtm/platform/Drawing.hpp"

namespace tsRtm::desktop {

inline QString qt(TextView text) {
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}
inline Text fromQt(const QString& text) {
    return Text(reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size()));
}
inline QColor colourOf(int32 bgr) { return QColor(bgr & 255, (bgr >> 8) & 255, (bgr >> 16) & 255); }

// Letters keep their proportions on every device: hinting would change their widths.
inline QFont fontOf(const platform::Font& font) {
    QFont made(qt(font.name));
    made.setPixelSize(std::max(font.height, 1));
    made.setBold(font.bold);
    made.setItalic(font.italic);
    made.setUnderline(font.underlined);
    made.setHintingPreference(QFont::PreferNoHinting);
    return made;
}

}  // namespace tsRtm::desktop

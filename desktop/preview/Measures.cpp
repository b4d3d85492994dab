#include "desktop/preview/Measures.hpp"

#include <QLocale>
#include <algorithm>
#include <cmath>

#include "tsRtm/platform/Drawing.hpp"

namespace tsRtm::desktop {
namespace {

using platform::kTwipsPerMM;

constexpr double kColumn = 144, kRow24 = 60, kRow6 = 240;

QString number(double value, int decimals) {
    return QLocale(QLocale::German, QLocale::Germany).toString(value, 'f', decimals);
}

// Rows of 1/6 inch, their fraction in eighths.
double inEighths(double rows) noexcept {
    const double whole = std::floor(rows);
    return whole + std::floor((rows - whole) * 8 + 0.499) / 8;
}

}  // namespace

Measure nextMeasure(Measure measure) noexcept {
    return static_cast<Measure>(static_cast<int>(measure) % 4 + 1);
}

double rowOf(Measure measure, double y) noexcept {
    switch (measure) {
        case Measure::millimetres:
            return y / kTwipsPerMM;
        case Measure::rows24:
            return y / kRow24;
        case Measure::rows6:
            return inEighths(y / kRow6);
        default:
            return y;
    }
}

QString placeText(Measure measure, double x, double y) {
    const double row = rowOf(measure, y);
    const auto text = [](const QString& column, const QString& line) {
        return QStringLiteral("X: %1  Y: %2").arg(column, line);
    };
    switch (measure) {
        case Measure::millimetres:
            return text(number(x / kTwipsPerMM, 1) + QStringLiteral(" mm"),
                        number(row, 1) + QStringLiteral(" mm"));
        case Measure::rows24:
            return text(number(x / kColumn, 0) + QStringLiteral(" Spalten"),
                        number(row, 0) + QStringLiteral(" Zeilen BV90"));
        case Measure::rows6:
            return text(number(x / kColumn, 1) + QStringLiteral(" Spalten"),
                        number(row, 3) + QStringLiteral(" Zeilen"));
        default:
            return text(number(x, 0) + QStringLiteral(" Twips"), number(row, 0) + QStringLiteral(" Twips"));
    }
}

QSize within(QSize page, QSize limit) noexcept {
    if (page.isEmpty() || (page.width() <= limit.width() && page.height() <= limit.height())) return page;
    return page.scaled(limit, Qt::KeepAspectRatio);
}

QSize sheetSize(int view, QSize page, QSize window) noexcept {
    if (page.isEmpty()) return {};
    const QSize whole = page.scaled(window, Qt::KeepAspectRatio);
    if (view == 2) return page.scaled(QSize(window.width(), INT_MAX), Qt::KeepAspectRatio);
    return view == 3 ? whole * 2 : whole;
}

}  // namespace tsRtm::desktop

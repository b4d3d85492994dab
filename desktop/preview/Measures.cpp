#include "desktop/preview/Measures.hpp"

#include <algorithm>
#include <cmath>

#include "desktop/paper/Qt.hpp"
#include "tsRtm/frame/text/Format.hpp"

namespace tsRtm::desktop {
namespace {

using platform::kTwipsPerMM;

constexpr double kColumn = 144, kRow24 = 60, kRow6 = 240;

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
    const auto text = [&](double column, TextView columns, TextView rows) {
        return qt(u"X: " + Format(column, columns) + u"  Y: " + Format(rowOf(measure, y), rows));
    };
    constexpr TextView millimetres = u"#,##0.0 \\m\\m", twips = u"#,##0 \\T\\w\\i\\p\\s";
    switch (measure) {
        case Measure::millimetres:
            return text(x / kTwipsPerMM, millimetres, millimetres);
        case Measure::rows24:
            return text(x / kColumn, u"#,##0 \\S\\p\\a\\l\\t\\e\\n",
                        u"#,##0 \\Z\\e\\i\\l\\e\\n \\B\\V\\9\\0");
        case Measure::rows6:
            return text(x / kColumn, u"#,##0.0 \\S\\p\\a\\l\\t\\e\\n", u"#,##0.000 \\Z\\e\\i\\l\\e\\n");
        default:
            return text(x, twips, twips);
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

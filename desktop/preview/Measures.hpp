#pragma once
#include <QSize>
#include <QString>

namespace tsRtm::desktop {

// The units in which the preview tells a place on the page.
enum class Measure { millimetres = 1, rows24 = 2, rows6 = 3, twips = 4 };

Measure nextMeasure(Measure measure) noexcept;

// A place in twips, as the status bar shows it: under the separators of the locale.
QString placeText(Measure measure, double x, double y);

// The vertical place as a number of that unit.
double rowOf(Measure measure, double y) noexcept;

// Pixels of the sheet in a window of this size: 1 the whole page, 2 the window's width, 3 twice the whole
// page.
QSize sheetSize(int view, QSize page, QSize window) noexcept;

// The largest size of the page's proportions within the limits; its own size if that is within them.
QSize within(QSize page, QSize limit) noexcept;

}  // namespace tsRtm::desktop

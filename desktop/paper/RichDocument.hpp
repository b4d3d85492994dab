#pragma once
#include <QTextDocument>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::desktop {

// Fills an empty document with formatted text: paragraphs, tables, pictures. One of its units is a twip.
void fillDocument(QTextDocument& document, TextView rtf);

}  // namespace tsRtm::desktop

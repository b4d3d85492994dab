#pragma once
#include <QRawFont>
#include <map>
#include <vector>

#include "tsRtm/types/Numbers.hpp"

namespace tsRtm::desktop {

// Whether a font has outlines that can be taken out of it, and permits that.
bool canBeEmbedded(const QRawFont& font);

// A TrueType file with only these glyphs, each by its number in the font, for characters (below 0xFFFF).
QByteArray subsetOf(const QRawFont& font, const std::map<uint16, uint32>& glyphs);

}  // namespace tsRtm::desktop

// The keys by eKeyIDs: virtual key number (256 added for an extended key) and the name where the system knows
// none.
//
// The pairings are the applications' own: Pause with 144, NumLock with 400, Caps with the Shift key's 16.
#include "tsRtm/frame/messages/TextTables.hpp"

namespace tsRtm {

namespace {

// clang-format off
constexpr std::array<KeyRow, 20> keys = {{
    {27, u"Esc"},  // kidEsc
    {13, u"Eingabe"},  // kidEnter
    {301, u"Einfg"},  // kidInsert
    {292, u"Pos1"},  // kidHome
    {302, u"Entf"},  // kidDelete
    {291, u"Ende"},  // kidEnd
    {289, u"Bild-Auf"},  // kidPageUp
    {290, u"Bild-Ab"},  // kidPageDown
    {362, u"Druck"},  // kidPrint
    {144, u"Pause"},  // kidPause
    {401, u"Untbr"},  // kidBreak
    {17, u"Strg"},  // kidStrg
    {18, u"Alt"},  // kidAlt
    {274, u"AltGr"},  // kidAltGr
    {145, u"Rollen"},  // kidScroll
    {400, u"Num"},  // kidNumLock
    {noVirtualKey, u"Bild"},  // kidPage
    {8, u"Rück"},  // kidBackspace
    {16, u"Umschalt"},  // kidCaps
    {9, u"Tab"},  // kidTab
}};
// clang-format on

}  // namespace

const std::array<KeyRow, 20>& keyTable() noexcept { return keys; }

}  // namespace tsRtm

#include "tsRtm/frame/runtime/OSName.hpp"

#include <algorithm>

#include "tsRtm/frame/state/SystemKinds.hpp"

namespace tsRtm {

namespace {

struct NameRow {
    int32 version;  // major times 100 plus minor
    TextView workstation, server;
};

constexpr NameRow names[] = {
    {500, u"2000", u"2000 Server"},
    {501, u"XP", u".NET Server"},
    {502, u"XP Professional x64 Edition", u"Server 2003"},
    {600, u"Vista", u"Server 2008"},
    {601, u"7", u"Server 2008 R2"},
    {602, u"8", u"Server 2012"},
    {603, u"8.1", u"Server 2012 R2"},
    {604, u"10", u"10 Server"},
};

constexpr int32 firstNamed = 500;

}  // namespace

Text osName(const platform::OsVersion& os) {
    const Text system = u"Windows ";
    const Text number = toText(os.major) + u"." + toText(os.minor);
    if (os.platformId != systemKind::ntFamily)
        return system + u"Typ " + toText(os.platformId) + u" - Version " + number;

    const bool workstation = os.productType == 1;
    const int32 version = os.major * 100 + os.minor;
    const auto* row = std::ranges::find(names, version, &NameRow::version);
    if (row != std::end(names)) return system + Text(workstation ? row->workstation : row->server);
    if (version < firstNamed) return system + (workstation ? u"NT " : u"NT Server ") + number;
    return system + (workstation ? u"Version " : u"Server Version ") + number;
}

}  // namespace tsRtm

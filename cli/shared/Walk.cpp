#include "cli/shared/Walk.hpp"

#include <algorithm>

#include "cli/shared/CliError.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::cli {
namespace {

int32 numberOf(const std::string& word) {
    const Text text = fromUtf8(word);
    if (!IstZiffern(text))
        throw CliError("'" + word + "' is no record number, and the physical order has no other keys");
    return roundToInt32(Val(text));
}

// Behind every key that begins with this one: the greatest character of the order follows it. A date is whole
// by itself.
Text behind(const clsControl& control, int32 index, const std::string& key) {
    const Text greatest(2, rtmMain::state().locale.lastChar);
    const bool date = control.field(control.Index(index)).Datentyp() == typDATUM;
    return fromUtf8(key) + (date ? u" " : u"") + greatest;
}

}  // namespace

int32 indexFor(const clsControl& control, const FieldMap& map, const std::optional<std::string>& word) {
    return word ? map.index(*word) : std::min(control.Indizes(), 1);
}

Range keyRange(Session& session, int32 index, const std::optional<std::string>& from,
               const std::optional<std::string>& to) {
    auto& db = session.db();
    db.SetIndex(index);
    Range range{1, session.count()};
    if (range.last == 0) return range;
    if (from) range.first = index == 0 ? std::max(numberOf(*from), 1) : db.Rang(fromUtf8(*from));
    if (to) {
        const int32 last = index == 0 ? numberOf(*to) : db.Rang(behind(session.control(), index, *to)) - 1;
        range.last = std::min(range.last, last);
    }
    return range;
}

Range rangeOf(Session& session, const FieldMap& map, const WalkOptions& options) {
    return keyRange(session, indexFor(session.control(), map, options.index), options.from, options.to);
}

void walk(Session& session, Range range, bool descending, const std::function<bool(int32 number)>& visit) {
    auto& db = session.db();
    for (int32 i = 0; i <= range.last - range.first; ++i) {
        const int32 number = db.Index(descending ? range.last - i : range.first + i);
        session.check("cannot go on in the index of '" + session.name() + "'");
        if (!visit(number)) return;
    }
}

}  // namespace tsRtm::cli

#include "tsRtm/database/upkeep/UncleanEnd.hpp"

#include <algorithm>

#include "tsRtm/database/chains/ChainCheck.hpp"
#include "tsRtm/database/upkeep/MemoCheck.hpp"

namespace tsRtm {
namespace {

void add(std::vector<Text>& lines, std::vector<Text> more) {
    std::move(more.begin(), more.end(), std::back_inserter(lines));
}

// A file may have grown further than its content has come.
void settleEnd(OpenDatabase& d, std::vector<Text>& lines) {
    const uint64 length = d.layout.bytes();
    const uint64 torn = d.store.bytes().knownSize() % length;
    if (torn == 0) return;
    const int32 count = d.records();
    // Half a record counts as one.
    if (d.store.bytes().knownSize() < d.layout.offsetOf(count + 1)) {
        lines.push_back(u"Data.tsd: Satz " + toText(count) + u" war nur halb da und wurde aufgefüllt");
        d.store.writePart(count, static_cast<uint32>(torn), BytesView(d.layout.blank()).substr(torn));
    } else {
        lines.push_back(u"Data.tsd: der Rest hinter Satz " + toText(count) + u" wurde abgeschnitten");
        d.store.cutTo(count);
    }
}

// Whatever a medium shows where nothing was written is no mark. That takes in a mark that an application made
// for itself by PutField: behind an unclean end such a record counts as not written.
void settleMarks(OpenDatabase& d, std::vector<Text>& lines) {
    const Bytes& live = d.layout.blank();
    Bytes deleted = live;
    d.layout.setDeleted(deleted, true);
    const uint32 unit = d.layout.unit();
    Bytes room;
    for (int32 n = 1; n <= d.records(); ++n) {
        const BytesView mark = d.store.view(n, room).substr(0, unit);
        if (mark == BytesView(live).substr(0, unit) || mark == BytesView(deleted).substr(0, unit)) continue;
        lines.push_back(u"Data.tsd: Satz " + toText(n) + u" war nicht geschrieben");
        d.store.write(n, d.layout.unfilled());
    }
    d.store.bytes().check();
}

}  // namespace

std::vector<Text> settleRecords(OpenDatabase& d) {
    std::vector<Text> lines;
    settleEnd(d, lines);
    settleMarks(d, lines);
    return lines;
}

void settleSideFiles(OpenDatabase& d, std::vector<Text>& lines) {
    add(lines, checkMemos(d, Mend::cut));
    add(lines, checkChains(d.chains, ChainMending::cut));
    add(lines, checkRowMemos(d, Mend::cut));
}

}  // namespace tsRtm

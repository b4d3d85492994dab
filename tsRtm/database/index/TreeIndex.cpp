#include "tsRtm/database/index/TreeIndex.hpp"

#include <algorithm>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr TextView kSource = u"clsTSDB Locate";
constexpr int32 kReadAhead = 3;

}  // namespace

int32 TreeIndex::Step::before() const noexcept {
    int32 sum = base;
    for (int32 i = 1; i < position; ++i) sum = tree::plus(sum, tree::plus(node.entry(i).zaehler, 1));
    return sum;
}

TreeIndex::Step& TreeIndex::push(int32 address, int32 base, const SearchKey* key) {
    if (depth_ == tree::kMostLevels) {
        const Text text =
            Text(u"Buffer overrun in Locating record \"").append(key ? keys_.text(*key) : Text()) +
            u"\" in index on field #" + toText(keys_.primary());
        rtmMain::system().ui.beep();
        rtmMain::DebugLog(text);
        raise(28, kSource, text);
    }
    Step& next = step(depth_);
    if (!file_.read(address, next.node) || !next.node.sound()) raiseCorrupt(address);
    ++depth_;
    next.address = address;
    next.base = base;
    next.position = 1;
    next.total = 0;
    return next;
}

void TreeIndex::raiseCorrupt(int32 address) {
    const Text text = u"Node at &h " + toHexadecimal(static_cast<uint32>(address)) +
                      u" corrupt in Locating record in index on field #" + toText(keys_.primary());
    rtmMain::DebugLog(text);
    raise(9, kSource, text);
}

BytesView TreeIndex::recordOf(const Step& at, int32 position) {
    const int32 record = at.node.entry(position).satz;
    // A record on its way stands in the trees before it is written: until then it reads as blanks.
    if (!store_.reaches(record) && record != store_.count() + 1) raiseCorrupt(at.address);
    return store_.view(record, room_);
}

std::strong_ordering TreeIndex::compare(const Search& search, const Step& at, int32 position) {
    const int32 satz = at.node.entry(position).satz;
    // The record searched for needs no look at it, and may not be in the file yet.
    if (satz == search.number) return std::strong_ordering::equal;
    const BytesView record = recordOf(at, position);
    return search.number == 0 ? keys_.compare(search.key, record)
                              : keys_.compare(search.key, search.number, record, satz);
}

std::strong_ordering TreeIndex::probe(const Search& search, const Step& at, int32 position, Trust trust) {
    const int32 satz = at.node.entry(position).satz;
    if (satz == search.number) return compare(search, at, position);
    KeyPrefix known = trust == Trust::hints ? hints_.of(satz) : KeyPrefix();
    if (known.empty()) {
        known = keys_.prefix(recordOf(at, position));
        if (store_.has(satz)) hints_.remember(satz, known);
    }
    const auto order = search.prefix <=> known;
    if (order != 0) return order;
    if (known.whole()) return search.number == 0 ? order : search.number <=> satz;
    return compare(search, at, position);
}

bool TreeIndex::walk(const Search& search, Trust trust) {
    depth_ = 0;
    int32 base = 0;
    const auto approach = [this](int32 record) {
        if (hints_.of(record).empty()) store_.approach(record, keys_.touched());
    };
    for (int32 address = header().wurzel; address > 0;) {
        Step& here = push(address, base, &search.key);
        int32 low = 1;
        int32 high = here.node.anzahl;
        while (low <= high) {
            const int32 middle = (low + high) / 2;
            // Whatever this comparison says, one of these two comes next: its memory may come while we
            // compare.
            approach(here.node.entry(std::max(low, (low + middle - 1) / 2)).satz);
            approach(here.node.entry((middle + 1 + high) / 2).satz);
            const auto order = probe(search, here, middle, trust);
            if (order > 0) {
                low = middle + 1;
            } else if (order == 0 && search.number != 0) {
                here.position = middle;
                return true;
            } else {
                high = middle - 1;
            }
        }
        here.position = low;
        base = here.before();
        address = here.node.entry(low).kind;
    }
    return false;
}

bool TreeIndex::proven(const Search& search) {
    const Step* before = nullptr;
    const Step* behind = nullptr;
    for (int32 level = depth_ - 1; level >= 0; --level) {
        const Step& at = step(level);
        if (!before && at.position > 1) before = &at;
        if (!behind && at.position <= at.node.anzahl) behind = &at;
    }
    if (behind) store_.approach(behind->node.entry(behind->position).satz, keys_.touched());
    if (before && compare(search, *before, before->position - 1) <= 0) return false;
    if (!behind) return true;
    const auto order = compare(search, *behind, behind->position);
    return search.number == 0 ? order <= 0 : order < 0;
}

bool TreeIndex::descend(const SearchKey& key, int32 number) {
    const Search search{key, number, keys_.prefix(key)};
    return walk(search, Trust::hints) || (!proven(search) && walk(search, Trust::records));
}

Found TreeIndex::foundHere(const SearchKey& key) {
    Found found;
    if (depth_ == 0) return found;
    found.position = tree::plus(last().before(), 1);
    found.total = step(0).node.total();
    for (int32 level = depth_ - 1; level >= 0; --level) {
        const Step& at = step(level);
        if (at.position > at.node.anzahl) continue;
        found.record = at.node.entry(at.position).satz;
        found.exact = keys_.same(key, recordOf(at, at.position));
        break;
    }
    return found;
}

// Of the entry that the walk ended on.
int32 TreeIndex::positionHere() {
    const Step& here = last();
    return tree::plus(tree::plus(here.before(), here.node.entry(here.position).zaehler), 1);
}

Found TreeIndex::locate(const SearchKey& key) {
    descend(key, 0);
    return foundHere(key);
}

int32 TreeIndex::positionOf(int32 record) {
    if (!store_.reaches(record)) return 0;
    Bytes bytes;
    store_.read(record, bytes);
    return descend(keys_.searchFor(bytes), record) ? positionHere() : 0;
}

// From the deepest level of the last walk that still holds the position, else from the root.
int32 TreeIndex::seek(int32 position) {
    for (int32 level = 0; level < depth_; ++level) {
        const Step& at = step(level);
        if (position > at.base && position <= int64{at.base} + at.total) continue;
        depth_ = level;
        break;
    }
    if (depth_ == 0) {
        const int32 root = header().wurzel;
        if (root <= 0) return 0;
        Step& top = push(root, 0, nullptr);
        top.total = top.node.total();
    }
    for (;;) {
        Step& at = last();
        int64 before = at.base;
        int32 i = 1;
        for (; i <= at.node.anzahl; ++i) {
            const int32 below = at.node.entry(i).zaehler;
            if (position <= before + below) break;
            if (position == before + below + 1) {
                at.position = i;
                // Who reads in order comes to the neighbours next.
                if (i + kReadAhead <= at.node.anzahl)
                    store_.approachWhole(at.node.entry(i + kReadAhead).satz);
                return at.node.entry(i).satz;
            }
            before += int64{below} + 1;
        }
        // Behind the last key only the rightmost subtree is left.
        at.position = i;
        const int32 child = at.node.entry(i).kind;
        const int32 below = at.node.entry(i).zaehler;
        if (child <= 0 || position > before + below) return 0;
        push(child, static_cast<int32>(before), nullptr).total = below;
    }
}

int32 TreeIndex::recordAt(int32 position) {
    if (position < 1) return 0;
    try {
        return seek(position);
    } catch (const Failure& failure) {
        // By position a tree too deep is an error to be recorded, by key it is raised.
        if (failure.Number() != 28) throw;
        forget();
        return 0;
    }
}

int32 TreeIndex::total() {
    const int32 root = header().wurzel;
    if (root <= 0) return 0;
    tree::Node node;
    if (!file_.read(root, node) || !node.sound()) return -1;
    return node.total();
}

// A node's subtree, in order; gives the number of records in it.
int32 TreeIndex::inspectNode(int32 address, int32 level, Inspection& inspection) {
    tree::Node node;
    if (level >= tree::kMostLevels || !file_.read(address, node) || !node.sound()) {
        inspection.out.lines.push_back(u"Level " + toText(level) + u":Defekt an Adresse " +
                                       toHexadecimal(static_cast<uint32>(address)));
        return 0;
    }
    const Text place = toText(inspection.index) + u"> Level " + toText(level) + u" Eintrag ";
    int32 counted = 0;
    for (int32 i = 1; i <= node.anzahl + 1; ++i) {
        const auto& entry = node.entry(i);
        const int32 below = entry.kind > 0 ? inspectNode(entry.kind, level + 1, inspection) : 0;
        counted = tree::plus(counted, below);
        if (below != entry.zaehler)
            inspection.out.lines.push_back(u"Indexzählfehler: " + place + toText(i) + u":Count=" +
                                           toText(entry.zaehler) + u" - gezählt=" + toText(below));
        if (i > node.anzahl) break;
        ++counted;
        // A damaged tree may reach a node on many ways; the records there are cannot be more than these.
        if (inspection.out.records.size() > static_cast<std::size_t>(store_.count()) * 2) return counted;
        inspection.out.records.push_back(entry.satz);
        const bool there = store_.has(entry.satz);
        const BytesView bytes = there ? store_.view(entry.satz, room_) : BytesView();
        if (!there || (inspection.lastRecord != 0 &&
                       keys_.compare(inspection.lastKey, inspection.lastRecord, bytes, entry.satz) > 0))
            inspection.out.lines.push_back(u"Indexfehler: " + place + toText(i) + u":RecNo=" +
                                           toText(entry.satz));
        if (!there) continue;
        inspection.lastKey = keys_.searchFor(bytes);
        inspection.lastRecord = entry.satz;
    }
    return counted;
}

IndexFindings TreeIndex::inspect(int32 index) {
    forget();
    IndexFindings out;
    Inspection inspection{out, index, {}, 0};
    if (const int32 root = header().wurzel; root > 0) inspectNode(root, 0, inspection);
    return out;
}

}  // namespace tsRtm

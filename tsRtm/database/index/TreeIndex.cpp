#include "tsRtm/database/index/TreeIndex.hpp"

#include <algorithm>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr TextView kLocateSource = u"clsTSDB Locate";
constexpr int32 kReadAhead = 6;

}  // namespace

bool TreeIndex::reaches(int32 address) {
    if (file_.covers(address)) return true;
    if (!file_.reaches(address)) return false;
    for (int32 level = 0; level < depth_; ++level) {
        Step& at = step(level);
        if (at.node != &at.own) at.node = &file_.look(at.address, at.own);
    }
    return true;
}

TreeIndex::Step& TreeIndex::push(int32 address, const SearchKey* key) {
    if (depth_ == tree::kMostLevels) {
        const Text text =
            Text(u"Buffer overrun in Locating record \"").append(key ? keys_.text(*key) : Text()) +
            u"\" in index on field #" + toText(keys_.primary());
        rtmMain::system().ui.beep();
        rtmMain::DebugLog(text);
        raise(28, kLocateSource, text);
    }
    Step& next = step(depth_);
    if (!reaches(address)) raiseCorrupt(address);
    next.node = &file_.look(address, next.own);
    next.keys = next.node->keys();
    if (next.keys < 0) raiseCorrupt(address);
    ++depth_;
    next.address = address;
    next.base = 0;
    next.position = 1;
    next.total = 0;
    return next;
}

void TreeIndex::raiseCorrupt(int32 address) {
    const Text text = u"Node at &h " + toHexadecimal(static_cast<uint32>(address)) +
                      u" corrupt in Locating record in index on field #" + toText(keys_.primary());
    rtmMain::DebugLog(text);
    raise(9, kLocateSource, text);
}

BytesView TreeIndex::recordOf(const Step& at, int32 record) {
    // A record on its way stands in the trees before it is written: until then it reads as blanks.
    if (!store_.reaches(record) && record != store_.count() + 1) raiseCorrupt(at.address);
    return store_.view(record, room_);
}

std::strong_ordering TreeIndex::compare(const Search& search, const Step& at, int32 record) {
    // The record searched for needs no look at it, and may not be in the file yet.
    if (record == search.number) return std::strong_ordering::equal;
    const BytesView bytes = recordOf(at, record);
    return search.number == 0 ? keys_.compare(search.key, bytes)
                              : keys_.compare(search.key, search.number, bytes, record);
}

NodeHints& TreeIndex::hintsOf(const Search& search, const Step& here, const Shared& shared) {
    NodeHints& hints = hints_.of(here.address);
    if (hints.era != era_ || hints.keys != here.keys) hints.follow(*here.node, here.keys);
    hints.era = era_;
    hints.focus(search.start, std::min(shared.before, shared.behind));
    return hints;
}

KeyWord TreeIndex::learn(NodeHints& hints, const Step& here, int32 position) {
    const auto at = static_cast<std::size_t>(position - 1);
    const int32 record = hints.records[at];
    KeyStart start;
    keys_.start(recordOf(here, record), hints.shared + 2 * sizeof(KeyWord), start);
    if (!hints.sharesStart(start)) {
        hints.used = false;
        return 0;
    }
    const KeyWord word = start.word(hints.shared);
    if (!store_.has(record)) return 0;
    hints.words[at] = word;
    hints.next[at] = start.word(hints.shared + sizeof word);
    return word;
}

bool TreeIndex::placeByHints(const Search& search, Step& here, Shared& shared) {
    NodeHints& hints = hintsOf(search, here, shared);
    hints.used = true;
    const KeyWord wanted = search.start.word(hints.shared);
    const auto wordAt = [&hints](int32 position) {
        return hints.words[static_cast<std::size_t>(position - 1)];
    };
    const auto recordAt = [&hints](int32 position) {
        return hints.records[static_cast<std::size_t>(position - 1)];
    };
    int32 low = 1;
    int32 high = hints.keys;
    while (low <= high) {
        const int32 middle = (low + high) / 2;
        KeyWord word = wordAt(middle);
        if (word == 0) {
            // Whatever this comparison says, one of these two comes next: its memory may come while we
            // compare.
            store_.approach(recordAt(std::max(low, (low + middle - 1) / 2)), keys_.touched());
            store_.approach(recordAt(std::min(high, (middle + 1 + high) / 2)), keys_.touched());
            word = learn(hints, here, middle);
        }
        auto order = wanted <=> word;
        if (order == 0 || word == 0) {
            const int32 record = recordAt(middle);
            if (record == search.number && record == here.node->entry(middle).satz) {
                here.position = middle;
                return true;
            }
            KeyWord rest = word;
            if (word != 0 && !endsIn(word)) {
                rest = hints.next[static_cast<std::size_t>(middle - 1)];
                order = search.start.word(hints.shared + sizeof word) <=> rest;
            }
            if (word == 0 || (order == 0 && !endsIn(rest)))
                order = compare(search, here, record);
            else if (order == 0 && search.number != 0)
                order = search.number <=> record;
        }
        if (order > 0)
            low = middle + 1;
        else
            high = middle - 1;
    }
    here.position = low;
    if (low > 1) shared.before = hints.shared + alike(wanted, wordAt(low - 1));
    if (low <= hints.keys) shared.behind = hints.shared + alike(wanted, wordAt(low));
    return false;
}

bool TreeIndex::placeByRecords(const Search& search, Step& here) {
    // What led here is worth nothing.
    hints_.drop(here.address);
    int32 low = 1;
    int32 high = here.keys;
    while (low <= high) {
        const int32 middle = (low + high) / 2;
        const auto order = compare(search, here, here.node->entry(middle).satz);
        if (order == 0 && search.number != 0) {
            here.position = middle;
            return true;
        }
        if (order > 0)
            low = middle + 1;
        else
            high = middle - 1;
    }
    here.position = low;
    return false;
}

void TreeIndex::goDown(const Search& search, Way& way, Trust trust) {
    Step& here = push(way.next, &search.key);
    way.hit = trust == Trust::hints ? placeByHints(search, here, way.shared) : placeByRecords(search, here);
    way.next = way.hit ? 0 : here.child();
    if (way.next <= 0) return;
    file_.approach(way.next);
    hints_.approach(way.next);
}

bool TreeIndex::walkOn(const Search& search, Way& way, Trust trust) {
    while (way.next > 0) goDown(search, way, trust);
    if (!way.hit) leafLevel_ = depth_ - 1;
    return way.hit;
}

bool TreeIndex::walk(const Search& search, Trust trust) {
    standNowhere();
    Way way{header().wurzel, {}};
    return walkOn(search, way, trust);
}

void TreeIndex::aim(int32 record, const SearchKey& key) {
    if (isAimedAt(record, key)) {
        walkOn(aim_->search, aim_->way, Trust::hints);
        approach(neighbours());
        return;
    }
    standNowhere();
    aim_.emplace(Aim{searchFor(key, record), {header().wurzel, {}}});
    while (aim_->way.next > 0 && depth_ < leafLevel_) goDown(aim_->search, aim_->way, Trust::hints);
}

TreeIndex::Neighbours TreeIndex::neighbours() {
    Neighbours out;
    for (int32 level = depth_ - 1; level >= 0 && !(out.before && out.behind); --level) {
        const Step& at = step(level);
        if (!out.before && at.position > 1) out.before = &at;
        if (!out.behind && at.position <= at.keys) out.behind = &at;
    }
    return out;
}

void TreeIndex::approach(const Neighbours& around) {
    const auto [before, behind] = around;
    if (before) store_.approach(before->node->entry(before->position - 1).satz, keys_.touched());
    if (behind) store_.approach(behind->record(), keys_.touched());
}

bool TreeIndex::liesBehind(const Search& search, const Step* before) {
    return !before || compare(search, *before, before->node->entry(before->position - 1).satz) > 0;
}

IndexKeys::Match TreeIndex::match(const Search& search, const Step* behind) {
    if (!behind) return {std::strong_ordering::less, false};
    return keys_.match(search.key, recordOf(*behind, behind->record()));
}

TreeIndex::Search TreeIndex::searchFor(const SearchKey& key, int32 number) const {
    Search search{key, number, {}};
    keys_.start(key, search.start);
    return search;
}

bool TreeIndex::descend(const Search& search) {
    bool hit = false;
    if (isAimedAt(search.number, search.key)) {
        hit = walkOn(search, aim_->way, Trust::hints);
        aim_.reset();
    } else {
        hit = walk(search, Trust::hints);
    }
    if (hit) return true;
    const auto around = neighbours();
    approach(around);
    const Step* const behind = around.behind;
    const bool proven =
        liesBehind(search, around.before) && (!behind || compare(search, *behind, behind->record()) < 0);
    return !proven && walk(search, Trust::records);
}

int32 TreeIndex::countBefore() {
    int32 sum = 0;
    for (int32 level = 0; level < depth_; ++level) sum = tree::plus(sum, step(level).before());
    return sum;
}

Found TreeIndex::foundBefore(const Step* behind) {
    Found found;
    if (depth_ == 0) return found;
    found.position = tree::plus(countBefore(), 1);
    found.total = step(0).node->total(step(0).keys);
    if (behind) found.record = behind->record();
    return found;
}

// Of the entry that the walk ended on.
int32 TreeIndex::positionHere() {
    const Step& here = last();
    return tree::plus(tree::plus(countBefore(), here.node->entry(here.position).zaehler), 1);
}

Found TreeIndex::locate(const SearchKey& key) {
    const Search search = searchFor(key, 0);
    walk(search, Trust::hints);
    auto around = neighbours();
    approach(around);
    Found found = foundBefore(around.behind);  // meanwhile the records come near
    auto matched = match(search, around.behind);
    if (matched.order > 0 || !liesBehind(search, around.before)) {
        walk(search, Trust::records);
        around = neighbours();
        found = foundBefore(around.behind);
        matched = match(search, around.behind);
    }
    file_.check();
    found.exact = matched.exact;
    return found;
}

int32 TreeIndex::positionOf(int32 record) {
    if (!store_.reaches(record)) return 0;
    Bytes bytes;
    store_.read(record, bytes);
    const SearchKey key = keys_.searchFor(bytes);
    const int32 position = descend(searchFor(key, record)) ? positionHere() : 0;
    file_.check();
    return position;
}

void TreeIndex::approachBehind(int32 entry) noexcept {
    const Step& here = last();
    const int32 ahead = entry + kReadAhead;
    if (ahead <= here.keys) return store_.approachWhole(here.node->entry(ahead).satz);
    if (depth_ < 2 || here.node->entry(entry).kind > 0) return;
    const Step& parent = step(depth_ - 2);
    if (parent.position > parent.keys) return;
    const int32 next = parent.node->entry(parent.position + 1).kind;
    const int32 inNext = ahead - here.keys - 1;
    if (inNext == 0) {
        store_.approachWhole(parent.record());
        file_.approach(next);
    } else if (const tree::Node* const node = file_.inPlace(next)) {
        store_.approachWhole(node->entry(std::min(inNext, tree::kMostKeys)).satz);
    }
}

// From the deepest level of the last walk that still holds the position, else from the root.
int32 TreeIndex::seek(int32 position) {
    aim_.reset();
    for (int32 level = 0; level < depth_; ++level) {
        const Step& at = step(level);
        if (position > at.base && position <= int64{at.base} + at.total) continue;
        depth_ = level;
        break;
    }
    if (depth_ == 0) {
        const int32 root = header().wurzel;
        if (root <= 0) return 0;
        Step& top = push(root, nullptr);
        top.total = top.node->total(top.keys);
    }
    for (;;) {
        Step& at = last();
        int64 before = at.base;
        int32 i = 1;
        for (; i <= at.keys; ++i) {
            const auto& entry = at.node->entry(i);
            const int32 below = entry.zaehler;
            if (position <= before + below) break;
            if (position == before + below + 1) {
                at.position = i;
                const int32 record = entry.satz;
                approachBehind(i);
                return record;
            }
            before += int64{below} + 1;
        }
        // Behind the last key only the rightmost subtree is left.
        at.position = i;
        const int32 child = at.node->entry(i).kind;
        const int32 below = at.node->entry(i).zaehler;
        if (child <= 0 || position > before + below) return 0;
        Step& next = push(child, nullptr);
        next.base = static_cast<int32>(before);
        next.total = below;
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
    if (!reaches(root)) return -1;
    tree::Node room;
    const tree::Node& node = file_.look(root, room);
    const int32 keys = node.keys();
    file_.check();
    return keys < 0 ? -1 : node.total(keys);
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

// Entering and taking out keys of a counted B-tree. Every node that an insert needs is got before the first
// one is changed, so that a full disk leaves an insert undone.
#include <algorithm>
#include <vector>

#include "tsRtm/database/index/TreeIndex.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

// A walk to a leaf that finds no end, while an entry is taken out.
constexpr int32 kUpdateOverrun = static_cast<int32>(0x80040001);

using tree::Entry;
using tree::minus;
using tree::Node;
using tree::plus;

void insertEntry(Node& node, int32 position, Entry entry) {
    Entry* at = node.entries + (position - 1);
    std::copy_backward(at, node.entries + node.anzahl + 1, node.entries + node.anzahl + 2);
    *at = entry;
    ++node.anzahl;
}

void removeEntry(Node& node, int32 position) {
    Entry* at = node.entries + (position - 1);
    std::copy(at + 1, node.entries + node.anzahl + 1, at);
    node.entry(node.anzahl + 1) = {};
    --node.anzahl;
}

struct Halves {
    Node left;
    Node right;
    int32 median = 0;
    int32 leftTotal = 0;
};

// 41 keys and the subtree behind them fall to 20, one that goes up, and 20.
Halves split(const Node& full, int32 position, Entry entry) {
    std::array<Entry, tree::kMostKeys + 2> all;
    const auto end = std::copy_n(full.entries, position - 1, all.begin());
    *end = entry;
    std::copy(full.entries + position - 1, full.entries + tree::kMostKeys + 1, end + 1);
    constexpr int32 half = tree::kFewestKeys;
    Halves out;
    std::copy_n(all.begin(), half + 1, out.left.entries);
    out.median = out.left.entry(half + 1).satz;
    out.left.entry(half + 1).satz = 0;
    out.left.anzahl = half;
    std::copy_n(all.begin() + half + 1, half + 1, out.right.entries);
    out.right.anzahl = half;
    out.leftTotal = out.left.total();
    return out;
}

}  // namespace

int32 TreeIndex::enter(int32 record, const SearchKey& key) {
    if (isAimedAt(record, key)) return insert(Search(aim_->search));
    forget();
    return insert(searchFor(key, record));
}

int32 TreeIndex::insert(const Search& search) {
    const int32 record = search.number;
    tree::Header head = header();
    const int32 before = head.freiListe;
    if (descend(search)) return positionHere();  // it is there already
    const int32 position = tree::plus(countBefore(), 1);

    int32 full = 0;
    while (full < depth_ && step(depth_ - 1 - full).keys >= tree::kMostKeys) ++full;
    const bool newRoot = full == depth_;
    if (newRoot && depth_ == tree::kMostLevels) raise(28, u"clsTSDB Locate", u"Buffer overrun in index");
    // Of nodes that are only counted in nothing but the count is changed. Nodes that split make the file
    // grow, and with it what lies in the window may move.
    for (int32 level = full == 0 && !newRoot ? depth_ - 1 : 0; level < depth_; ++level) step(level).copy();
    std::vector<int32> addresses;
    addresses.reserve(static_cast<std::size_t>(full) + 1);
    for (int32 i = 0; i < full + (newRoot ? 1 : 0); ++i) addresses.push_back(file_.allocate(head));
    auto next = addresses.begin();

    Entry pending{0, 0, record};
    bool waiting = true;
    int32 rightTotal = 0;
    for (int32 level = depth_ - 1; level >= 0; --level) {
        Step& at = step(level);
        const bool leaf = level == depth_ - 1;
        if (!waiting) {
            file_.writeCount(at.address, at.position, plus(at.count(), 1));
            continue;
        }
        int32& count = at.own.entry(at.position).zaehler;
        if (!leaf) count = plus(count, 1);
        // The left half goes in before the entry that still leads to the right one.
        if (!leaf) count = minus(count, plus(pending.zaehler, 1));
        if (at.own.anzahl < tree::kMostKeys) {
            insertEntry(at.own, at.position, pending);
            if (leaf)
                hints_.of(at.address).enter(at.position, record, search.start);
            else
                hints_.of(at.address).era = 0;
            file_.write(at.address, at.own);
            waiting = false;
            continue;
        }
        const Halves halves = split(at.own, at.position, pending);
        hints_.of(at.address).era = 0;
        hints_.copy(at.address, *next);
        file_.write(*next, halves.left);
        file_.write(at.address, halves.right);
        pending = {*next++, halves.leftTotal, halves.median};
        rightTotal = halves.right.total();
    }
    if (waiting) {
        Node root;
        root.anzahl = 1;
        root.entry(1) = pending;
        if (depth_ > 0) root.entry(2) = {head.wurzel, rightTotal, 0};
        file_.write(*next, root);
        head.wurzel = *next;
    }
    if (waiting || before != head.freiListe) file_.header(head);
    standNowhere();
    return position;
}

// A key of an inner node gives its place to the last key before it, which lies in a leaf.
void TreeIndex::toLeafEntry(int32 hitLevel) {
    const Step& hit = step(hitLevel);
    for (int32 address = hit.child(); address > 0;) {
        Step& down = push(address, nullptr);
        down.position = down.keys + 1;
        address = down.child();
    }
    for (int32 level = 0; level < depth_; ++level) step(level).copy();
    if (hitLevel == depth_ - 1) return;
    Step& leaf = last();
    if (leaf.own.anzahl < 1) raise(28, u"DB Update", u"Empty leaf while searching leaf");
    leaf.position = leaf.own.anzahl;
    step(hitLevel).own.entry(step(hitLevel).position).satz = leaf.own.entry(leaf.position).satz;
}

// The two nodes become one of at most 40 keys, with the parent's key between them.
int32 TreeIndex::mergeWith(int32 level, int32 sibling, const Node& other, tree::Header& header) {
    Step& here = step(level);
    Step& parent = step(level - 1);
    const int32 own = parent.position;
    const bool right = sibling > own;
    const Node& leftNode = right ? here.own : other;
    const Node& rightNode = right ? other : here.own;
    Node merged;
    Entry* end = std::copy_n(leftNode.entries, leftNode.anzahl + 1, merged.entries);
    (end - 1)->satz = parent.own.entry(right ? own : sibling).satz;
    std::copy_n(rightNode.entries, rightNode.anzahl + 1, end);
    merged.anzahl = leftNode.anzahl + rightNode.anzahl + 1;

    const int32 otherAddress = parent.own.entry(sibling).kind;
    int32& count = parent.own.entry(own).zaehler;
    count = plus(count, plus(parent.own.entry(sibling).zaehler, 1));
    if (right) parent.own.entry(own).satz = parent.own.entry(sibling).satz;
    here.own = merged;
    file_.write(here.address, here.own);
    file_.release(otherAddress, header);
    return sibling;
}

// Keys move through the parent's separator until both nodes hold about the same.
void TreeIndex::rotateWith(int32 level, int32 sibling, Node& other) {
    Step& here = step(level);
    Step& parent = step(level - 1);
    const int32 own = parent.position;
    const bool right = sibling > own;
    const int32 moved = (other.anzahl + here.own.anzahl) / 2 - here.own.anzahl;
    Entry& separator = parent.own.entry(right ? own : sibling);
    Node node;
    int32 records = moved;
    if (right) {
        Entry* end = std::copy_n(here.own.entries, here.own.anzahl + 1, node.entries);
        (end - 1)->satz = separator.satz;
        end = std::copy_n(other.entries, moved, end);
        separator.satz = (end - 1)->satz;
        (end - 1)->satz = 0;
        for (int32 i = 1; i <= moved; ++i) records = plus(records, other.entry(i).zaehler);
        std::copy(other.entries + moved, other.entries + other.anzahl + 1, other.entries);
        std::fill(other.entries + other.anzahl + 1 - moved, other.entries + other.anzahl + 1, Entry{});
    } else {
        const int32 keep = other.anzahl - moved;  // keys that stay there
        Entry* end = std::copy(other.entries + keep + 1, other.entries + other.anzahl + 1, node.entries);
        (end - 1)->satz = separator.satz;
        std::copy_n(here.own.entries, here.own.anzahl + 1, end);
        for (int32 i = keep + 2; i <= other.anzahl + 1; ++i) records = plus(records, other.entry(i).zaehler);
        separator.satz = other.entry(keep + 1).satz;
        other.entry(keep + 1).satz = 0;
        std::fill(other.entries + keep + 1, other.entries + other.anzahl + 1, Entry{});
    }
    node.anzahl = here.own.anzahl + moved;
    other.anzahl -= moved;
    here.own = node;
    int32& gained = parent.own.entry(own).zaehler;
    int32& given = parent.own.entry(sibling).zaehler;
    gained = plus(gained, records);
    given = minus(given, records);
    file_.write(here.address, here.own);
    file_.write(parent.own.entry(sibling).kind, other);
}

int32 TreeIndex::balance(int32 level, tree::Header& header) {
    Step& here = step(level);
    if (level == 0) {
        if (here.own.anzahl > 0) {
            file_.write(here.address, here.own);
        } else {
            header.wurzel = here.own.entry(1).kind;
            file_.release(here.address, header);
        }
        return 0;
    }
    const Step& parent = step(level - 1);
    const int32 sibling = parent.position <= parent.own.anzahl ? parent.position + 1 : parent.position - 1;
    Node other;
    // The right edge of a bulk load may be a node alone below its parent.
    const bool alone = sibling < 1 || !file_.read(parent.own.entry(sibling).kind, other) || !other.sound();
    if (here.own.anzahl >= tree::kFewestKeys || alone) {
        file_.write(here.address, here.own);
        return 0;
    }
    if (other.anzahl + here.own.anzahl < tree::kMostKeys) return mergeWith(level, sibling, other, header);
    rotateWith(level, sibling, other);
    return 0;
}

void TreeIndex::removeUpwards(int32 hitLevel, tree::Header& header) {
    for (int32 level = 0; level < depth_ - 1; ++level) {
        int32& count = step(level).own.entry(step(level).position).zaehler;
        count = minus(count, 1);
    }
    int32 remove = last().position;
    bool whole = true;  // more than one count of the node changed
    for (int32 level = depth_ - 1; level >= 0; --level) {
        Step& at = step(level);
        if (remove > 0) {
            removeEntry(at.own, remove);
            remove = balance(level, header);
            whole = true;  // the neighbours' exchange went through the parent
            continue;
        }
        if (whole || level == hitLevel)
            file_.write(at.address, at.own);
        else
            file_.writeCount(at.address, at.position, at.own.entry(at.position).zaehler);
        whole = false;
    }
}

void TreeIndex::takeFromLeaf() {
    for (int32 level = 0; level < depth_ - 1; ++level)
        file_.writeCount(step(level).address, step(level).position, minus(step(level).count(), 1));
    Step& leaf = last();
    removeEntry(leaf.copy(), leaf.position);
    file_.write(leaf.address, leaf.own);
    hints_.of(leaf.address).remove(leaf.position);
    standNowhere();
}

bool TreeIndex::takeOut(const Search& search) {
    tree::Header head = header();
    const tree::Header before = head;
    if (!descend(search)) return false;
    if (last().child() <= 0 && last().keys > tree::kFewestKeys) {
        takeFromLeaf();
        return true;
    }
    const int32 hitLevel = depth_ - 1;
    try {
        toLeafEntry(hitLevel);
    } catch (const Failure& failure) {
        if (failure.Number() != 28) throw;
        // No blank before "while": the text stands so in logs.
        const Text text =
            u"Buffer overrun in Update record " + toText(search.number) + u"while searching leaf";
        rtmMain::DebugLog(u"DB Update: " + text);
        raise(kUpdateOverrun, u"DB Update", text);
    }
    removeUpwards(hitLevel, head);
    if (head.wurzel != before.wurzel || head.freiListe != before.freiListe) file_.header(head);
    forget();
    return true;
}

int32 TreeIndex::move(int32 record, const SearchKey& from, const SearchKey& to) {
    if (!isAimedAt(record, from)) forget();
    if (!takeOut(aim_ ? Search(aim_->search) : searchFor(from, record)))
        raise(28, u"DB Update", Text(u"Kein Indexeintrag für Satz ") + toText(record));
    return insert(searchFor(to, record));
}

}  // namespace tsRtm

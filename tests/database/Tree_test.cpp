// The tree of a big database, seen in the bytes of its file.
#include <cstring>
#include <random>

#include "tests/database/MemoryDatabase.hpp"
#include "tsRtm/database/index/NodeFormat.hpp"
#include "tsRtm/frame/text/TextOrder.hpp"

namespace tsRtm::test {
namespace {

// A reader of the file that shares nothing with the engine but the layout.
class TreeFile {
 public:
    explicit TreeFile(Bytes bytes) : bytes_(std::move(bytes)) {}

    int32 root() const { return number(4); }
    int32 freeList() const { return number(8); }
    int32 nodes() const { return static_cast<int32>(bytes_.size() / 512) - 1; }
    std::size_t size() const { return bytes_.size(); }
    tree::Node node(int32 address) const {
        tree::Node out;
        if (address < 513 || static_cast<std::size_t>(address) + 511 > bytes_.size() || address % 512 != 1)
            ADD_FAILURE() << "no node at " << address;
        else
            std::memcpy(&out, bytes_.data() + address - 1, sizeof out);
        return out;
    }

 private:
    int32 number(std::size_t offset) const {
        int32 out = 0;
        std::memcpy(&out, bytes_.data() + offset, sizeof out);
        return out;
    }
    Bytes bytes_;
};

// Walks a whole tree and notes every broken rule.
class TreeRules {
 public:
    // `bulk`: the right edge may hold nodes of few keys.
    TreeRules(const TreeFile& file, bool bulk) : file_(file), bulk_(bulk) {
        if (file.root() != 0) walk(file.root(), 0, true);
        for (int32 free = file.freeList(); free != 0 && freeNodes <= file.nodes(); ++freeNodes) {
            const auto node = file.node(free);
            EXPECT_EQ(node.anzahl, tree::kFreeMark) << "free node " << free;
            free = node.entry(1).kind;
        }
        EXPECT_EQ(nodes + freeNodes, file.nodes()) << "nodes that nobody knows";
    }

    std::vector<int32> records;  // in order
    int32 nodes = 0;
    int32 freeNodes = 0;
    int32 levels = 0;

 private:
    int32 walk(int32 address, int32 level, bool rightEdge) {
        const auto node = file_.node(address);
        ++nodes;
        EXPECT_LE(node.anzahl, 40) << address;
        const int32 fewest = level == 0 || (bulk_ && rightEdge) ? 0 : 20;
        EXPECT_GE(node.anzahl, fewest) << address;
        if (level > 8 || node.anzahl < 0 || node.anzahl > 40) return 0;
        int32 total = node.anzahl;
        const bool leaf = node.entry(1).kind == 0;
        if (leaf) {
            if (levels == 0) levels = level + 1;
            EXPECT_EQ(levels, level + 1) << "leaves of different depth";
        }
        for (int32 i = 1; i <= node.anzahl + 1; ++i) {
            const auto& entry = node.entry(i);
            EXPECT_EQ(entry.kind == 0, leaf) << address << " entry " << i;
            const int32 below = leaf ? 0 : walk(entry.kind, level + 1, rightEdge && i == node.anzahl + 1);
            EXPECT_EQ(entry.zaehler, below) << address << " entry " << i;
            total += below;
            if (i <= node.anzahl) records.push_back(entry.satz);
        }
        return total;
    }

    const TreeFile& file_;
    bool bulk_;
};

class Tree : public MemoryDatabase {
 protected:
    std::shared_ptr<clsTSDB> db;

    void makeKeys() { db = make(fieldsOf({{u"KEY", tsAlphanumerisch, 6}}), kBig, u"  1  0  0"); }
    static Text key(int32 n) { return toText(100000 + n); }
    void add(const Text& text) {
        const auto record = addRecord(*db, {{1, text}});
        ASSERT_TRUE(record);
        record->Entsperren();
    }
    void change(int32 n, const Text& text) { ASSERT_EQ(test::change(*db, n, 1, text), 0); }
    TreeFile tree() const { return TreeFile(file(u"I001")); }
    // Rules of the nodes, order of the keys, and the positions that the engine gives.
    void check(bool bulk = false) {
        const TreeFile file = tree();
        const TreeRules rules(file, bulk);
        const int32 count = db->AnzahlDSaetze();
        ASSERT_EQ(static_cast<int32>(rules.records.size()), count);
        db->SetIndex(1);
        for (int32 p = 1; p <= count; ++p) {
            const int32 n = rules.records[static_cast<std::size_t>(p - 1)];
            if (p > 1) {
                const int32 before = rules.records[static_cast<std::size_t>(p - 2)];
                const auto order = compareText(db->GetField(before, 1), db->GetField(n, 1));
                ASSERT_TRUE(order < 0 || (order == 0 && before < n)) << "position " << p;
            }
            ASSERT_EQ(db->Index(p), n);
        }
        EXPECT_TRUE(consistent(*db));
    }
};

TEST_F(Tree, TheFortyFirstKeySplitsTheRoot) {
    makeKeys();
    for (int32 n = 1; n <= 40; ++n) add(key(n));
    EXPECT_TOLD("1|40", tree().nodes(), tree().node(tree().root()).anzahl);
    add(key(41));
    const TreeFile file = tree();
    ASSERT_EQ(file.nodes(), 3);
    const auto root = file.node(file.root());
    EXPECT_TOLD("1|21|513", root.anzahl, root.entry(1).satz, root.entry(2).kind)
        << "the right half stays where the node was";
    for (const int32 i : {1, 2}) {
        const auto half = file.node(root.entry(i).kind);
        EXPECT_TOLD("20|20", root.entry(i).zaehler, half.anzahl);
        for (int32 k = 1; k <= 20; ++k) EXPECT_EQ(half.entry(k).satz, k + (i - 1) * 21);
    }
    check();
}

// Keys that come in order, against it, and all alike.
TEST_F(Tree, EveryOrderOfInsertsKeepsTheRules) {
    const std::pair<const char*, std::function<Text(int32)>> orders[] = {
        {"ascending", [](int32 n) { return key(n); }},
        {"descending", [](int32 n) { return key(9999 - n); }},
        {"zigzag", [](int32 n) { return key(n % 2 == 0 ? n : 9999 - n); }},
        {"alike", [](int32) { return Text(u"X"); }},
        {"by case", [](int32 n) { return Text(n % 2 == 0 ? u"abc" : u"ABC"); }},
    };
    for (const auto& [name, keyOf] : orders) {
        SCOPED_TRACE(name);
        disk.restore({});
        makeKeys();
        for (int32 n = 1; n <= 1700; ++n) add(keyOf(n));
        EXPECT_EQ(TreeRules(tree(), false).levels, 3);
        check();
    }
}

TEST_F(Tree, ThousandsOfMovesKeepTheRules) {
    makeKeys();
    std::mt19937 random(99);
    const auto below = [&](int32 n) { return static_cast<int32>(random() % static_cast<uint32>(n)); };
    for (int32 n = 1; n <= 1500; ++n) add(key(below(3000)));
    check();
    for (int32 step = 1; step <= 6000; ++step) {
        // From everywhere to one corner, then to the other: nodes empty and merge on one side, split on the
        // other.
        const int32 corner = step / 1500 % 2 == 0 ? 0 : 90000;
        change(1 + below(1500), key(corner + below(800)));
        if (step % 1000 == 0) check();
    }
    EXPECT_GT(TreeRules(tree(), false).freeNodes, 0);
    // Freed nodes are used before the file grows.
    const auto size = tree().size();
    const int32 free = TreeRules(tree(), false).freeNodes;
    for (int32 n = 0; TreeRules(tree(), false).freeNodes > 0 && n < 3000; ++n) add(key(below(95000)));
    EXPECT_EQ(tree().size(), size) << free;
    check();
}

// Names that agree in their first words of eight letters, whole or but for an accent, and many that are the
// same.
TEST_F(Tree, IsSortedByKeysThatAreLongAlike) {
    constexpr int32 kCount = 7000;
    db = make(fieldsOf({{u"KEY", tsAlphanumerisch, 30}}), kBig, u"  1  0  0");
    db.reset();
    const Bytes starts[] = {
        "", "Stra", "Stra\337", "STRASSEN", "Strassen-", "Strassenbahnhaltestelle", "Stra\337enb\344hnhalte"};
    std::mt19937 random(23);
    Bytes data;
    for (int32 n = 1; n <= kCount; ++n) {
        Bytes record = Bytes(" ").append(starts[random() % std::size(starts)]);
        for (auto letters = random() % 4; letters > 0; --letters) record += "aeE\xE4"[random() % 4];
        data += record.append(31 - record.size(), ' ');
    }
    put(u"Data.tsd", data);
    db = open();
    ASSERT_TRUE(db->Sort());
    ASSERT_EQ(db->AnzahlDSaetze(), kCount);
    check(true);
}

// Trees as a rebuild writes them: full leaves of 30, and whatever is left on the right edge.
class BulkTree : public Tree, public testing::WithParamInterface<int32> {};

TEST_P(BulkTree, IsWalkedAndThenUpdated) {
    const int32 count = GetParam();
    makeKeys();
    db.reset();
    Bytes data;
    for (int32 n = 1; n <= count; ++n) data += " " + std::to_string(100000 + 2 * n);
    put(u"Data.tsd", data);
    db = open();
    ASSERT_EQ(db->AnzahlDSaetze(), count);
    ASSERT_TRUE(db->Sort());
    {
        const TreeFile file = tree();
        const TreeRules rules(file, true);
        EXPECT_TRUE(file.freeList() == 0 && (file.root() == 0) == (count == 0));
        EXPECT_EQ(rules.levels, count == 0 ? 0 : count <= 30 ? 1 : count <= 960 ? 2 : 3);
        EXPECT_TRUE(count <= 30 || (file.node(513).anzahl == 30 && file.node(513).entry(1).kind == 0));
    }
    check(true);
    EXPECT_EQ((db->Gehezu(key(2 * count)), db->LogSatz()), count);
    EXPECT_EQ((db->Gehezu(key(2 * count + 1)), db->LogSatz()), count == 0 ? 0 : count + 1);
    // The last key goes to the front, keys from the middle to the end, new ones everywhere.
    for (int32 n = count; n > std::max(0, count - 40); --n) change(n, key(0));
    check(true);
    for (int32 n = 1; n <= std::min(count, 200); ++n) change(n, key(9000 + n % 7));
    check(true);
    for (int32 n = 1; n <= 150; ++n) add(key(n * 37 % 2000));
    check(true);
}

INSTANTIATE_TEST_SUITE_P(Sizes, BulkTree,
                         testing::Values(0, 1, 29, 30, 31, 32, 61, 62, 930, 960, 961, 962, 992));

}  // namespace
}  // namespace tsRtm::test

// What a list, a table of cells and a table of rows promise alike, each in its own form of the file.
#include "tests/tables/TablesTest.hpp"

namespace tsRtm::test {
namespace {

template <class Kind>
class Contract : public TablesTest {
 protected:
    static Bytes lines(std::initializer_list<const char*> entries, const char* mark = "") {
        return mark + linesOf<Kind>(entries);
    }
    static constexpr const char* kUtf8 = "\xEF\xBB\xBF";
};

using Kinds = testing::Types<List, Cells, Rows>;
TYPED_TEST_SUITE(Contract, Kinds);

TYPED_TEST(Contract, ChangesAreStoredByCommitAtOnceOrAtTheEnd) {
    for (const bool atOnce : {false, true})
        for (const bool sensible : {false, true})
            for (const bool commits : {false, true}) {
                static_cast<void>(this->disk.remove(kFile));
                {
                    TypeParam list(atOnce);
                    list.data.Sensible(sensible);
                    Changes changes(list.data);
                    list.add(u"eins");
                    list.add(u"Łódź");
                    list.set(1, u"1");
                    list.add(u"drei");
                    list.data.Remove(2);
                    list.data.Remove(9);
                    list.set(0, u"nirgends");
                    EXPECT_EQ(changes.take(), 5);
                    EXPECT_EQ(list.all(), (Entries{u"1", u"drei"}));
                    EXPECT_EQ(this->disk.exists(kFile), atOnce);
                    if (commits) {
                        list.data.Commit();
                        EXPECT_EQ(this->disk.dump(kFile), this->lines({"1", "drei"}, this->kUtf8));
                    }
                }
                EXPECT_EQ(this->disk.dump(kFile), this->lines({"1", "drei"}, this->kUtf8));
                EXPECT_EQ(this->disk.list(u"/d").value().size(), 1u) << "nothing is left beside it";
            }
}

TYPED_TEST(Contract, WithoutEntriesTheFileIsEmptyOrGone) {
    for (const bool atOnce : {false, true}) {
        this->disk.put(kFile, this->lines({"a"}));
        TypeParam list(atOnce);
        list.data.Remove(1);
        EXPECT_TRUE(atOnce || this->disk.dump(kFile) == this->lines({"a"})) << "not stored yet";
        list.data.Commit();
        EXPECT_EQ(list.all(), Entries{});
        ASSERT_EQ(this->disk.exists(kFile), TypeParam::kEmptyIsAFile);
        if (TypeParam::kEmptyIsAFile) {
            EXPECT_EQ(this->disk.dump(kFile), "");
        }
        list.data.Clear();
        EXPECT_FALSE(this->disk.exists(kFile));
    }
}

TYPED_TEST(Contract, OthersChangesAreSeenInTime) {
    for (const bool atOnce : {false, true}) {
        this->disk.put(kFile, this->lines({"alt"}));
        TypeParam list(atOnce);
        Changes changes(list.data);
        EXPECT_EQ(list.all(), Entries{u"alt"});
        EXPECT_EQ(changes.take(), 1);
        this->otherWrites(this->lines({"neu"}));
        EXPECT_EQ(list.all(), Entries{atOnce ? u"neu" : u"alt"});
        this->wait(kUntilNextLook);
        EXPECT_EQ(list.all(), Entries{u"neu"});
        EXPECT_EQ(changes.take(), 1);
        // Within the second of the last stamp, and of the same size.
        this->otherWrites(this->lines({"eins"}));
        this->wait(kUntilNextLook);
        this->disk.put(kFile, this->lines({"zwei"}));
        static_cast<void>(list.data.Count());
        this->disk.put(kFile, this->lines({"drei"}));
        if (!atOnce) this->wait(kUntilNextLook);
        EXPECT_EQ(list.all(), Entries{u"drei"});
        changes.take();
        this->wait(kUntilNextLook);
        EXPECT_EQ(list.all(), Entries{u"drei"});
        EXPECT_EQ(changes.take(), 0);
        static_cast<void>(this->disk.remove(kFile));
        this->wait(kUntilNextLook);
        EXPECT_EQ(list.all(), Entries{});
        EXPECT_EQ(changes.take(), 1);
    }
}

TYPED_TEST(Contract, TheLastWriterWinsButAnOldVersionDoesNotComeBack) {
    const auto dump = [this] { return this->disk.dump(kFile); };
    {
        TypeParam list;
        list.add(u"ungespeichert");
        this->wait(kUntilNextLook);
        EXPECT_EQ(list.all(), Entries{u"ungespeichert"}) << "a file that was never there is not gone";
        list.data.Commit();
        this->otherWrites(this->lines({"theirs"}));
    }  // has nothing to store
    EXPECT_EQ(dump(), this->lines({"theirs"}));
    {
        TypeParam list;
        list.add(u"ours");
        this->otherWrites(this->lines({"theirs, again"}));
        list.data.Commit();
        EXPECT_EQ(dump(), this->lines({"theirs", "ours"}));
        list.set(1, u"changed");
        static_cast<void>(this->disk.remove(kFile));
        this->wait(kUntilNextLook);
        EXPECT_EQ(list.all(), Entries{});
        this->disk.put(kFile, this->lines({"new"}));
    }  // nor has this one
    ASSERT_TRUE(this->disk.exists(kFile));
    EXPECT_EQ(dump(), this->lines({"new"}));
}

TYPED_TEST(Contract, AFileThatCannotBeReadStaysWhole) {
    const Bytes stranger("\xFF\xFE\0\0x\0\0\0", 8);  // UTF-32
    this->disk.put(kFile, stranger);
    {
        TypeParam list;
        EXPECT_THROW(static_cast<void>(list.data.Count()), Failure);
        EXPECT_THROW(list.add(u"x"), Failure);
    }
    EXPECT_EQ(this->disk.dump(kFile), stranger);
    this->disk.put(kFile, this->lines({"alt"}));
    TypeParam list;
    this->disk.failOpening(kFile, platform::SystemError::sharingViolation);
    EXPECT_EQ(list.data.Count(), 0);
    EXPECT_EQ(rtmMain::state().F, 70);
    EXPECT_THROW(list.add(u"x"), Failure);
    this->disk.failOpening(kFile, platform::SystemError::none);
    this->wait(kUntilNextLook);
    list.add(u"neu");
    list.data.Commit();
    EXPECT_EQ(this->disk.dump(kFile), this->lines({"alt", "neu"}));
}

TYPED_TEST(Contract, WhatTheFileCannotHoldIsRefused) {
    for (const auto* text : {u"x\x1Ay", u"x\ry", u"x\ny"}) {
        if (TypeParam::kLineBreakFits && text[1] != u'\x1A') continue;
        this->disk.put(kFile, this->lines({"a"}));
        TypeParam list;
        EXPECT_EQ(raisedNumber([&] { list.add(text); }), 380);
        EXPECT_EQ(raisedNumber([&] { list.set(1, text); }), 380);
        EXPECT_EQ(list.all(), Entries{u"a"});
        // In code it has a place in the file.
        list.data.Encrypted(true);
        list.set(1, text);
        list.data.Commit();
        TypeParam again;
        again.data.Encrypted(true);
        EXPECT_EQ(again.all(), Entries{text});
        again.data.Encrypted(false);
        const Bytes before = this->disk.dump(kFile);
        again.add(u"b");
        EXPECT_EQ(raisedNumber([&] { again.data.Commit(); }), 380);
        EXPECT_EQ(this->disk.dump(kFile), before);
    }
}

// The code of an entry beside plain ones would make something else of these at the next reading.
TYPED_TEST(Contract, AFileIsCodedAsAWhole) {
    const Entries entries{u"Abel", u"", u"geheim €", Text(300, u'ß')};
    for (const bool atOnce : {false, true}) {
        this->disk.put(kFile, this->lines({"Abel"}));
        {
            TypeParam list(atOnce);
            EXPECT_EQ(list.data.Count(), 1);
            list.data.Encrypted(true);
            for (std::size_t i = 1; i < entries.size(); ++i) list.add(entries[i]);
        }  // stores
        const Bytes stored = this->disk.dump(kFile);
        for (const char* plain : {"Abel", "geheim", "="}) EXPECT_EQ(stored.find(plain), Bytes::npos) << plain;
        TypeParam again;
        again.data.Encrypted(true);
        EXPECT_EQ(again.all(), entries);
    }
}

TYPED_TEST(Contract, StoringThatFailsLeavesTheFileAndSaysWhy) {
    for (const bool sensible : {false, true}) {
        const Bytes before = this->lines({"a", "b"});
        this->disk.put(kFile, before);
        TypeParam list;
        list.data.Sensible(sensible);
        list.set(1, u"neu");
        {
            const auto reader = this->disk.open(kFile, {});  // somebody reads, for longer than NetWait
            const std::string said = raised([&] { list.data.Commit(); });
            EXPECT_TRUE(said.starts_with(TypeParam::kStoringFails)) << said;
            if (TypeParam::kEmptyIsAFile) {
                EXPECT_THROW(list.data.Clear(), Failure);
                EXPECT_EQ(list.all(), (Entries{u"neu", u"b"}));
            }
        }
        list.data.Encoding(65000);
        EXPECT_EQ(
            raised([&] { list.data.Commit(); }),
            "321|clsRtm.PutContentAPI|Dieses Dateiformat (Encoding=65000) wird in \"/d/Liste.txt\" nicht "
            "unterstützt");
        EXPECT_EQ(this->disk.dump(kFile), before);
        EXPECT_EQ(this->disk.list(u"/d").value().size(), 1u);
        list.data.Encoding(1252);
        list.data.Commit();
        EXPECT_EQ(this->disk.dump(kFile), this->lines({"neu", "b"}))
            << "what was not stored is still to store";
    }
}

}  // namespace
}  // namespace tsRtm::test

#include <algorithm>
#include <random>

#include "tests/support/Raised.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/tables/clsQuickSort.hpp"

namespace tsRtm::test {
namespace {

// Numbers by position from 1. Keeps the pivot's key from NewPivot on, as helpers do, so that it sorts wrongly
// where a change of the pivot is not told.
class Numbers final : public iSortHelper {
 public:
    explicit Numbers(std::vector<int32> values) : all(std::move(values)) {}

    void Suchbegriff(const Variant& Wert) override { key_ = *Wert.number(); }
    eCompareResults Compare(int32 Vergleich, int32 Pivot, eCompareMethod PivotNeu, Variant& Zusatz) override {
        log += u"C" + toText(Vergleich) +
               (PivotNeu == Search     ? u"?"
                : PivotNeu == NewPivot ? u"!"
                                       : u".") +
               toText(Pivot) + u" ";
        if (int32* calls = std::get_if<int32>(&Zusatz)) ++*calls;
        if (chance) {
            at(Vergleich), at(Pivot);  // within the range
            return static_cast<eCompareResults>(static_cast<int32>((*chance)() % 3) - 1);
        }
        if (PivotNeu == NewPivot) pivot_ = at(Pivot);
        const int32 other = PivotNeu == Search ? key_ : pivot_;
        return at(Vergleich) < other ? Kleiner : at(Vergleich) > other ? Groesser : Gleich;
    }
    void Swap(int32 v1, int32 v2, Variant&) override {
        log += u"S" + toText(v1) + u"," + toText(v2) + u" ";
        std::swap(at(v1), at(v2));
    }

    std::vector<int32> all;
    Text log;
    std::mt19937* chance = nullptr;  // decides, where there is one

 private:
    int32& at(int32 position) { return all.at(static_cast<std::size_t>(position) - 1); }
    int32 key_ = 0;
    int32 pivot_ = 0;
};

TEST(QuickSort, CallsTheHelperInTheToldOrder) {
    using Case = std::tuple<std::vector<int32>, int32, int32, TextView>;
    // Of three the pivot 2 stays, and both sides stop at it; or it goes from 2 to 1 in the first exchange,
    // then to the middle of what is left.
    for (const auto& [values, from, to, calls] :
         {Case{{1, 2}, 1, 1, u""}, Case{{1, 2}, 2, 1, u""}, Case{{1, 2}, 1, 2, u"C1!2 "},
          Case{{2, 2}, 1, 2, u"C1!2 "}, Case{{2, 1}, 1, 2, u"C1!2 S1,2 "},
          Case{{1, 2, 3}, 1, 3, u"C1!2 C3.2 "}, Case{{3, 2, 1}, 1, 3, u"C1!2 C3.2 S1,3 "},
          Case{{3, 1, 2}, 1, 3, u"C1!2 C3.2 S1,2 C2!3 S2,3 "},
          Case{{2, 3, 1}, 1, 3, u"C1!2 C3.2 S2,3 C1!2 S1,2 "}}) {
        Numbers numbers(values);
        clsQuickSort().QuickSort(from, to, &numbers);
        EXPECT_EQ(toUtf8(numbers.log), toUtf8(calls));
    }
}

TEST(QuickSort, SortsWhatComes) {
    std::mt19937 random(7);
    for (int32 size = 0; size < 200; size += 1 + size / 20)
        for (const int32 different : {1, 2, 10, 1000}) {
            std::vector<int32> values(static_cast<std::size_t>(size));
            for (int32& value : values) value = static_cast<int32>(random() % static_cast<uint32>(different));
            if (size % 3 == 0) std::sort(values.begin(), values.end(), std::greater());
            Numbers numbers(values);
            Variant calls = int32{0};
            clsQuickSort().QuickSort(1, size, &numbers, calls);
            std::sort(values.begin(), values.end());
            ASSERT_EQ(numbers.all, values);
            // Zusatz comes through to every call.
            EXPECT_EQ(*calls.number(), std::count(numbers.log.begin(), numbers.log.end(), u'C'));
        }
}

// It stays within its range, too: elsewhere the helper has nothing.
TEST(QuickSort, EndsWhateverTheHelperAnswers) {
    std::mt19937 random(3);
    Numbers dice(std::vector<int32>(100));
    dice.chance = &random;
    for (int i = 0; i < 200; ++i) EXPECT_NO_THROW(clsQuickSort().QuickSort(1, 100, &dice));
}

TEST(BSearch, FindsOrTellsWhereToInsert) {
    using Case = std::tuple<int32, int32, const char*>;  // the position is -1 as it was passed; one
                                                         // comparison is made even of nothing
    for (const auto& [key, to, told] :
         {Case{20, 4, "yes|2|C2?0 "}, Case{40, 4, "yes|4|C2?0 C3?0 C4?0 "},
          Case{35, 4, "no|-1|C2?0 C3?0 C4?0 "}, Case{45, 4, "no|5|C2?0 C3?0 C4?0 "},
          Case{5, 4, "no|-1|C2?0 C1?0 "}, Case{15, 4, "no|2|C2?0 C1?0 "}, Case{10, 0, "yes|1|C1?0 "},
          Case{15, 0, "no|2|C1?0 "}}) {
        Numbers numbers({10, 20, 30, 40});
        int32 at = -1;
        const bool found = clsQuickSort().BSearch(key, 1, to, &numbers, at);
        EXPECT_TOLD(told, found, at, numbers.log) << key;
    }
}

TEST(QuickSort, NeedsAHelper) {
    const std::string told = "91|clsQuickSort|Kein iSortHelper-Objekt angegeben";
    int32 at = 0;
    EXPECT_EQ(raised([&] { clsQuickSort().BSearch(1, 1, 2, nullptr, at); }), told);
    EXPECT_EQ(raised([] { clsQuickSort().QuickSort(1, 2, nullptr); }), told);
}

}  // namespace
}  // namespace tsRtm::test

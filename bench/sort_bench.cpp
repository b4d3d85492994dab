// What sorting through the helper interface costs, beside std::sort through the same kind of virtual
// comparison.
//
// A million entries that a helper owns and sorts by position. std::sort gets the positions and asks the same
// helper by virtual call; plain std::sort of the entries themselves is there for information.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <random>
#include <vector>

#include "tsRtm/tables/clsQuickSort.hpp"

namespace tsRtm {
namespace {

constexpr int32 kEntries = 1'000'000;

struct Entry {
    uint64 key;
    int32 record;
};

enum Order : int64 { shuffled, sorted, reversed, fewKeys };

std::vector<Entry> entries(Order order) {
    std::vector<Entry> out(kEntries);
    std::mt19937_64 random(5);
    for (int32 i = 0; i < kEntries; ++i) {
        const auto n = static_cast<uint64>(i);
        out[n] = {order == sorted || order == reversed ? n : order == fewKeys ? random() % 100 : random(), i};
    }
    return out;
}

// There are two, chosen at run time, so that the compiler cannot know which one is called.
template <bool Descending>
class Helper final : public iSortHelper {
 public:
    explicit Helper(std::vector<Entry>& all) : all_(all) {}
    void Suchbegriff(const Variant&) override {}
    eCompareResults Compare(int32 Vergleich, int32 Pivot, eCompareMethod PivotNeu, Variant&) override {
        if (PivotNeu == NewPivot) pivot_ = key(Pivot);
        const uint64 own = key(Vergleich);
        if (own == pivot_) return Gleich;
        return (own < pivot_) != Descending ? Kleiner : Groesser;
    }
    void Swap(int32 v1, int32 v2, Variant&) override {
        std::swap(all_[static_cast<std::size_t>(v1)], all_[static_cast<std::size_t>(v2)]);
    }

 private:
    uint64 key(int32 position) const { return all_[static_cast<std::size_t>(position)].key; }
    std::vector<Entry>& all_;
    uint64 pivot_ = 0;
};

std::unique_ptr<iSortHelper> helperOf(std::vector<Entry>& all, int64 order) {
    if (order == reversed) return std::make_unique<Helper<true>>(all);
    return std::make_unique<Helper<false>>(all);
}

// Sorts fresh entries each time; only `sort` is timed.
template <class Sort>
void timed(benchmark::State& state, Sort sort) {
    const auto fresh = entries(static_cast<Order>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        auto all = fresh;
        state.ResumeTiming();
        sort(all);
        benchmark::DoNotOptimize(all.data());
    }
    state.SetItemsProcessed(state.iterations() * kEntries);
}

void quickSort(benchmark::State& state) {
    timed(state, [&](std::vector<Entry>& all) {
        clsQuickSort().QuickSort(0, kEntries - 1, helperOf(all, state.range(0)).get());
    });
}

void stdSortVirtual(benchmark::State& state) {
    timed(state, [&](std::vector<Entry>& all) {
        const auto asked = helperOf(all, state.range(0));
        std::vector<int32> positions(all.size());
        std::iota(positions.begin(), positions.end(), 0);
        Variant none;
        std::sort(positions.begin(), positions.end(),
                  [&](int32 a, int32 b) { return asked->Compare(a, b, NewPivot, none) == Kleiner; });
        benchmark::DoNotOptimize(positions.data());
    });
}

void stdSortPlain(benchmark::State& state) {
    timed(state, [](std::vector<Entry>& all) {
        std::sort(all.begin(), all.end(), [](const Entry& a, const Entry& b) { return a.key < b.key; });
    });
}

void eachOrder(benchmark::internal::Benchmark* of) {
    of->ArgName("order")->Arg(shuffled)->Arg(sorted)->Arg(reversed)->Arg(fewKeys)->Unit(
        benchmark::kMillisecond);
}
BENCHMARK(quickSort)->Apply(eachOrder);
BENCHMARK(stdSortVirtual)->Apply(eachOrder);
BENCHMARK(stdSortPlain)->Apply(eachOrder);

}  // namespace
}  // namespace tsRtm

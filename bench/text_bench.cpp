// What a comparison and a sort key of a name cost, beside ICU's for the same order.
#include <benchmark/benchmark.h>
#include <unicode/ucol.h>

#include <algorithm>
#include <array>
#include <memory>
#include <random>
#include <vector>

#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/frame/text/TextOrder.hpp"

namespace tsRtm {
namespace {

// Names as a lookup meets them: many share their beginning, some differ in accents or in a sharp s alone.
const std::vector<Text>& names() {
    static const std::vector<Text> all = [] {
        constexpr std::array<TextView, 12> surnames = {u"Müller",  u"Muller",  u"Müller-Lüdenscheidt",
                                                       u"Schmidt", u"Schmitt", u"Schmidtke",
                                                       u"Strauß",  u"Strauss", u"Weiß",
                                                       u"Weise",   u"O'Brien", u"von der Aue"};
        constexpr std::array<TextView, 8> forenames = {u"Jürgen",     u"Juliane", u"René", u"Renate",
                                                       u"Karl-Heinz", u"KARL",    u"Zoë",  u" "};
        std::vector<Text> out;
        for (const auto surname : surnames)
            for (const auto forename : forenames) out.push_back(Text(surname).append(u" ").append(forename));
        std::shuffle(out.begin(), out.end(), std::mt19937(1));
        return out;
    }();
    return all;
}

template <class Make>
auto madeOfNames(Make make) {
    std::vector<decltype(make(TextView()))> out;
    for (const auto& name : names()) out.push_back(make(TextView(name)));
    return out;
}

const std::vector<Bytes>& ansiNames() {
    static const auto all = madeOfNames([](TextView name) { return toAnsi(name); });
    return all;
}

struct CloseCollator {
    void operator()(UCollator* collator) const noexcept { ::ucol_close(collator); }
};

// German, accents count, case does not.
std::unique_ptr<UCollator, CloseCollator> icuGerman() {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<UCollator, CloseCollator> out(::ucol_open("de", &status));
    ::ucol_setStrength(out.get(), UCOL_SECONDARY);
    return out;
}

// Calls with every name and one of its neighbours in turn.
template <class Compare>
void overPairs(benchmark::State& state, std::size_t count, Compare compare) {
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(compare(i, (i * 7 + 3) % count));
        i = i + 1 == count ? 0 : i + 1;
    }
}

void compareAnsiOfNames(benchmark::State& state) {
    const auto& all = ansiNames();
    overPairs(state, all.size(), [&](std::size_t a, std::size_t b) { return compareAnsi(all[a], all[b]); });
}
BENCHMARK(compareAnsiOfNames);

// As an index search does: the prepared key against the pieces of a record where they lie.
void searchKeyAgainstPieces(benchmark::State& state) {
    const auto& all = ansiNames();
    std::vector<AnsiSearchKey> keys(all.begin(), all.end());
    std::vector<std::array<BytesView, 2>> records;
    for (const auto& name : all) {
        const auto blank = name.find(' ');
        records.push_back({BytesView(name).substr(0, blank), BytesView(name).substr(blank + 1)});
    }
    overPairs(state, all.size(), [&](std::size_t a, std::size_t b) { return keys[a].compare(records[b]); });
}
BENCHMARK(searchKeyAgainstPieces);

void makeSearchKey(benchmark::State& state) {
    const auto& all = ansiNames();
    overPairs(state, all.size(), [&](std::size_t a, std::size_t) { return AnsiSearchKey(all[a]); });
}
BENCHMARK(makeSearchKey);

void compareIcuUtf8(benchmark::State& state) {
    const auto collator = icuGerman();
    const auto all = madeOfNames([](TextView name) { return toUtf8(name); });
    overPairs(state, all.size(), [&](std::size_t a, std::size_t b) {
        UErrorCode status = U_ZERO_ERROR;
        return ::ucol_strcollUTF8(collator.get(), all[a].data(), static_cast<int32>(all[a].size()),
                                  all[b].data(), static_cast<int32>(all[b].size()), &status);
    });
}
BENCHMARK(compareIcuUtf8);

void compareIcuUtf16(benchmark::State& state) {
    const auto collator = icuGerman();
    const auto& all = names();
    overPairs(state, all.size(), [&](std::size_t a, std::size_t b) {
        return ::ucol_strcoll(collator.get(), all[a].data(), static_cast<int32>(all[a].size()), all[b].data(),
                              static_cast<int32>(all[b].size()));
    });
}
BENCHMARK(compareIcuUtf16);

void sortKeyAnsi(benchmark::State& state) {
    const auto& all = ansiNames();
    Bytes key;
    overPairs(state, all.size(), [&](std::size_t a, std::size_t) {
        key.clear();
        appendSortKeyAnsi(key, all[a]);
        return key.data();
    });
}
BENCHMARK(sortKeyAnsi);

void sortKeyIcu(benchmark::State& state) {
    const auto collator = icuGerman();
    const auto& all = names();
    std::array<uint8, 256> key{};
    overPairs(state, all.size(), [&](std::size_t a, std::size_t) {
        return ::ucol_getSortKey(collator.get(), all[a].data(), static_cast<int32>(all[a].size()), key.data(),
                                 static_cast<int32>(key.size()));
    });
}
BENCHMARK(sortKeyIcu);

}  // namespace
}  // namespace tsRtm

// Holidays and working days: fifty years of dates of one state, day by day, beside KHolidays where it is
// installed.
#include <benchmark/benchmark.h>

#ifdef TSRTM_KHOLIDAYS
#include <KHolidays/HolidayRegion>
#include <QDate>
#endif

#include "tsRtm/tsRtm.hpp"

namespace tsRtm {
namespace {

constexpr int32 kFirstYear = 1990, kLastYear = 2039;

void start() {
    static const clsRtm one;
    clsCommon().Bundesland(NRW);
}

// TTMMJJJJ, in order.
const std::vector<Text>& dates() {
    static const std::vector<Text> all = [] {
        start();
        const clsDatum calendar;
        std::vector<Text> out;
        const int32 end = calendar.JulianDay(calendar.DtoC(31, 12, kLastYear));
        for (int32 day = calendar.JulianDay(calendar.DtoC(1, 1, kFirstYear)); day <= end; ++day)
            out.push_back(calendar.KalenderDay(day));
        return out;
    }();
    return all;
}

template <class Ask>
void overDates(benchmark::State& state, Ask ask) {
    const auto& all = dates();
    int64 found = 0;
    for (auto _ : state) {
        found = 0;
        for (const auto& date : all) found += ask(date) ? 1 : 0;
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64>(all.size()));
    state.counters["found"] = static_cast<float64>(found);
}

void istFeierTag(benchmark::State& state) {
    clsFeierTage days;
    overDates(state, [&](const Text& date) { return days.IstFeierTag(date); });
}
BENCHMARK(istFeierTag);

void nextWorkday(benchmark::State& state) {
    clsFeierTage days;
    overDates(state, [&](const Text& date) { return !days.NextWorkday(date, 1).empty(); });
}
BENCHMARK(nextWorkday);

// A date of another year each time: the table of the year is built anew.
void istFeierTagInTurns(benchmark::State& state) {
    start();
    clsFeierTage days;
    bool turn = false;
    for (auto _ : state) {
        turn = !turn;
        benchmark::DoNotOptimize(days.IstFeierTag(turn ? u"25122025" : u"25122026"));
    }
}
BENCHMARK(istFeierTagInTurns);

#ifdef TSRTM_KHOLIDAYS

const std::vector<QDate>& qtDates() {
    static const std::vector<QDate> all = [] {
        std::vector<QDate> out;
        for (QDate day(kFirstYear, 1, 1); day <= QDate(kLastYear, 12, 31); day = day.addDays(1))
            out.push_back(day);
        return out;
    }();
    return all;
}

// The days of a date, of which one is a day off: its one question by date.
void istFeierTagByKHolidays(benchmark::State& state) {
    const KHolidays::HolidayRegion region(QStringLiteral("de-nw_de"));
    const auto& all = qtDates();
    int64 found = 0;
    for (auto _ : state) {
        found = 0;
        for (const auto& date : all)
            for (const auto& holiday : region.rawHolidaysWithAstroSeasons(date))
                if (holiday.dayType() == KHolidays::Holiday::NonWorkday) {
                    ++found;
                    break;
                }
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64>(all.size()));
    state.counters["found"] = static_cast<float64>(found);
}
BENCHMARK(istFeierTagByKHolidays)->Iterations(1);

#endif

}  // namespace
}  // namespace tsRtm

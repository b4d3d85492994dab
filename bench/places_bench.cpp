// Banks, places and appointments: looking them up, beside ktoblzcheck's table and libical's rules where these
// are installed. Measures in a temporary folder.
#include <benchmark/benchmark.h>

#ifdef TSRTM_KTOBLZCHECK
#include <ktoblzcheck.h>
#endif
#ifdef TSRTM_LIBICAL
#include <libical/ical.h>
#endif

#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <thread>

#include "tsRtm/appointments/ical/Recurrence.hpp"
#include "tsRtm/appointments/keys/DueRule.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/tsRtm.hpp"

namespace tsRtm {
namespace {

constexpr int32 kBanks = 15000;
constexpr int32 kAppointments = 100000;

// A folder with all databases, gone at the end of the program.
struct Folder {
    Folder() : path(std::filesystem::temp_directory_path() / "tsrtm-places-bench") {
        std::filesystem::remove_all(path);
        std::filesystem::create_directories(path);
        rtmMain::state().runtimeDataDir = fromUtf8(path.string());
    }
    ~Folder() { std::filesystem::remove_all(path); }
    Text name(TextView entry) const { return fromUtf8((path / toUtf8(entry)).string()); }
    std::filesystem::path path;
    clsRtm rtm;
};
Folder& folder() {
    static Folder one;
    return one;
}

uint32 drawn(uint32& seed) { return seed = seed * 1664525 + 1013904223; }

// --- Banks

uint32 bankCode(int32 n) { return 10000000 + static_cast<uint32>(n) * 4657; }

std::shared_ptr<clsBanken> banks() {
    static const std::shared_ptr<clsBanken> one = [] {
        bankRegister::create(folder().rtm, folder().name(u"Banken"));
        const auto db = folder().rtm.OpenTSDB(folder().name(u"Banken"));
        db->Replace([](NewRecords& records) {
            for (int32 n = 0; n < kBanks; ++n) {
                records.set(fBANKEN_BLZ, toText(bankCode(n)));
                records.set(fBANKEN_NAME, u"Sparkasse der Stadt " + toText(n));
                records.set(fBANKEN_BIC, u"ABCDDE" + toText(10000 + n));
                if (!records.add()) return false;
            }
            return true;
        });
        return std::make_shared<clsBanken>();
    }();
    return one;
}

// Asks until the register has been seen unchanged for a second, when its names are in memory.
template <class Ask>
void askForAWhile(Ask ask) {
    for (int32 look = 0; look < 4; ++look) {
        ask();
        std::this_thread::sleep_for(std::chrono::milliseconds(550));
    }
}

void findBank(benchmark::State& state) {
    const auto register_ = banks();
    std::vector<Text> codes;
    uint32 seed = 1;
    for (int32 i = 0; i < 1000; ++i)
        codes.push_back(toText(bankCode(static_cast<int32>(drawn(seed) >> 8) % kBanks)));
    std::size_t found = 0;
    askForAWhile([&] { register_->Name(codes.front()); });
    for (auto _ : state)
        for (const auto& code : codes) found += register_->Name(code).size();
    state.SetItemsProcessed(state.iterations() * 1000);
    if (found == 0) state.SkipWithError("no bank found");
}
BENCHMARK(findBank);

// Through the index, as a BIC is, and a code whose bank has just been changed.
void findBankByBic(benchmark::State& state) {
    const auto register_ = banks();
    std::vector<Text> codes;
    uint32 seed = 1;
    for (int32 i = 0; i < 1000; ++i)
        codes.push_back(u"ABCDDE" + toText(10000 + static_cast<int32>(drawn(seed) >> 8) % kBanks));
    std::size_t found = 0;
    for (auto _ : state)
        for (const auto& code : codes) found += register_->Name(code).size();
    state.SetItemsProcessed(state.iterations() * 1000);
    if (found == 0) state.SkipWithError("no bank found");
}
BENCHMARK(findBankByBic);

#ifdef TSRTM_KTOBLZCHECK
void findBankByKtoblzcheck(benchmark::State& state) {
    const auto file = folder().path / "bankdata.txt";
    {
        std::ofstream out(file);
        for (int32 n = 0; n < kBanks; ++n)
            out << bankCode(n) << "\t09\tSparkasse der Stadt " << n << "\tBerlin\n";
    }
    const AccountNumberCheck peer(file.string());
    std::vector<std::string> codes;
    uint32 seed = 1;
    for (int32 i = 0; i < 1000; ++i)
        codes.push_back(std::to_string(bankCode(static_cast<int32>(drawn(seed) >> 8) % kBanks)));
    std::size_t found = 0;
    for (auto _ : state)
        for (const auto& code : codes) {
            const std::string name = peer.findBank(code).bankName;  // as ours, a text of one's own
            found += name.size();
        }
    state.SetItemsProcessed(state.iterations() * 1000);
    if (found == 0) state.SkipWithError("no bank found");
}
BENCHMARK(findBankByKtoblzcheck);
#endif

void checkWithRegister(benchmark::State& state) {
    const auto register_ = banks();
    std::vector<Text> ibans;
    for (int32 i = 0; i < 1000; ++i)
        ibans.push_back(
            clsBanken::IBAN(toText(bankCode(i * 13 % kBanks)), toText(1000000 + i * 7919), false));
    clsValidBanking checker;
    checker.Options(btIBAN);
    askForAWhile([&] { checker.Check(nullptr, ibans.front()); });
    int64 right = 0;
    for (auto _ : state) {
        right = 0;
        for (const auto& iban : ibans) right += checker.Check(nullptr, iban) == validOK ? 1 : 0;
    }
    state.SetItemsProcessed(state.iterations() * 1000);
    state.counters["right"] = static_cast<float64>(right);
}
BENCHMARK(checkWithRegister);

// --- Places

void placeOfCode(benchmark::State& state, bool staysOpen) {
    static const bool made = [] {
        placeRegister::createPlaces(folder().rtm, folder().name(u"Orte"));
        std::vector<PlaceRow> rows;
        for (int32 n = 0; n < 8000; ++n)
            rows.push_back({u"Ort" + toText(n), u"05" + toText(100 + n % 400), toText(10000 + n * 11), u""});
        return importPlaces(*folder().rtm.OpenTSDB(folder().name(u"Orte")), rows).error == 0;
    }();
    clsPlzOrt places;
    places.Offenhalten(staysOpen);
    Text code, place, key;
    int32 n = 0;
    int64 found = 0;
    for (auto _ : state) {
        n = (n + 4657) % 8000;
        found += places.PLZOrt(toText(10000 + n * 11), u"", code, place, key) ? 1 : 0;
    }
    state.SetItemsProcessed(state.iterations());
    if (!made || found < state.iterations()) state.SkipWithError("not found");
}
BENCHMARK_CAPTURE(placeOfCode, openedAndClosed, false);
BENCHMARK_CAPTURE(placeOfCode, keptOpen, true);

// --- Appointments

// Of a thousand appointments ten are series.
struct Row {
    Text key, from;
};
Row appointment(int32 n, uint32& seed) {
    static const clsDatum dates;
    const int32 start = dates.JulianDay(u"01012020") + static_cast<int32>(drawn(seed) >> 8) % 3650;
    if (n % 100 != 0) return {dates.DateSort(dates.KalenderDay(start)), u""};
    const int32 count = 1 + n / 100 % 20;
    switch (n / 100 % 5) {
        case 0:
            return {u"+++++MO" + (count < 5 ? toText(count) : Text(u"+")), u""};
        case 1:
            return {u"++++++" + toText(count + 10), u""};
        case 2:
            return {u"++++12" + toText(count + 10), u""};
        case 3:
            return {u"*T0000" + toText(count + 10), dates.KalenderDay(start)};
        default:
            return {u"*M0000" + toText(count + 10), dates.KalenderDay(start)};
    }
}

std::shared_ptr<clsTerminkalender> calendar() {
    static const std::shared_ptr<clsTerminkalender> one = [] {
        auto made = std::make_shared<clsTerminkalender>();
        made->Init(folder().name(u"Termine"));
        uint32 seed = 7;
        made->DB()->Replace([&](NewRecords& records) {
            for (int32 n = 0; n < kAppointments; ++n) {
                const Row row = appointment(n, seed);
                records.set(2, row.key);
                records.set(4, toText(10 + n % 10) + u":00");
                records.set(6, u"Termin " + toText(n));
                records.set(8, row.from);
                if (!records.add()) return false;
            }
            return true;
        });
        return made;
    }();
    return one;
}

void termineOfADay(benchmark::State& state, bool cached) {
    const auto all = calendar();
    all->Cachable(cached);
    const clsDatum dates;
    int32 day = dates.JulianDay(u"01012024");
    int64 found = 0;
    for (auto _ : state) {
        found += all->Termine(dates.KalenderDay(day))->Count();
        if (++day > dates.JulianDay(u"31122024")) day -= 366;
    }
    state.counters["each day"] = static_cast<float64>(found) / static_cast<float64>(state.iterations());
}
BENCHMARK_CAPTURE(termineOfADay, cached, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(termineOfADay, uncached, false)->Unit(benchmark::kMillisecond);

std::vector<Row> series() {
    std::vector<Row> rows;
    uint32 seed = 7;
    for (int32 n = 0; n < kAppointments; ++n)
        if (Row row = appointment(n, seed); n % 100 == 0) rows.push_back(std::move(row));
    return rows;
}

// All days of 2024 on which a thousand series are due.
void expandAYear(benchmark::State& state) {
    const auto rows = series();
    const int32 first = clsDatum().JulianDay(u"01012024");
    int64 due = 0;
    for (auto _ : state) {
        due = 0;
        const auto days = appointments::daysBetween(first, first + 365);
        for (const auto& row : rows) {
            const appointments::DueRule rule(row.key, row.from, {});
            for (const auto& day : days) due += rule.on(day) ? 1 : 0;
        }
    }
    state.counters["due"] = static_cast<float64>(due);
}
BENCHMARK(expandAYear)->Unit(benchmark::kMillisecond);

#ifdef TSRTM_LIBICAL
// The same rules, begun in 2024, so that neither side walks through years before.
void expandAYearByLibical(benchmark::State& state) {
    const int32 first = clsDatum().JulianDay(u"01012024");
    std::vector<std::pair<std::string, std::string>> rules;
    for (const auto& row : series())
        if (auto rule = appointments::recurrenceOf(row.key, row.from, {}, first, false))
            rules.emplace_back(rule->rule, appointments::icalDate(rule->first));
    const auto begin = icaltime_from_string("20240101"), end = icaltime_from_string("20241231");
    int64 due = 0;
    for (auto _ : state) {
        due = 0;
        for (const auto& [text, start] : rules) {
            auto* iterator = icalrecur_iterator_new(icalrecurrencetype_from_string(text.c_str()),
                                                    icaltime_from_string(start.c_str()));
            for (auto next = icalrecur_iterator_next(iterator);
                 !icaltime_is_null_time(next) && icaltime_compare(next, end) <= 0;
                 next = icalrecur_iterator_next(iterator))
                due += icaltime_compare(next, begin) >= 0 ? 1 : 0;
            icalrecur_iterator_free(iterator);
        }
    }
    state.counters["due"] = static_cast<float64>(due);
}
BENCHMARK(expandAYearByLibical)->Unit(benchmark::kMillisecond);
#endif

}  // namespace
}  // namespace tsRtm

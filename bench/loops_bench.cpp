// Loops over records: how many a second a handler gets, by an index and in physical order, from the database
// and from a cursor; and what a range of keys costs as a selection.
//
// A million records of 60 characters with a key of a name and a number, in a temporary folder.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <random>

#include "tsRtm/tsRtm.hpp"

namespace tsRtm {
namespace {

constexpr int32 kRecords = 1'000'000;
enum Field : int32 { lNAME = 1, lWERT = 2 };

// One database for all runs; gone at the end of the program.
class Store {
 public:
    Store() : folder_(std::filesystem::temp_directory_path() / "tsrtm_loops_bench") {
        std::filesystem::remove_all(folder_);
        TSIOArray fields;
        for (const auto& [name, typ, length] :
             {std::tuple{u"NAME", tsAlphanumerisch, 30}, {u"WERT", tsNumerisch, 12}, {u"REST", tsText, 18}}) {
            auto field = std::make_shared<TSIO>();
            field->Titel(name);
            field->Typ(typ);
            field->Laenge(length);
            fields.push_back(field);
        }
        const Text path = fromUtf8((folder_ / "Loops").string());
        if (!rtm_.DB_Create(path, fields, kRecords, u"001000000")) std::abort();
        db = rtm_.OpenTSDB(path, false, true);
        if (!db) std::abort();
        std::mt19937 random(7);
        BulkLoader loader(*db);
        for (int32 n = 1; n <= kRecords; ++n) {
            loader.set(lNAME, u"Name" + toText(random() % 100'000));
            loader.set(lWERT, toText(n));
            if (!loader.add()) std::abort();
        }
        if (!loader.finish()) std::abort();
        db = nullptr;
        db = rtm_.OpenTSDB(path);
        if (!db) std::abort();
    }
    ~Store() {
        db.reset();
        std::filesystem::remove_all(folder_);
    }
    std::shared_ptr<clsTSDB> db;

 private:
    std::filesystem::path folder_;
    clsRtm rtm_;
};

clsTSDB& database() {
    static Store store;
    return *store.db;
}

void Database(benchmark::State& state) {
    auto& db = database();
    const auto field = static_cast<int32>(state.range(0));
    std::size_t length = 0;
    const auto heard =
        db.Action.connect([&](int32, bool&, Variant&) { length += db.FieldView(lWERT).size(); });
    Variant none;
    for (auto _ : state) db.ActionLoop(field, {}, {}, false, none);
    benchmark::DoNotOptimize(length);
    state.SetItemsProcessed(state.iterations() * kRecords);
}
BENCHMARK(Database)->ArgName("field")->Arg(0)->Arg(lNAME)->Unit(benchmark::kMillisecond);

void Cursor(benchmark::State& state) {
    const auto cursor = database().Records()->Index(static_cast<int32>(state.range(0)));
    std::size_t length = 0;
    const auto heard =
        cursor->Action.connect([&](auto& record, Variant&) { length += record->Fields(lWERT).size(); });
    Variant none;
    for (auto _ : state) cursor->ActionLoop({}, {}, false, none);
    benchmark::DoNotOptimize(length);
    state.SetItemsProcessed(state.iterations() * kRecords);
}
BENCHMARK(Cursor)->ArgName("field")->Arg(0)->Arg(lNAME)->Unit(benchmark::kMillisecond);

void Range(benchmark::State& state) {
    const auto records = database().Records();
    int64 found = 0;
    for (auto _ : state) found += records->GetRange(lNAME, u"Name5", u"Name5\u017D")->Count();
    state.SetItemsProcessed(found);
}
BENCHMARK(Range)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tsRtm

// Checks of input and payment files: CheckIBAN beside ktoblzcheck where it is installed, what a check of the
// worst kind takes, and a payment file of a hundred thousand transfers.
#include <benchmark/benchmark.h>

#ifdef TSRTM_KTOBLZCHECK
#include <iban.h>
#endif

#include <ctime>
#include <filesystem>

#include "tsRtm/tsRtm.hpp"

namespace tsRtm {
namespace {

constexpr int32 kTransfers = 100000;

void start() { static const clsRtm one; }

// A thousand right IBANs, mostly German.
const std::vector<Text>& ibans() {
    static const std::vector<Text> all = [] {
        start();
        std::vector<Text> out;
        bool onlyDigits = false;
        for (int32 i = 0; i < 1000; ++i) {
            const Text number = toText(10'0000'0000 + int64{i} * 7654321);
            Text iban = i % 10 == 0   ? u"FR0020041010050" + number.substr(0, 6) + u"M02606"
                        : i % 10 == 1 ? u"AT0019043" + number + u"3"
                                      : u"DE0037040044" + number;
            const Text digits = toText(clsValidBanking::PZIBAN(iban, onlyDigits) + 100);
            out.push_back(iban.replace(2, 2, digits.substr(1)));
        }
        return out;
    }();
    return all;
}

void checkIBAN(benchmark::State& state) {
    clsValidBanking banking;
    const auto& all = ibans();
    int64 right = 0;
    for (auto _ : state) {
        right = 0;
        for (const auto& iban : all) right += banking.CheckIBAN(iban) ? 1 : 0;
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64>(all.size()));
    state.counters["right"] = static_cast<float64>(right);
}
BENCHMARK(checkIBAN);

#ifdef TSRTM_KTOBLZCHECK
void checkIBANByKtoblzcheck(benchmark::State& state) {
    const IbanCheck peer;
    std::vector<Iban> all;
    for (const auto& iban : ibans()) all.emplace_back(toUtf8(iban), false);
    int64 right = 0;
    for (auto _ : state) {
        right = 0;
        for (const auto& iban : all) right += peer.check(iban) == IbanCheck::OK ? 1 : 0;
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64>(all.size()));
    state.counters["right"] = static_cast<float64>(right);
}
BENCHMARK(checkIBANByKtoblzcheck);
#endif

// --- What takes longest

void pattern(benchmark::State& state, TextView expression, std::size_t length) {
    start();
    clsValidLike like;
    like.Pattern(expression);
    const Text text(length, u'a');
    for (auto _ : state) benchmark::DoNotOptimize(like.Check(nullptr, text));
}
BENCHMARK_CAPTURE(pattern, nestedRuns, u"^(a+)+b$", 4096);
BENCHMARK_CAPTURE(pattern, givenUp, u"^(a+)+\\1b$", 4096);
BENCHMARK_CAPTURE(pattern, aMegabyte, u"^(a+)+b$", std::size_t{1} << 20);

void wildcards(benchmark::State& state) {
    start();
    clsValidLike like;
    like.Options(loLike);
    like.Pattern(u"*" + Text(1000, u'a') + u"b");
    const Text text(std::size_t{1} << 20, u'a');
    for (auto _ : state) benchmark::DoNotOptimize(like.Check(nullptr, text));
}
BENCHMARK(wildcards);

void addresses(benchmark::State& state) {
    start();
    clsValidEAdr address;
    address.Options(eaEMailOrEGVP);
    const Text text(4096, u'a');
    for (auto _ : state) benchmark::DoNotOptimize(address.Check(nullptr, text));
}
BENCHMARK(addresses);

// Every checker in every mode on the texts that take longest: the greatest processor time of one check.
void anyText(benchmark::State& state) {
    start();
    std::vector<std::unique_ptr<iValidChecker>> all;
    const auto add = [&](auto checker, int32 mode) {
        checker->Options(mode);
        all.push_back(std::move(checker));
    };
    add(std::make_unique<clsValidValue>(), voRange);
    for (int32 mode = 0; mode < 8; ++mode) {
        add(std::make_unique<clsValidBanking>(), mode);
        add(std::make_unique<clsValidDate>(), mode);
        add(std::make_unique<clsValidEAdr>(), mode);
    }
    for (const TextView expression : {u"^(a+)+b$", u"^((.*)*)*\\2x", u"(?=(.*,){12}P)", u"*a*a*a*a*b"})
        for (const int32 mode : {int32{loRegExp}, int32{loIgnoreCase}, int32{loLike}}) {
            auto like = std::make_unique<clsValidLike>();
            like->Pattern(expression);
            add(std::move(like), mode);
        }
    constexpr std::size_t kMegabyte = std::size_t{1} << 20;
    const Text texts[] = {Text(kMegabyte, u'9'), Text(kMegabyte, u'a'), Text(kMegabyte, u'@'),
                          Text(kMegabyte, u' '), Text(kMegabyte, u'Ж'), Text(4096, u'a') + u"@"};
    float64 worst = 0;
    for (auto _ : state)
        for (const auto& text : texts)
            for (const auto& checker : all) {
                const std::clock_t begin = std::clock();
                benchmark::DoNotOptimize(checker->Check(nullptr, text));
                worst = std::max(worst, static_cast<float64>(std::clock() - begin) * 1000 / CLOCKS_PER_SEC);
            }
    state.counters["worst ms"] = worst;
}
BENCHMARK(anyText)->Unit(benchmark::kMillisecond)->Iterations(3);

// --- Payments

void fill(DtADatei& file) {
    auto& header = file.Header();
    header.BLZ(u"37040044");
    header.Kontonummer(u"532013000");
    header.Name1(u"Gerichtsvollzieher Müller");
    for (int32 i = 0; i < kTransfers; ++i)
        file.Add(file.Create(u"BNPAFRPPXXX", u"FR1420041010050500013M02606", 10 + i % 9000 + 0.5,
                             u"Ada Schmidt", u"", u"Rue de la Gare 12", u"75000 Paris",
                             u"Aktenzeichen " + toText(i)));
}

// From the first order to the file on the disk.
void paymentFile(benchmark::State& state) {
    start();
    const auto folder = std::filesystem::temp_directory_path() / "tsrtm-checks-bench";
    std::filesystem::create_directories(folder);
    for (auto _ : state) {
        DtADatei file;
        file.Pfad(fromUtf8(folder.string()));
        fill(file);
        const Text report = file.Generate();
        if (!report.empty() || file.Count() != kTransfers) state.SkipWithError(toUtf8(report).c_str());
    }
    std::filesystem::remove_all(folder);
    state.SetItemsProcessed(state.iterations() * kTransfers);
}
BENCHMARK(paymentFile)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tsRtm

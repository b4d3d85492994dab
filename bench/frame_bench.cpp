// What the frame's everyday operations cost beside the nearest plain library call: numbers and text,
// messages, whole files in each encoding, and the start of the library.
#include <benchmark/benchmark.h>
#include <iconv.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <unordered_map>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/Lifetime.hpp"
#include "tsRtm/tsRtm.hpp"

namespace tsRtm {
namespace {

clsRtm& rtm() {
    static clsRtm one;
    return one;
}

// --- Numbers ---

constexpr std::array<TextView, 6> kTyped = {u"12,50", u"1.234.567,89", u"-3", u"0,07", u"99999,995", u" 42 "};
constexpr std::array<const char*, 6> kPlain = {"12.50", "1234567.89", "-3", "0.07", "99999.995", " 42 "};
constexpr std::array<float64, 6> kValues = {12.5, 1234567.89, -3, 0.07, 99999.995, 42};

template <class Call>
void inTurn(benchmark::State& state, Call call) {
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(call(i));
        i = i + 1 == kTyped.size() ? 0 : i + 1;
    }
}

void tsVal(benchmark::State& state) {
    inTurn(state, [&](std::size_t i) { return rtm().TSVal(kTyped[i]); });
}
BENCHMARK(tsVal);

void tsValByStrtod(benchmark::State& state) {
    inTurn(state, [&](std::size_t i) { return std::strtod(kPlain[i], nullptr); });
}
BENCHMARK(tsValByStrtod);

void tsStr(benchmark::State& state) {
    inTurn(state, [&](std::size_t i) { return rtm().TSStr(kValues[i], 2, true); });
}
BENCHMARK(tsStr);

void tsStrBySnprintf(benchmark::State& state) {
    inTurn(state, [&](std::size_t i) {
        std::array<char, 64> digits{};
        const int count = std::snprintf(digits.data(), digits.size(), "%.2f", kValues[i]);
        return Text(digits.data(), digits.data() + count);
    });
}
BENCHMARK(tsStrBySnprintf);

// --- Messages ---

const std::vector<int32>& messageNumbers() {
    static const std::vector<int32> all = [] {
        std::vector<int32> out;
        for (int32 number = 0; number < 512; ++number)
            if (!rtm().RtmMsg(number).empty()) out.push_back(number);
        return out;
    }();
    return all;
}

template <class Call>
void overMessages(benchmark::State& state, Call call) {
    const auto& numbers = messageNumbers();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(call(numbers[i]));
        i = i + 1 == numbers.size() ? 0 : i + 1;
    }
}

void rtmMsg(benchmark::State& state) {
    overMessages(state, [](int32 number) { return rtm().RtmMsg(number); });
}
BENCHMARK(rtmMsg);

// The text from a hash table, searched for the marks of the places in it.
void rtmMsgByHashTable(benchmark::State& state) {
    std::unordered_map<int32, Text> texts;
    for (const int32 number : messageNumbers()) texts.emplace(number, rtm().RtmMsg(number));
    overMessages(state, [&](int32 number) {
        Text text = texts.at(number);
        benchmark::DoNotOptimize(text.find_first_of(u"#«"));
        return text;
    });
}
BENCHMARK(rtmMsgByHashTable);

// --- Whole files ---

struct Encoding {
    int32 number;
    const char* iconvName;
    std::string_view mark;
};
constexpr std::array<Encoding, 5> kEncodings = {{{ANSI1252, "CP1252", ""},
                                                 {CP850, "CP850", ""},
                                                 {UTF8, "UTF-8", "\xEF\xBB\xBF"},
                                                 {UTF16LE, "UTF-16LE", "\xFF\xFE"},
                                                 {UTF16BE, "UTF-16BE", "\xFE\xFF"}}};
constexpr std::size_t kFileBytes = 100'000'000;

// A file of German lines, removed at the end of the run.
class BigFile {
 public:
    explicit BigFile(const Encoding& encoding)
        : path_(std::filesystem::temp_directory_path() / (std::string("tsRtm-") + encoding.iconvName)) {
        const Text line = u"Müller-Lüdenscheidt, Jürgen; Weiße Straße 12; 50667 Köln; 1234,50\r\n";
        int32 form = encoding.number;
        const Text name = path_.u16string();
        Text block;
        while (block.size() < 1'000'000) block += line;
        std::filesystem::remove(path_);
        Date changed;
        rtm().PutContentAPI(name, block, form, false, changed);
        std::string bytes;
        std::ifstream in(path_, std::ios::binary);
        in.seekg(static_cast<std::streamoff>(encoding.mark.size()));
        bytes.assign(std::istreambuf_iterator<char>(in), {});
        std::ofstream out(path_, std::ios::binary | std::ios::app);
        for (std::size_t size = bytes.size(); size + bytes.size() <= kFileBytes; size += bytes.size())
            out << bytes;
    }
    ~BigFile() { std::filesystem::remove(path_); }
    BigFile(const BigFile&) = delete;
    BigFile& operator=(const BigFile&) = delete;

    const std::filesystem::path& path() const noexcept { return path_; }

 private:
    std::filesystem::path path_;
};

void getContent(benchmark::State& state) {
    const auto& encoding = kEncodings[static_cast<std::size_t>(state.range(0))];
    const BigFile file(encoding);
    state.SetLabel(encoding.iconvName);
    for (auto _ : state) {
        int32 form = encoding.number;
        Date changed;
        benchmark::DoNotOptimize(rtm().GetContentAPI(file.path().u16string(), form, changed));
    }
}
BENCHMARK(getContent)->DenseRange(0, kEncodings.size() - 1)->Unit(benchmark::kMillisecond);

void getContentByIconv(benchmark::State& state) {
    const auto& encoding = kEncodings[static_cast<std::size_t>(state.range(0))];
    const BigFile file(encoding);
    state.SetLabel(encoding.iconvName);
    for (auto _ : state) {
        std::string bytes(std::filesystem::file_size(file.path()), '\0');
        std::ifstream(file.path(), std::ios::binary)
            .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        Text text(bytes.size(), u'\0');
        const iconv_t conversion = ::iconv_open("UTF-16LE", encoding.iconvName);
        char* from = bytes.data() + encoding.mark.size();
        std::size_t left = bytes.size() - encoding.mark.size();
        char* to = reinterpret_cast<char*>(text.data());
        std::size_t room = text.size() * sizeof(char16_t);
        ::iconv(conversion, &from, &left, &to, &room);
        ::iconv_close(conversion);
        text.resize(text.size() - room / sizeof(char16_t));
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(getContentByIconv)->DenseRange(0, kEncodings.size() - 1)->Unit(benchmark::kMillisecond);

// --- Start ---

void startOfTheLibrary(benchmark::State& state) {
    rtm();
    for (auto _ : state) rtmMain::TEST_restart(rtmMain::defaultGround());
}
BENCHMARK(startOfTheLibrary)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tsRtm

#include "bench/support/Rows.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numeric>

namespace tsRtm::bench {
namespace {

constexpr std::size_t kBlock = std::size_t{256} * 1024;
constexpr std::size_t kBytesOfRow = 100;
constexpr std::size_t kBytesOfKey = 20;

}  // namespace

std::uint64_t Random::next() {
    state_ += 0x9E3779B97F4A7C15u;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
    return mixed ^ (mixed >> 31);
}

void RowReader::Closer::operator()(std::FILE* file) const noexcept { std::fclose(file); }

RowReader::RowReader(const std::string& path) : file_(std::fopen(path.c_str(), "rbe")), room_(kBlock) {
    std::string_view header;
    if (!file_ || !line(header)) die("no rows in " + path);
}

bool RowReader::line(std::string_view& out) {
    for (;;) {
        const char* from = room_.data() + begin_;
        if (const void* at = std::memchr(from, '\n', end_ - begin_)) {
            out = {from, static_cast<std::size_t>(static_cast<const char*>(at) - from)};
            begin_ += out.size() + 1;
            return true;
        }
        std::memmove(room_.data(), from, end_ - begin_);
        end_ -= begin_;
        begin_ = 0;
        const std::size_t got = std::fread(room_.data() + end_, 1, room_.size() - end_, file_.get());
        if (got == 0) return false;
        end_ += got;
    }
}

bool RowReader::next(Row& row) {
    std::string_view rest;
    if (!line(rest)) return false;
    for (std::size_t i = 0; i < kRowFields; ++i) {
        const std::size_t length = rest.find(';');
        if ((length == std::string_view::npos) != (i + 1 == kRowFields)) die("a row without eight fields");
        row[i] = rest.substr(0, length);
        if (i + 1 < kRowFields) rest.remove_prefix(length + 1);
    }
    return true;
}

void TextPool::reserve(std::size_t texts, std::size_t bytes) {
    ends_.reserve(texts);
    bytes_.reserve(bytes);
}

void TextPool::add(std::string_view text) {
    bytes_.append(text);
    ends_.push_back(static_cast<std::uint32_t>(bytes_.size()));
}

RowTable::RowTable(const std::string& csv, long rows) {
    const auto count = static_cast<std::size_t>(rows);
    pool_.reserve(count * kRowFields, count * kBytesOfRow);
    RowReader reader(csv);
    Row row;
    for (std::size_t i = 0; i < count; ++i) {
        if (!reader.next(row)) die("too few rows in " + csv);
        for (const auto& field : row) pool_.add(field);
    }
}

NameKeys::NameKeys(const std::string& csv, const std::vector<std::uint32_t>& rows, bool capitals) {
    // The names of one pass over the file, by their first use; the draws then pick from them.
    std::vector<std::uint32_t> order(rows.size());
    std::iota(order.begin(), order.end(), 0u);
    std::sort(order.begin(), order.end(), [&](auto a, auto b) { return rows[a] < rows[b]; });
    TextPool inFile;
    inFile.reserve(rows.size() * 2, rows.size() * kBytesOfKey);
    std::vector<std::uint32_t> place(rows.size());
    RowReader reader(csv);
    Row row;
    std::int64_t at = -1;
    for (const auto draw : order) {
        for (; at < static_cast<std::int64_t>(rows[draw]); ++at)
            if (!reader.next(row)) die("too few rows in " + csv);
        place[draw] = static_cast<std::uint32_t>(inFile.size());
        inFile.add(row[fName]);
        inFile.add(row[fVorname]);
    }
    pool_.reserve(rows.size() * 2, rows.size() * kBytesOfKey);
    std::string text;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        for (const std::size_t part : {std::size_t{0}, std::size_t{1}}) {
            text = inFile[place[i] + part];
            if (capitals && i % 2 == 1) toCapitals(text);
            pool_.add(text);
        }
    }
}

std::vector<std::uint32_t> drawRows(Seed seed, long n, std::size_t count) {
    Random random(seed);
    std::vector<std::uint32_t> out(count);
    for (auto& row : out) row = random.below(static_cast<std::uint32_t>(n));
    return out;
}

NameKeys lookupKeys(const Options& options) {
    return NameKeys(options.csv, drawRows(seedLookup, options.n, kLookups), true);
}

NameKeys rankKeys(const Options& options) {
    return NameKeys(options.csv, drawRows(seedRankOf, options.n, kRanks));
}

bool isDoomed(std::uint32_t record) {
    constexpr std::uint64_t kApart = 0xD1B5'4A32'D192'ED03;
    return Random(seedDelete + record * kApart).below(10) < 3;
}

Updates drawUpdates(const Options& options) {
    // Record and row take turns in one sequence.
    const auto drawn = drawRows(seedUpdate, options.n, 2 * kUpdates);
    std::vector<std::uint32_t> records, rows;
    for (std::size_t i = 0; i < drawn.size(); i += 2) {
        records.push_back(drawn[i] + 1);
        rows.push_back(drawn[i + 1]);
    }
    return {std::move(records), NameKeys(options.csv, rows)};
}

void toCapitals(std::string& utf8) {
    constexpr unsigned char kLatin1Lead = 0xC3, kDivision = 0xB7, kYDiaeresis = 0xBF;
    bool latin1 = false;
    for (char& c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        const bool letter =
            latin1 ? byte >= 0xA0 && byte != kDivision && byte != kYDiaeresis : byte >= 'a' && byte <= 'z';
        if (letter) c = static_cast<char>(byte - 0x20);
        latin1 = byte == kLatin1Lead;
    }
}

void widen(std::string_view utf8, std::u16string& into) {
    into.resize(utf8.size());
    std::size_t count = 0;
    for (std::size_t i = 0; i < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : 3;
        unsigned code = length == 1 ? lead : length == 2 ? lead & 0x1Fu : lead & 0x0Fu;
        for (std::size_t k = 1; k < length && i + k < utf8.size(); ++k)
            code = code << 6 | (static_cast<unsigned char>(utf8[i + k]) & 0x3Fu);
        into[count++] = static_cast<char16_t>(code);
        i += length;
    }
    into.resize(count);
}

std::string amountOf(std::int64_t cents) {
    const std::int64_t all = std::abs(cents);
    std::string out = cents < 0 ? "-" : "";
    out.append(std::to_string(all / 100)).push_back('.');
    if (all % 100 < 10) out.push_back('0');
    return out.append(std::to_string(all % 100));
}

}  // namespace tsRtm::bench

#pragma once
// The rows that all engines load, and what the workloads draw from them.
//
// A file of rows is CSV with ";", in UTF-8, with one header line and no quoting:
//
//     Nr;Name;Vorname;Strasse;PLZ;Ort;Geburt;Betrag
//
// The draws depend on seed and row count alone, so that every engine does the same work in the same order.
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bench/support/Measure.hpp"

namespace tsRtm::bench {

enum RowField : std::size_t { fNr, fName, fVorname, fStrasse, fPlz, fOrt, fGeburt, fBetrag, kRowFields };
inline constexpr std::array<int, kRowFields> kRowWidths = {8, 30, 20, 30, 5, 24, 8, 12};

using Row = std::array<std::string_view, kRowFields>;

// Seeds of the draws.
enum Seed : std::uint64_t {
    seedLookup = 1001,
    seedUpdate = 2002,
    seedRankAt = 3003,
    seedRankOf = 3004,
    seedDelete = 4004,
    seedMulti = 5005
};

// splitmix64.
class Random {
 public:
    explicit Random(std::uint64_t seed) : state_(seed) {}
    std::uint64_t next();
    // 0 .. limit - 1.
    std::uint32_t below(std::uint32_t limit) {
        return static_cast<std::uint32_t>(((next() >> 32) * limit) >> 32);
    }

 private:
    std::uint64_t state_;
};

// Reads a file of rows, one row at a time. A file that cannot be read or a faulty line ends the program.
class RowReader {
 public:
    explicit RowReader(const std::string& path);
    // The views hold until the next call. False at the end.
    bool next(Row& row);

 private:
    bool line(std::string_view& out);

    struct Closer {
        void operator()(std::FILE* file) const noexcept;
    };
    std::unique_ptr<std::FILE, Closer> file_;
    std::vector<char> room_;
    std::size_t begin_ = 0, end_ = 0;
};

// Many short texts in one buffer, so that what a workload keeps ready hardly counts in its memory.
class TextPool {
 public:
    void reserve(std::size_t texts, std::size_t bytes);
    void add(std::string_view text);
    std::size_t size() const noexcept { return ends_.size(); }
    std::string_view operator[](std::size_t i) const noexcept {
        const std::size_t begin = i == 0 ? 0 : ends_[i - 1];
        return std::string_view(bytes_).substr(begin, ends_[i] - begin);
    }

 private:
    std::string bytes_;
    std::vector<std::uint32_t> ends_;
};

// The first rows of a file.
class RowTable {
 public:
    RowTable(const std::string& csv, long rows);
    std::size_t size() const noexcept { return pool_.size() / kRowFields; }
    std::string_view operator()(std::size_t row, std::size_t field) const noexcept {
        return pool_[row * kRowFields + field];
    }

 private:
    TextPool pool_;
};

// Name and Vorname of drawn rows.
class NameKeys {
 public:
    // Of the rows with these numbers, from 0, in this order. With `capitals` every second one is in capitals.
    NameKeys(const std::string& csv, const std::vector<std::uint32_t>& rows, bool capitals = false);
    std::size_t size() const noexcept { return pool_.size() / 2; }
    std::string_view name(std::size_t i) const noexcept { return pool_[2 * i]; }
    std::string_view vorname(std::size_t i) const noexcept { return pool_[2 * i + 1]; }

 private:
    TextPool pool_;
};

// Row numbers, drawn.
std::vector<std::uint32_t> drawRows(Seed seed, long n, std::size_t count);
NameKeys lookupKeys(const Options& options);
NameKeys rankKeys(const Options& options);

// Whether a record, from 1, is one of the three in ten that delete_pack deletes.
bool isDoomed(std::uint32_t record);

struct Updates {
    std::vector<std::uint32_t> records;  // from 1
    NameKeys names;                      // the new ones

    std::uint32_t record(std::size_t i) const { return records[i % records.size()]; }
    // In each pass over the records another one, or there would be nothing to store.
    std::string_view name(std::size_t i) const {
        return names.name((i + i / records.size()) % records.size());
    }
};
Updates drawUpdates(const Options& options);

inline constexpr std::size_t kLookups = 100000;
inline constexpr std::size_t kUpdates = 20000;
inline constexpr std::size_t kRanks = 10000;
// For how long searches run beside a writer.
inline constexpr double kBesideSeconds = 2;

// Capitals of the letters of Latin-1, in UTF-8; "ß" stays.
void toCapitals(std::string& utf8);
// UTF-8 of characters of the Basic Multilingual Plane to UTF-16, into a text whose room is kept.
void widen(std::string_view utf8, std::u16string& into);
// "   -123.45" or "-123,45" as -12345.
template <class Char>
std::int64_t centsOf(std::basic_string_view<Char> amount) noexcept {
    std::int64_t out = 0;
    bool negative = false;
    for (const Char c : amount) {
        if (c >= Char('0') && c <= Char('9'))
            out = out * 10 + (c - Char('0'));
        else
            negative = negative || c == Char('-');
    }
    return negative ? -out : out;
}
// The other way, with a point.
std::string amountOf(std::int64_t cents);

// What reading a row comes to: all fields are copied, numbers are summed up.
template <class Char>
class RowSink {
 public:
    void take(std::size_t field, std::basic_string_view<Char> text) noexcept {
        if (field == fNr) {
            used_ = 0;
            nrSum += centsOf(text);
        }
        if (field == fBetrag) cents += centsOf(text);
        used_ += text.copy(row_.data() + used_, row_.size() - used_);
    }
    std::int64_t cents = 0;
    std::int64_t nrSum = 0;

 private:
    std::array<Char, 256> row_{};
    std::size_t used_ = 0;
};

}  // namespace tsRtm::bench

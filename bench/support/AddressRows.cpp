#include "bench/support/AddressRows.hpp"

#include <array>
#include <cstdio>
#include <iterator>
#include <numeric>

#include "bench/support/AddressNames.hpp"
#include "bench/support/Rows.hpp"

namespace tsRtm::bench {
namespace {

// Common names get about fifteen times the weight of rare ones.
constexpr std::uint32_t kSurnameShare = 100000, kSurnameOffset = 10;

std::uint32_t surnameWeight(std::size_t rank) {
    return kSurnameShare / (static_cast<std::uint32_t>(rank) + kSurnameOffset);
}

// Index of an item, drawn by the weight that `weightOf` gives it.
template <class Items, class Weight>
std::size_t drawWeighted(Random& random, const Items& items, Weight weightOf) {
    static const std::uint32_t sum = [&] {
        std::uint32_t all = 0;
        for (std::size_t i = 0; i < std::size(items); ++i) all += weightOf(i);
        return all;
    }();
    std::uint32_t left = random.below(sum);
    std::size_t i = 0;
    for (; left >= weightOf(i); ++i) left -= weightOf(i);
    return i;
}

template <std::size_t N>
std::string drawWord(Random& random, const std::string_view (&list)[N]) {
    return std::string(list[random.below(N)]);
}

std::string drawSurname(Random& random) {
    return std::string(words::kSurnames[drawWeighted(random, words::kSurnames, surnameWeight)]);
}

bool percent(Random& random, std::uint32_t share) { return random.below(100) < share; }

// At most so many characters, no blank at the end.
std::string cut(std::string text, int characters) {
    std::size_t end = 0;
    int seen = 0;
    for (; end < text.size(); ++end)
        if ((static_cast<unsigned char>(text[end]) & 0xC0) != 0x80 && seen++ == characters) break;
    text.resize(end);
    text.resize(text.find_last_not_of(' ') + 1);
    return text;
}

std::string drawForename(Random& random) {
    std::string out = drawWord(random, words::kForenames);
    const std::uint32_t kind = random.below(100);
    if (kind < 2) return {};
    if (kind < 9) out.append("-").append(drawWord(random, words::kForenames));
    if (kind >= 9 && kind < 12) out.append(" ").append(drawWord(random, words::kForenames));
    return out;
}

std::string drawBirthday(Random& random) {
    constexpr std::array<std::uint32_t, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (percent(random, 2)) return {};
    const std::uint32_t year = 1925 + random.below(85);
    const std::uint32_t month = random.below(12);
    const std::uint32_t day = 1 + random.below(kDays[month]);
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%04u%02u%02u", year, month + 1, day);
    return text.data();
}

std::string drawAmount(Random& random) {
    const std::uint32_t most = percent(random, 5) ? 100000000 : 500000;
    const auto cents = static_cast<std::int64_t>(random.below(most));
    return amountOf(percent(random, 10) ? -cents : cents);
}

}  // namespace

AddressRows::AddressRows(std::uint64_t seed) : seed_(seed) {}

std::string AddressRows::header() { return "Nr;Name;Vorname;Strasse;PLZ;Ort;Geburt;Betrag"; }

std::string AddressRows::line(std::uint32_t nr) const {
    Random mixed(seed_ + nr);
    Random random(mixed.next());
    std::string name = drawSurname(random);
    if (percent(random, 8)) name.append("-").append(drawSurname(random));
    std::string forename = drawForename(random);
    if (percent(random, 3)) {
        toCapitals(name);
        toCapitals(forename);
    }
    std::string street = drawWord(random, words::kStreets) + " " + std::to_string(1 + random.below(120));
    if (percent(random, 6)) street += static_cast<char>('a' + random.below(4));
    const auto& place = words::kPlaces[drawWeighted(random, words::kPlaces,
                                                    [](std::size_t i) { return words::kPlaces[i].weight; })];
    const std::uint32_t code = place.firstCode + random.below(place.codes);
    const std::string birthday = drawBirthday(random);
    const std::string amount = drawAmount(random);
    std::array<char, 512> out{};
    std::snprintf(out.data(), out.size(), "%8u;%s;%s;%s;%05u;%s;%s;%12s", nr,
                  cut(name, kRowWidths[fName]).c_str(), cut(forename, kRowWidths[fVorname]).c_str(),
                  cut(street, kRowWidths[fStrasse]).c_str(), code,
                  cut(std::string(place.name), kRowWidths[fOrt]).c_str(), birthday.c_str(), amount.c_str());
    return out.data();
}

}  // namespace tsRtm::bench

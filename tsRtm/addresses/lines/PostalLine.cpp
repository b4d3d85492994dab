#include "tsRtm/addresses/lines/PostalLine.hpp"

#include <algorithm>

#include "tsRtm/types/Digits.hpp"

namespace tsRtm::postalLine {
namespace {

constexpr std::size_t kShortest = 5;
constexpr std::size_t kLongestSign = 3;

struct Country {
    TextView sign, name;
};

// Signs of countries in front of postal codes. "D" is none of them: what it names is at home.
constexpr Country kCountries[] = {
    {u"A", u"Österreich"},
    {u"AND", u"Andorra"},
    {u"B", u"Belgien"},
    {u"BG", u"Bulgarien"},
    {u"BY", u"Weißrussland"},
    {u"BIH", u"Bosnien und Herzegowina"},
    {u"CH", u"Schweiz"},
    {u"CY", u"Zypern"},
    {u"CZ", u"Tschechische Republik"},
    {u"DK", u"Dänemark"},
    {u"E", u"Spanien"},
    {u"EST", u"Estland"},
    {u"F", u"Frankreich"},
    {u"FL", u"Liechtenstein"},
    {u"FIN", u"Finnland"},
    {u"GB", u"Großbritannien"},
    {u"GBA", u"Alderney"},
    {u"GBG", u"Guernsey"},
    {u"GBJ", u"Jersey"},
    {u"GBM", u"Insel Man"},
    {u"GBZ", u"Gibraltar"},
    {u"GE", u"Georgien"},
    {u"GR", u"Griechenland"},
    {u"H", u"Ungarn"},
    {u"HR", u"Kroatien"},
    {u"I", u"Italien"},
    {u"IRL", u"Irland"},
    {u"IS", u"Island"},
    {u"KS", u"Kirgisistan"},
    {u"KZ", u"Kasachstan"},
    {u"L", u"Luxemburg"},
    {u"LU", u"Luxemburg"},
    {u"LT", u"Litauen"},
    {u"LV", u"Lettland"},
    {u"M", u"Malta"},
    {u"MC", u"Monaco"},
    {u"MD", u"Moldawien"},
    {u"MK", u"Mazedonien"},
    {u"N", u"Norwegen"},
    {u"NA", u"Niederländische Antillen"},
    {u"NL", u"Niederlande"},
    {u"P", u"Portugal"},
    {u"PL", u"Polen"},
    {u"RO", u"Rumänien"},
    {u"RSM", u"San Marino"},
    {u"RUS", u"Russland"},
    {u"S", u"Schweden"},
    {u"SCG", u"Serbien und Montenegro"},
    {u"SK", u"Slowakische Republik"},
    {u"SLO", u"Slowenien"},
    {u"TR", u"Türkei"},
    {u"TN", u"Tunesien"},
    {u"UA", u"Ukraine"},
    {u"UZ", u"Usbekistan"},
    {u"V", u"Vatikanstadt"},
};

}  // namespace

Parts split(TextView line) {
    line = trim(line);
    Parts whole{Text(), Text(line)};
    if (line.size() < kShortest || isDigit(line.front())) return whole;
    const auto at = line.find_first_of(u" -");
    if (at > kLongestSign) return whole;
    const Text sign = upper(line.substr(0, at));
    const auto* found = std::find_if(std::begin(kCountries), std::end(kCountries),
                                     [&](const Country& country) { return country.sign == sign; });
    if (found == std::end(kCountries)) return whole;
    TextView rest = trim(line.substr(at + 1));
    if (rest.starts_with(u'-')) rest = trim(rest.substr(1));
    return {upper(found->name), upper(rest)};
}

Text withoutSign(TextView line) {
    const auto digit = std::find_if(line.begin(), line.end(), isDigit);
    return Text(digit == line.end() ? line : line.substr(static_cast<std::size_t>(digit - line.begin())));
}

Text place(TextView line) {
    const auto blank = line.find(u' ');
    if (line.empty() || !isDigit(line.front()) || blank == TextView::npos) return Text(line);
    const auto begin = line.find_first_not_of(u' ', blank);
    return begin == TextView::npos ? Text() : Text(line.substr(begin));
}

}  // namespace tsRtm::postalLine

#pragma once
// Tables of short texts, many rows a line.
//
//     for (const auto& [typed, key] : table<2>(u"24.12.2024=20241224 mo=+++++MO+ 32="))
#include <array>
#include <vector>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::test {

// What stands between the separators, several in a row counting as such: "a  b" at blanks is "a", "", "b".
inline std::vector<Text> split(TextView text, TextView separator) {
    std::vector<Text> parts;
    for (std::size_t at = 0; at != TextView::npos;) {
        const auto end = text.find(separator, at);
        parts.emplace_back(text.substr(at, end == TextView::npos ? end : end - at));
        at = end == TextView::npos ? end : end + separator.size();
    }
    return parts;
}

// Rows apart by a blank or what is said, cells by "="; what a row lacks at its end is empty.
template <std::size_t Cells>
std::vector<std::array<Text, Cells>> table(TextView text, TextView rows = u" ", TextView cells = u"=") {
    std::vector<std::array<Text, Cells>> all;
    for (const auto& row : split(text, rows)) {
        const auto parts = split(row, cells);
        for (std::size_t i = 0; i < Cells && i < parts.size(); ++i)
            (i == 0 ? all.emplace_back() : all.back())[i] = parts[i];
    }
    return all;
}

// A cell as a number.
inline int32 number(TextView cell) { return roundToInt32(Val(cell)); }

}  // namespace tsRtm::test

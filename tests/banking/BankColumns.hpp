#pragma once
// Rows of the bank code file.
#include <algorithm>
#include <string>

namespace tsRtm::test {

// A good row, some columns of it replaced.
struct BankColumns {
    std::string code = "12345678", mark = "1", name = "Bank", postalCode = "10115", place = "Berlin",
                bic = "ABCDDE12XXX", method = "A7", rest = "000123U000000000";
    std::string row() const {
        return code + mark + padded(name, 58) + padded(postalCode, 5) + padded(place, 35) +
               padded("Kurz", 27) + "90001" + padded(bic, 11) + padded(method, 2) + rest;
    }
    static std::string padded(std::string text, std::size_t size) {
        text.resize(std::max(text.size(), size), ' ');
        return text;
    }
};

}  // namespace tsRtm::test

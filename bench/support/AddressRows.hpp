#pragma once
// Made-up address rows, the same on every machine: what a file of rows holds when nobody brings one.
#include <cstdint>
#include <string>

namespace tsRtm::bench {

// German names with umlauts, accents and both spellings of a sharp s, weighted so that some are common;
// double names, rows in capitals, rows without Vorname or Geburt. Row n is the same in a file of any length.
class AddressRows {
 public:
    explicit AddressRows(std::uint64_t seed = 20240229);
    static std::string header();
    // The line of row `nr`, from 1, without its end.
    std::string line(std::uint32_t nr) const;

 private:
    std::uint64_t seed_;
};

}  // namespace tsRtm::bench

#pragma once
// The worked examples of docs/file-formats.md, which are what the library writes.
#include <sstream>
#include <string>

#include "tests/support/TempFolder.hpp"

namespace tsRtm::test {

// The bytes of the block "```hex name" of the page.
inline Bytes example(const std::string& name) {
    static const Bytes page = contentOf(TSRTM_TEST_DATA "/../../docs/file-formats.md");
    const std::string mark = "```hex " + name + "\n";
    const auto from = page.find(mark);
    if (from == std::string::npos) return "missing: " + name;
    std::istringstream digits(
        page.substr(from + mark.size(), page.find("```", from + 3) - from - mark.size()));
    Bytes out;
    for (std::string byte; digits >> byte;) out.push_back(static_cast<char>(std::stoi(byte, nullptr, 16)));
    return out;
}

}  // namespace tsRtm::test

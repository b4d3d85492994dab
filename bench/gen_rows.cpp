// Writes a file of address rows: gen_rows N > rows.csv. The file of k rows is the beginning of the file of n
// > k rows.
#include <cstdio>
#include <cstdlib>

#include "bench/support/AddressRows.hpp"

int main(int argc, char** argv) {
    const long rows = argc == 2 ? std::atol(argv[1]) : 0;
    if (rows < 1) {
        std::fprintf(stderr, "usage: gen_rows N > rows.csv\n");
        return 2;
    }
    const tsRtm::bench::AddressRows source;
    std::puts(tsRtm::bench::AddressRows::header().c_str());
    for (long nr = 1; nr <= rows; ++nr) std::puts(source.line(static_cast<std::uint32_t>(nr)).c_str());
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0 ? 0 : 1;
}

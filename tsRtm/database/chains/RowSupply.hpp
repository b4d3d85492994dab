#pragma once
// Rows of a chain file given out and taken back: Hoch, Frei and the list of free rows.
#include <functional>
#include <unordered_set>

#include "tsRtm/database/chains/ChainFile.hpp"

namespace tsRtm {

// All under the locks of the chain. Knows the file by reference. Failures raise as raiseFileFailure tells.
class RowSupply {
 public:
    explicit RowSupply(ChainFile& file) : file_(file) {}

    // The last row that a record names. Asked where the file has no whole row 1: it may have been lost, and a
    // new row in a place of old would be shown as that of whoever still names it.
    std::function<int32()> lastNamed;

    // What was given out, and what it takes to take it back.
    struct Taken {
        std::vector<int32> rows;
        std::vector<int32> links;  // of those from the list: they come first
        ChainHead before, after;
        uint64 size = 0;  // of the file, with its row 1
    };
    // Writes row 1 and nothing else: whoever dies then has lost row numbers. Free rows come first. Raises 61
    // where not all are to be had, and then nothing is written.
    Taken take(int32 count);
    // Row 1 is as it was left, and nobody who takes no locks was given the same rows.
    bool stands(const Taken& taken) const { return file_.head() == taken.after; }
    // As if they had not been taken; left alone when somebody has taken others since.
    void takeBack(const Taken& taken);
    // Rows to which nothing leads any more, in the order of their chain.
    void free(std::span<const int32> rows);

    // Row 1 as it is to be understood: no row of the file is given out anew, whatever stands there, and none
    // that was in a file that is gone. Logged where it had to be mended.
    ChainHead sound() const;
    // The list of free rows is forgotten: its rows are lost until the file is packed.
    void dropList();

 private:
    ChainHead dropped(int32 hoch, TextView why) const;
    // From the list, 0 where it is at its end or not to be trusted. `given`: what it gave before.
    int32 fromList(ChainHead& head, Taken& taken, std::unordered_set<int32>& given) const;
    bool isLink(int32 row, int32 hoch) const noexcept {
        return row == 0 || (row >= ChainFormat::kFirstRow && row <= hoch + 1);
    }

    ChainFile& file_;
};

}  // namespace tsRtm

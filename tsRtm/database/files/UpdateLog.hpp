#pragma once
// Update.tsd: what is about to be written over in Data.tsd, on the device before it is done, so that a cut of
// the power takes nothing that was acknowledged.
//
//   offset   size  content
//   0        ...   entries, one behind the other, each beginning at a multiple of 8:
//     0      8     run: the same in all entries that count, drawn anew when the file is emptied
//     8      8     place in Data.tsd
//     16     4     bytes there now
//     20     4     bytes there before, as many or none
//     24     4     1 where nothing, or zeros, may have been there before as well
//     28     4     0
//     32     8     sum of all of that, of the entry's offset and of the bytes
//     40           the bytes now, then those before
//
// An entry of another run or with a wrong sum ends the list; an empty list begins with zeros. The file is
// ours; programs that do not know it pass it over.
#include <functional>
#include <optional>
#include <vector>

#include "tsRtm/database/files/BlockFile.hpp"
#include "tsRtm/database/files/DatabaseFolder.hpp"

namespace tsRtm {

// Beside a database whose writes are to outlive the machine, and at the opening of one that had such writes.
// All under the database lock. Knows the folder by reference. Failures raise as raiseFileFailure tells.
class UpdateLog {
 public:
    static constexpr TextView kFileName = u"Update.tsd";

    explicit UpdateLog(const DatabaseFolder& folder) : folder_(folder) {}
    // Brings Data.tsd and Stand.tsd to the device, or raises. Set by who owns them.
    std::function<void()> flushFiles;
    // Whether the folder is still that of the open database.
    std::function<bool()> inPlace;
    ~UpdateLog() { close(); }
    UpdateLog(const UpdateLog&) = delete;
    UpdateLog& operator=(const UpdateLog&) = delete;

    struct Overwriting {
        uint64 place = 0;
        BytesView now;
        BytesView before;    // as many, or none
        bool isNew = false;  // the place may not be in the file yet, or hold zeros
    };
    // On the device when it returns: then the place may be written. Empties the list first where it is long,
    // or where the last writer did not do what he noted.
    void note(BlockFile& data, const Overwriting& what);
    // All that was noted is on the device, the list is empty; `surely` where files get other names next.
    // Nothing is done where nobody ever noted anything.
    enum class Emptied { soon, surely };
    void empty(Emptied when);
    // Behind a clean end nothing counts any more.
    void forget();
    // Behind an unclean end: each place gets what was noted last, if all that a sector of the medium shows of
    // noted places is what was there at one moment: what others wrote there later stays. Gives the number of
    // sectors that were mended.
    int32 replay(BlockFile& data);
    void close() noexcept;

 private:
    struct Entry {
        uint64 place = 0;
        Bytes now, before;
        bool isNew = false;
    };
    bool open(bool toMake);
    // The entry at an offset, of this run or, for 0, of any.
    std::optional<Entry> at(uint64 offset, uint64& run) const;
    // What others noted since.
    void catchUp();
    bool lastIsDone(const BlockFile& data) const;

    const DatabaseFolder& folder_;
    int32 file_ = 0;
    BlockFile bytes_;
    uint64 run_ = 0;  // 0: the list is empty
    uint64 end_ = 0;
    std::optional<Entry> last_;
};

}  // namespace tsRtm

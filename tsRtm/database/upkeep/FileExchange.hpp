#pragma once
// Several files of a database put in the place of others at once, or none of them.
#include <memory>
#include <vector>

#include "tsRtm/database/files/DatabaseFolder.hpp"
#include "tsRtm/platform/File.hpp"

namespace tsRtm {

// New files are made beside the old ones, named with ".tmp" behind, and are whole on the device before
// anything else happens. The commit is one rename: Control.tsd becomes a control of version 3 whose lines
// tell what is to be done:
//
//   TS3,0
//   exchange
//   replace,NAME    NAME.tmp takes the place of NAME, which becomes NAME.old
//   remove,NAME     NAME becomes NAME.old
//
// When that is done the true control, kept in Control.tsd.tmp, is renamed back, and the old files are
// deleted. Who dies before the commit leaves all as it was; after it the next opening finishes. Meanwhile
// other programs cannot open the database: they refuse version 3. The caller has the reorganisation lock.
// Failures raise as raiseFileFailure tells.
class FileExchange {
 public:
    explicit FileExchange(const DatabaseFolder& folder) : folder_(folder) {}
    // Without a commit the new files go.
    ~FileExchange();
    FileExchange(const FileExchange&) = delete;
    FileExchange& operator=(const FileExchange&) = delete;

    // The new form of a file, empty; to be written before the commit.
    platform::File& make(TextView name);
    // A file that goes; nothing where it is not there.
    void drop(TextView name);
    // A new text of Control.tsd, if it is to change with the rest.
    void control(Bytes text) { control_ = std::move(text); }
    bool empty() const noexcept { return steps_.empty(); }
    // None of the old files is open. What fails here before the one rename raises; after it the next opening
    // goes on, and the failure is raised as well.
    void commit();
    // Behind the one rename: the old files count no more, whatever failed then.
    bool committed() const noexcept { return committed_; }

    // Deletes the old files, a sensitive database's by overwriting them; Data.tsd goes to the basket. What
    // cannot be deleted is left to the next opening.
    void discardOld() noexcept;

 private:
    struct Step {
        Text name;
        bool replaces;
        std::unique_ptr<platform::File> file;  // the new one, until the commit
    };

    const DatabaseFolder& folder_;
    std::vector<Step> steps_;
    Bytes control_;
    bool committed_ = false;
};

// At an opening, before the control is read: finishes an exchange that died after its commit, and takes away
// what one left that died before or behind. False where it is under way, or not to be finished by a reader.
[[nodiscard]] bool finishExchange(const DatabaseFolder& folder);
// Whether files are taking the places of others at this moment, or somebody died in that. Raises as
// raiseFileFailure tells.
bool exchangeBegun(const DatabaseFolder& folder);

}  // namespace tsRtm

#pragma once
// The directory of an open database, how it was opened, and the opening of the files in it.
#include <vector>

#include "tsRtm/frame/FilesTopic.hpp"

namespace tsRtm {

inline constexpr TextView kControlFile = u"Control.tsd";

// Of the numbered file family.
inline constexpr int32 kModusReadWrite = 4;
inline constexpr int32 kModusReadOnly = 5;

// Passive; the face sets it at the opening. The files outlive it.
struct DatabaseFolder {
    explicit DatabaseFolder(FilesTopic& filesTopic) : files(filesTopic) {}

    FilesTopic& files;
    Text name;  // as given, with ".DBD"
    bool readOnly = false;
    // A reader's files, too, are opened for writing on a share where he may: only so can he lock, and pass
    // what a client's cache remembers.
    bool filesWritable = true;
    bool shared = true;
    bool sensible = false;  // what is deleted is overwritten first
    bool durable = false;   // a write is on the device when it is acknowledged

    MessagesTopic& messages() const { return files.messages(); }
    int32 modus() const noexcept { return filesWritable ? kModusReadWrite : kModusReadOnly; }
    Text path(TextView file) const;
    // Names of the files in the directory, in no order; none where it cannot be read.
    std::vector<Text> fileNames() const;
    // Opens a file of the directory in the mode of the database; waits NetWait seconds in silence. 0 where it
    // cannot be opened.
    int32 open(TextView file, bool sharedOpening) const;
    // Closes a file of the numbered or of the handle family and sets its number to 0; failures are ignored.
    void close(int32& number) const noexcept;
    void closeHandle(int32& handle) const noexcept;
};

}  // namespace tsRtm

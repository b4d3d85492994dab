#pragma once
// The file of a list or table: shared with other processes by its time stamp, replaced whole.
#include <optional>
#include <vector>

#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/platform/FileSystem.hpp"

namespace tsRtm {

enum class TableLook : int32 {
    nowAndThen,    // at most every 4.32 seconds, unless it is sync-always
    forced,        // now
    forAppending,  // now, but a file of the same stamp and size is not read once more
};

// Nothing is locked between two calls: the last writer wins. A reader gets an old or a new version whole,
// never a part of one. A writer that dies leaves the old version or the new one, and perhaps the other one
// beside it under a temporary name ("rad?????.tmp"). Only on a volume where files neither exchange their
// names nor have two of them is the place of a sensible file empty for a moment, with both versions beside
// it.
//
// Time stamps count whole seconds, so a file that is seen within the second of its stamp may change again
// without showing it. Therefore its size counts too, and a file seen that young is read once more when its
// second has passed (at every look with sync-always), to see whether its text is still the same.
class TableFile {
 public:
    TableFile();

    // Starts anew with this name; an empty one means that there is no file.
    void bind(TextView Datei, bool SyncAlways);

    const Text& name() const noexcept { return name_; }
    bool bound() const noexcept { return !name_.empty(); }
    bool syncAlways() const noexcept { return syncAlways_; }
    // The file is there, or was at the last look.
    bool seen() const noexcept { return seen_; }
    // Asks the disk.
    bool exists() const;

    // Code page number that the file is written in; 0 until known.
    int32 encoding = 0;
    // Old versions are overwritten before they are deleted.
    bool sensible = true;

    using Look = TableLook;
    struct News {
        enum What { none, content, gone } what = none;
        Text text;  // of `content`
    };
    // Whether another process has changed the file, and its text then; `gone` once where it was there before.
    // Raises what GetContentAPI raises. A file that cannot be opened is no news; then it is unread.
    News look(Look how);
    // Whether there is a file that could not be read: it must not be written over.
    bool unread() const noexcept { return readFailure_ != 0; }
    // Raises the failure of reading, with this source; nothing where the file was read.
    void needRead(TextView Source) const;
    // What was read makes no sense (a run-time error number).
    void markUnread(int32 number) noexcept { readFailure_ = number; }
    // Never mind what is in it now: only what others write from here on is news.
    void disregard();

    // Whether lines put behind the file's last byte become lines of their own.
    bool canAppend() const noexcept { return appendable_; }
    // Raises what PutContentAPI raises; the file is then as it was.
    void append(TextView text);

    // A whole new version, written beside the file and put in its place. Raises with the source
    // ".SchreibDaten" behind the type name where a step fails; the file is then as it was.
    void replace(TextView text, TextView TypeName);
    // The same for lists: keeps the encoding of a file that is to be 1252 and is not sensible, works in place
    // where the folder admits no second file, ignores that an old version cannot be overwritten, and raises
    // as PutContentAPI does.
    void rewrite(TextView text);
    // Raises as replace() does.
    void remove(TextView TypeName);

    FilesTopic& files() noexcept { return files_; }

 private:
    std::optional<platform::FileStatus> status() const;
    std::optional<platform::FileStatus> statusOrGap(bool firstLook) const;
    bool hasTemporaryBeside() const;
    bool young(Date stamp) const;
    News changed(platform::FileStatus before);
    News verified(const platform::FileStatus& status, Look how);
    std::optional<Text> content(int32& fileEncoding);
    void remember(TextView text, int32 fileEncoding, const platform::FileStatus& status);
    void rememberWritten(TextView text, int32 fileEncoding);
    void forget();

    // Another encoding than the one wanted where the text would begin like another one's mark.
    static int32 readableEncoding(int32 wanted, TextView text);
    Text makeBeside(TextView text, int32 fileEncoding);
    // Gives the old versions that are out of the way but not yet deleted.
    std::vector<Text> putInPlace(const Text& beside, TextView TypeName);
    std::vector<Text> putInPlaceOfSensible(const Text& beside, TextView TypeName);
    std::vector<Text> putInEmptiedPlace(const Text& beside, TextView TypeName);
    std::optional<Text> takeAside(TextView TypeName);
    void overwrite(const std::vector<Text>& old, TextView TypeName);
    int32 encodingInPlace();

    MessagesTopic messages_;
    FilesTopic files_{messages_};
    Text name_;
    bool syncAlways_ = false;
    bool looked_ = false;
    Date lastLook_;
    // What was seen of the file.
    bool seen_ = false;
    bool wasYoung_ = false;
    bool appendable_ = true;
    int32 fileEncoding_ = 0;
    int32 readFailure_ = 0;
    Date stamp_;
    uint64 size_ = 0;
    uint64 hash_ = 0;  // of the text
};

}  // namespace tsRtm

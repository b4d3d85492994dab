#pragma once
// A file system in memory, with the rules of a real one and the accidents that a test wants.
//
//     MemoryFiles files;
//     files.put(u"C:/data/Control.tsd", bytes);       // makes the folders
//     files.setFreeSpace(1000);                        // the disk is nearly full
//     files.failOpening(u"C:/data/I001", SystemError::tooManyOpenFiles);
//     const auto before = files.snapshot();            // ... files.restore(before);
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "tsRtm/platform/FileSystem.hpp"

namespace tsRtm::test {

// Names ignore case and keep the case they were made in; a relative name lies in the root "". Share modes and
// range locks hold between all openings. Two objects that work on one MemoryFiles are two processes. Not
// thread-safe.
class MemoryFiles final : public platform::FileSystem {
 public:
    MemoryFiles();
    ~MemoryFiles() override;

    platform::Result<std::unique_ptr<platform::File>> open(TextView name,
                                                           platform::OpenRequest request) override;
    platform::Result<platform::FileStatus> status(TextView name) override;
    [[nodiscard]] platform::SystemError remove(TextView name) override;
    [[nodiscard]] platform::SystemError rename(TextView from, TextView to, bool replace) override;
    [[nodiscard]] platform::SystemError exchange(TextView from, TextView to) override;
    [[nodiscard]] platform::SystemError makeFolder(TextView name) override;
    [[nodiscard]] platform::SystemError flushFolder(TextView name) override;
    [[nodiscard]] platform::SystemError copyAccess(TextView, TextView) override {
        return platform::SystemError::notSupported;
    }
    [[nodiscard]] platform::SystemError unhide(TextView) override {
        return platform::SystemError::notSupported;
    }
    platform::Result<std::vector<platform::FolderEntry>> list(TextView folder) override;
    platform::DriveKind driveKind(TextView name) override;
    [[nodiscard]] platform::SystemError recycle(TextView name) override { return remove(name); }

    // The content of a file; fails the test where there is none.
    Bytes dump(TextView name) const;
    // Makes or overwrites a file, and the folders above it, whatever stands against it.
    void put(TextView name, BytesView content);
    bool exists(TextView name) const { return find(name) != nullptr; }
    // Makes a folder and those above it.
    void putFolder(TextView name);
    void setHidden(TextView name, bool hidden);
    void setReadOnly(TextView name, bool readOnly);

    // Files of a remote or unknown drive say so.
    void setDriveKind(platform::DriveKind kind) { driveKind_ = kind; }
    // Takes the locks and signs of all openings of a file, as a connection does that is cut and comes again.
    void cutOff(TextView name);
    // Whether files on a fixed drive or in memory have windows, as of the next opening that is asked for one.
    void offerWindows(bool offer) { offersWindows_ = offer; }
    // A volume where no two files can exchange their names.
    void forbidExchange() { exchanges_ = false; }
    // Every opening of this name fails; SystemError::none ends that.
    void failOpening(TextView name, platform::SystemError error);
    // Bytes by which all files together may still grow; a write that does not fit is done as far as it fits,
    // as on a real disk, and fails. nullopt: no limit.
    void setFreeSpace(std::optional<uint64> bytes) { freeSpace_ = bytes; }
    // The time stamp of what is written from now on.
    void setNow(Date now) { now_ = now; }
    // Ends an opening of a file of this kind, with its locks and its share mode, and gives its window, if it
    // had one: who was killed may not know yet.
    static std::unique_ptr<platform::FileWindow> close(std::unique_ptr<platform::File> file);
    // Openings that live now, of all files: a test for leaks.
    std::size_t openings() const;

    // All files and folders with their content and attributes. An opening that is alive at a restore keeps
    // the old file, which then has no name any more.
    struct Entry {
        Text name;
        platform::FileStatus status;
        Bytes content;
        bool operator==(const Entry&) const;
    };
    using Snapshot = std::map<Text, Entry>;  // by name in capitals
    Snapshot snapshot() const;
    void restore(const Snapshot& snapshot);

    class Content;
    struct Node;
    class Opening;

 private:
    using Nodes = std::map<Text, std::shared_ptr<Node>>;

    std::shared_ptr<Node> find(TextView name) const;
    bool folderExists(TextView name) const;
    platform::SystemError openable(const Node& node, platform::OpenRequest request) const;
    std::shared_ptr<Node> add(TextView name, bool folder);
    std::shared_ptr<Node> required(TextView name) const;
    bool hasWindows() const;
    bool grow(uint64 bytes);
    void shrink(uint64 bytes) {
        if (freeSpace_) *freeSpace_ += bytes;
    }

    Nodes nodes_;
    std::map<Text, platform::SystemError> openErrors_;
    platform::DriveKind driveKind_ = platform::DriveKind::fixed;
    bool offersWindows_ = true;
    bool exchanges_ = true;
    std::optional<uint64> freeSpace_;
    Date now_ = Date::of(2024, 6, 15, 12);
};

}  // namespace tsRtm::test

#pragma once
// A file system whose machine may lose its power at any change.
//
//     MemoryFiles disk;                    // what it has now is on the medium
//     PowerCutFiles files(disk);
//     files.beforeChange = [&] { media.push_back(files.cut(random)); };
//     work(files);
//     disk.restore(media[n]);              // the machine starts again
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <vector>

#include "tests/support/GuardedFiles.hpp"
#include "tests/support/MemoryFiles.hpp"

namespace tsRtm::test {

// Hands all on to a disk in memory, and keeps beside it what is sure on the medium. A flush of a file makes
// its content sure, and its name where it was made; a flush of a folder makes sure what happened to names
// before. At a cut each sector of 512 bytes shows any moment since its last flush, whatever the others show,
// the length of a file another one, and names those of one moment. Not thread-safe.
class PowerCutFiles final : public GuardedFiles, private Gate {
 public:
    explicit PowerCutFiles(MemoryFiles& disk);

    // Called before each change of the disk.
    std::function<void()> beforeChange;
    // What the medium may show if the power is cut now.
    MemoryFiles::Snapshot cut(std::mt19937& random) const;

    platform::Result<std::unique_ptr<platform::File>> open(TextView name,
                                                           platform::OpenRequest request) override;
    [[nodiscard]] platform::SystemError remove(TextView name) override;
    [[nodiscard]] platform::SystemError rename(TextView from, TextView to, bool replace) override;
    [[nodiscard]] platform::SystemError exchange(TextView from, TextView to) override;
    [[nodiscard]] platform::SystemError flushFolder(TextView name) override;
    [[nodiscard]] platform::SystemError recycle(TextView name) override { return remove(name); }

 private:
    class Opening;
    class Window;
    // A write, or a new length.
    struct Change {
        uint64 offset = 0;
        Bytes bytes;
        std::optional<uint64> length;
    };
    struct Content {
        Bytes sure;
        std::vector<Change> since;
        void settle();
        Bytes shown(std::mt19937& random) const;
    };
    struct Named {
        Text name;
        std::shared_ptr<Content> content;
    };
    using Names = std::map<Text, Named>;  // by name in capitals

    Gate& gate() override { return *this; }
    platform::SystemError pass(Gate::Step step, const Half&) override;
    // The names are other ones now.
    void named() { moments_.push_back(names_); }

    MemoryFiles& disk_;
    MemoryFiles::Snapshot folders_;
    Names names_;
    std::vector<Names> moments_;  // the sure one, and those since
};

}  // namespace tsRtm::test

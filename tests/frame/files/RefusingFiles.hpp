#pragma once
// Files in memory that may be refused when a test says so, and where a hidden file may not be emptied.
#include <functional>
#include <optional>

#include "tests/support/MemoryFiles.hpp"

namespace tsRtm::test {

class RefusingFiles final : public platform::FileSystem {
 public:
    using Error = platform::SystemError;

    explicit RefusingFiles(MemoryFiles& memory) : memory_(memory) {}

    // Asked before every open; anything but none is its outcome.
    std::function<Error(platform::OpenRequest)> refuse;
    int32 opens = 0;
    std::optional<Error> removeError, renameError, unhideError;

    platform::Result<std::unique_ptr<platform::File>> open(TextView name,
                                                           platform::OpenRequest request) override {
        ++opens;
        if (refuse)
            if (const Error error = refuse(request); platform::failed(error)) return error;
        const auto found = memory_.status(name);
        if (request.disposition == platform::Disposition::createEmpty && found.ok() && found.value().hidden)
            return Error::accessDenied;
        return memory_.open(name, request);
    }
    platform::Result<platform::FileStatus> status(TextView name) override { return memory_.status(name); }
    Error remove(TextView name) override { return removeError ? *removeError : memory_.remove(name); }
    Error rename(TextView from, TextView to, bool replace) override {
        return renameError ? *renameError : memory_.rename(from, to, replace);
    }
    Error makeFolder(TextView name) override { return memory_.makeFolder(name); }
    Error exchange(TextView from, TextView to) override { return memory_.exchange(from, to); }
    Error copyAccess(TextView from, TextView to) override { return memory_.copyAccess(from, to); }
    Error flushFolder(TextView name) override { return memory_.flushFolder(name); }
    platform::Result<std::vector<platform::FolderEntry>> list(TextView folder) override {
        return memory_.list(folder);
    }
    platform::DriveKind driveKind(TextView name) override { return memory_.driveKind(name); }
    Error unhide(TextView name) override {
        if (unhideError) return *unhideError;
        memory_.setHidden(name, false);
        return Error::none;
    }
    Error recycle(TextView name) override { return memory_.recycle(name); }

 private:
    MemoryFiles& memory_;
};

}  // namespace tsRtm::test

#pragma once
// Files in memory that may be refused when a test says so, and where a hidden file may not be emptied.
#include <functional>
#include <optional>

#include "tests/support/GuardedFiles.hpp"
#include "tests/support/MemoryFiles.hpp"

namespace tsRtm::test {

class RefusingFiles final : public GuardedFiles, private Gate {
 public:
    using Error = platform::SystemError;

    explicit RefusingFiles(MemoryFiles& memory) : GuardedFiles(memory), memory_(memory) {}

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
    Error remove(TextView name) override { return removeError ? *removeError : memory_.remove(name); }
    Error rename(TextView from, TextView to, bool replace) override {
        return renameError ? *renameError : memory_.rename(from, to, replace);
    }
    Error unhide(TextView name) override {
        if (unhideError) return *unhideError;
        memory_.setHidden(name, false);
        return Error::none;
    }

 private:
    Gate& gate() override { return *this; }
    Error pass(Gate::Step, const Half&) override { return Error::none; }

    MemoryFiles& memory_;
};

}  // namespace tsRtm::test

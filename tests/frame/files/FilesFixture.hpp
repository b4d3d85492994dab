#pragma once
// The file layer on files in memory, with a standing clock, a scripted user and faults on demand.
#include <functional>
#include <optional>

#include "tests/support/GuardedFiles.hpp"
#include "tests/support/MemoryFiles.hpp"
#include "tests/support/Raised.hpp"
#include "tests/support/Table.hpp"
#include "tests/support/TempFolder.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/platform/posix/PosixPlatform.hpp"

namespace tsRtm::test {

using platform::Access;
using platform::Disposition;
using platform::Sharing;
using platform::SystemError;
using std::chrono::milliseconds;
using std::chrono::seconds;

// Files in memory that may be refused when a test says so, and where a hidden file may not be emptied.
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

class FilesTest : public ::testing::Test {
 protected:
    MemoryFiles memory;
    RefusingFiles disk{memory};
    StartedLibrary library{disk};
    MessagesTopic messages;
    FilesTopic files{messages};

    TestClock& clock() { return library.ground.clock; }
    ScriptedUi& ui() { return library.ground.ui; }
    static int32& F() { return rtmMain::state().F; }

    const Text root = u"/w";
    void SetUp() override { memory.putFolder(root); }

    Text path(std::string_view name) const { return root + u"/" + fromUtf8(name); }
    Text write(std::string_view name, BytesView bytes) {
        memory.put(path(name), bytes);
        return path(name);
    }
    Bytes read(std::string_view name) const { return memory.dump(path(name)); }
    std::size_t entries() { return memory.list(root)->size(); }
    // Somebody else's opening of a file.
    std::unique_ptr<platform::File> other(const Text& name, Sharing sharing,
                                          Access access = Access::readWrite) {
        auto opened = memory.open(name, {access, sharing, Disposition::openExisting});
        return opened ? std::move(*opened) : nullptr;
    }
    int32 open(const Text& name, int32 mode, bool shared = true, int32 warten = -1) {
        int32 number = -1;
        files.DB_Open(name, number, mode, shared, 0, warten);
        return number;
    }
};

// The file layer on the real disk.
class DiskTest : public ::testing::Test {
 protected:
    TempFolder folder;
    StartedLibrary library{platform::posixPlatform().files};
    MessagesTopic messages;
    FilesTopic files{messages};
};

}  // namespace tsRtm::test

#pragma once
// The clients of a share at their worst: what a client once read it believes for ever, and what is written to
// it stays with it, until it is made to forget or to flush.
//
//     MemoryFiles server;
//     ShareClients files(server);
//     files.as(1);
//     ...                          // opens and works on one machine
//     files.as(2);                 // on another: what was not flushed there or refreshed here is old
#include <map>
#include <memory>

#include "tests/support/GuardedFiles.hpp"

namespace tsRtm::test {

// Hands to the server: names, locks, share modes and signs, resize, readServed of a long file; and what is
// read for the first time. A client keeps by file, for all its openings, size and content. A write goes to
// the server at a flush, at a refresh, and when its opening closes. Calls on an open file are those of the
// client that opened it. Knows the server by reference. Not thread-safe.
class ShareClients final : public GuardedFiles, private Gate {
 public:
    explicit ShareClients(platform::FileSystem& server) : GuardedFiles(server), server_(server) {}

    // On which machine files are opened from now on; 0 at first.
    void as(int32 client) { now_ = &clients_[client]; }
    // A refresh has no effect before it was asked for so many times more, of each file.
    void forgetsAfter(int32 refreshes) { now_->forgetsAfter = refreshes; }
    // What was not flushed never comes to the server: the machine went down.
    void loseWrites();
    // Questions of this client that went to the server: readServed, greatestShown, isLocked, stands, refresh
    // and first reads.
    int64 questions() const { return now_->questions; }

    platform::Result<std::unique_ptr<platform::File>> open(TextView name,
                                                           platform::OpenRequest request) override;
    [[nodiscard]] platform::SystemError rename(TextView from, TextView to, bool replace) override;
    [[nodiscard]] platform::SystemError exchange(TextView from, TextView to) override;
    platform::DriveKind driveKind(TextView) override { return platform::DriveKind::remote; }

 private:
    class Opening;
    struct Kept;
    struct Client {
        std::map<Text, std::shared_ptr<Kept>> kept;  // by name in capitals
        int32 forgetsAfter = 0;
        int64 questions = 0;
    };

    Gate& gate() override { return *this; }
    platform::SystemError pass(Gate::Step, const Half&) override { return platform::SystemError::none; }
    void forgetName(TextView name);

    platform::FileSystem& server_;
    std::map<int32, Client> clients_;
    Client* now_ = &clients_[0];
};

}  // namespace tsRtm::test

#include "tests/support/ShareClients.hpp"

#include <algorithm>
#include <cstring>
#include <optional>

namespace tsRtm::test {

using namespace platform;

struct ShareClients::Kept {
    struct Write {
        uint64 offset;
        Bytes bytes;
    };
    std::optional<Bytes> content;
    std::vector<Write> writes;  // not at the server yet
    int32 refreshes = 0;        // asked for since it forgot
};

class ShareClients::Opening final : public GuardedFile {
    template <class T>
    using Result = platform::Result<T>;

 public:
    Opening(Client& client, Gate& gate, std::unique_ptr<File> inner, std::shared_ptr<Kept> kept,
            bool writable)
        : GuardedFile(std::move(inner), gate), client_(client), kept_(std::move(kept)), writable_(writable) {}
    ~Opening() override { static_cast<void>(send()); }

    Result<std::size_t> readAt(uint64 offset, std::span<std::byte> into) override {
        if (const auto error = fetch(); failed(error)) return error;
        const Bytes& content = *kept_->content;
        if (offset >= content.size()) return std::size_t{0};
        const auto count = std::min<std::size_t>(into.size(), content.size() - offset);
        std::memcpy(into.data(), content.data() + offset, count);
        return count;
    }
    SystemError writeAt(uint64 offset, std::span<const std::byte> bytes) override {
        if (!writable_) return SystemError::accessDenied;
        if (bytes.empty()) return SystemError::none;
        if (const auto error = fetch(); failed(error)) return error;
        Bytes& content = *kept_->content;
        content.resize(std::max<std::size_t>(content.size(), offset + bytes.size()), '\0');
        std::memcpy(content.data() + offset, bytes.data(), bytes.size());
        kept_->writes.push_back({offset, content.substr(offset, bytes.size())});
        return SystemError::none;
    }
    Result<uint64> size() override {
        if (const auto error = fetch(); failed(error)) return error;
        return uint64{kept_->content->size()};
    }
    SystemError resize(uint64 size) override {
        if (const auto error = send(); failed(error)) return error;
        const auto error = inner_->resize(size);
        if (!failed(error) && kept_->content) kept_->content->resize(size, '\0');
        return error;
    }
    SystemError flush() override {
        const auto error = send();
        return failed(error) ? error : inner_->flush();
    }
    FileWindow* window() override { return nullptr; }
    Result<bool> isLocked(ByteRange range) override { return asked().isLocked(range); }
    Result<uint64> greatestShown(uint64 floor) override { return asked().greatestShown(floor); }
    Result<bool> stands() override { return asked().stands(); }

    bool remote() const noexcept override { return true; }
    SystemError refresh(RefreshAs standing) override {
        if (const auto error = send(); failed(error)) return error;
        const auto error = asked().refresh(standing);
        if (failed(error) || kept_->refreshes++ < client_.forgetsAfter) return error;
        kept_->refreshes = 0;
        kept_->content.reset();
        return error;
    }
    Result<std::size_t> readServed(uint64 offset, std::span<std::byte> into) override {
        // What fits whole into a cache is answered from there.
        const auto present = size();
        if (!present) return present.error();
        if (*present <= kKeptWhole) return readAt(offset, into);
        if (const auto error = send(); failed(error)) return error;
        return asked().readAt(offset, into);
    }

 private:
    File& asked() {
        ++client_.questions;
        return *inner_;
    }
    SystemError fetch() {
        if (kept_->content) return SystemError::none;
        const auto size = asked().size();
        if (!size) return size.error();
        Bytes content(*size, '\0');
        const auto got = inner_->readAt(0, std::as_writable_bytes(std::span(content)));
        if (!got) return got.error();
        content.resize(*got);
        kept_->content = std::move(content);
        return SystemError::none;
    }
    SystemError send() {
        if (!writable_) return SystemError::none;
        auto& writes = kept_->writes;
        while (!writes.empty()) {
            const auto& [offset, bytes] = writes.front();
            if (const auto error = inner_->writeAt(offset, std::as_bytes(std::span(bytes))); failed(error))
                return error;
            writes.erase(writes.begin());
        }
        return SystemError::none;
    }

    Client& client_;
    std::shared_ptr<Kept> kept_;
    bool writable_;
};

Result<std::unique_ptr<File>> ShareClients::open(TextView name, OpenRequest request) {
    auto opened = server_.open(name, request);
    if (!opened) return opened.error();
    auto& kept = now_->kept[upper((*opened)->name())];
    if (!kept || request.disposition == Disposition::createEmpty) kept = std::make_shared<Kept>();
    const bool writable = request.access == Access::readWrite;
    return std::unique_ptr<File>(
        std::make_unique<Opening>(*now_, gate(), std::move(*opened), kept, writable));
}

// A name leads to the new file at once; what is kept belongs to the file and not to the name.
SystemError ShareClients::rename(TextView from, TextView to, bool replace) {
    const auto error = server_.rename(from, to, replace);
    if (!failed(error)) forgetName(to);
    return error;
}

SystemError ShareClients::exchange(TextView from, TextView to) {
    const auto error = server_.exchange(from, to);
    if (failed(error)) return error;
    forgetName(from);
    forgetName(to);
    return error;
}

void ShareClients::forgetName(TextView name) {
    for (auto& [number, client] : clients_) client.kept.erase(upper(name));
}

void ShareClients::loseWrites() {
    for (auto& [name, kept] : now_->kept) kept->writes.clear();
}

}  // namespace tsRtm::test

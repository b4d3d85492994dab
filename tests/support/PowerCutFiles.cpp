#include "tests/support/PowerCutFiles.hpp"

#include <algorithm>
#include <cstring>

namespace tsRtm::test {

using namespace platform;

namespace {

constexpr std::size_t kSector = 512;

Bytes bytesOf(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

void apply(Bytes& content, uint64 offset, BytesView bytes) {
    content.resize(std::max<std::size_t>(content.size(), offset + bytes.size()), '\0');
    content.replace(offset, bytes.size(), bytes);
}

}  // namespace

class PowerCutFiles::Window final : public FileWindow {
 public:
    Window(FileWindow& inner, PowerCutFiles& files, std::shared_ptr<Content> content)
        : inner_(inner), files_(files), content_(std::move(content)) {}

    const std::byte* data() const noexcept override { return inner_.data(); }
    uint64 capacity() const noexcept override { return inner_.capacity(); }
    bool reserve(uint64 size) override { return inner_.reserve(size); }
    void store(uint64 offset, std::span<const std::byte> bytes) override {
        static_cast<void>(files_.pass(Gate::Step::change, {}));
        inner_.store(offset, bytes);
        content_->since.push_back({offset, bytesOf(bytes), {}});
    }
    bool damaged() const noexcept override { return inner_.damaged(); }
    bool renew() noexcept override { return inner_.renew(); }

 private:
    FileWindow& inner_;
    PowerCutFiles& files_;
    std::shared_ptr<Content> content_;
};

class PowerCutFiles::Opening final : public GuardedFile {
 public:
    Opening(std::unique_ptr<File> inner, PowerCutFiles& files, const Text& key)
        : GuardedFile(std::move(inner), files), files_(files), key_(key), named_(files.names_.at(key)) {}

    SystemError writeAt(uint64 offset, std::span<const std::byte> bytes) override {
        const auto error = GuardedFile::writeAt(offset, bytes);
        if (!failed(error)) named_.content->since.push_back({offset, bytesOf(bytes), {}});
        return error;
    }
    SystemError resize(uint64 size) override {
        const auto error = GuardedFile::resize(size);
        if (!failed(error)) named_.content->since.push_back({0, {}, size});
        return error;
    }
    SystemError flush() override {
        named_.content->settle();
        for (auto& names : files_.moments_) names.try_emplace(key_, named_);
        return SystemError::none;
    }
    FileWindow* window() override {
        auto* const inner = !window_ ? inner_->window() : nullptr;
        if (inner) window_ = std::make_unique<Window>(*inner, files_, named_.content);
        return window_.get();
    }

 private:
    PowerCutFiles& files_;
    Text key_;
    Named named_;
    std::unique_ptr<Window> window_;
};

PowerCutFiles::PowerCutFiles(MemoryFiles& disk) : GuardedFiles(disk), disk_(disk) {
    for (const auto& [key, entry] : disk.snapshot())
        if (entry.status.folder)
            folders_[key] = entry;
        else
            names_[key] = {entry.name, std::make_shared<Content>(Content{entry.content, {}})};
    named();
}

SystemError PowerCutFiles::pass(Gate::Step step, const Half&) {
    if (step == Gate::Step::change && beforeChange) beforeChange();
    return SystemError::none;
}

void PowerCutFiles::Content::settle() {
    for (const auto& [offset, bytes, length] : since) {
        if (length)
            sure.resize(*length, '\0');
        else
            apply(sure, offset, bytes);
    }
    since.clear();
}

// Each sector, and the length, as they were after some of the changes.
Bytes PowerCutFiles::Content::shown(std::mt19937& random) const {
    const std::size_t count = since.size();
    const auto all = random() % 4;  // none, all, or each sector for itself
    const auto moment = [&] {
        if (all < 2) return all == 0 ? 0 : count;
        const auto some = random() % 4;
        return some == 0 ? 0 : some == 1 ? count : random() % (count + 1);
    };
    std::map<uint64, std::size_t> moments;
    const std::size_t lengthMoment = moment();
    Bytes out = sure;
    std::size_t length = sure.size(), shownLength = length;
    for (std::size_t i = 0; i < count; ++i) {
        const auto& [offset, bytes, newLength] = since[i];
        length = newLength ? *newLength : std::max<std::size_t>(length, offset + bytes.size());
        if (i < lengthMoment) shownLength = length;
        for (std::size_t done = 0; done < bytes.size();) {
            const uint64 place = offset + done;
            const std::size_t part = std::min(kSector - place % kSector, bytes.size() - done);
            const auto at = moments.try_emplace(place / kSector, 0);
            if (at.second) at.first->second = moment();
            if (i < at.first->second) apply(out, place, BytesView(bytes).substr(done, part));
            done += part;
        }
    }
    out.resize(shownLength, '\0');
    return out;
}

MemoryFiles::Snapshot PowerCutFiles::cut(std::mt19937& random) const {
    auto out = folders_;
    for (const auto& [key, named] : moments_[random() % moments_.size()]) {
        auto& entry = out[key];
        entry.name = named.name;
        entry.content = named.content->shown(random);
        entry.status.size = entry.content.size();
    }
    return out;
}

Result<std::unique_ptr<File>> PowerCutFiles::open(TextView name, OpenRequest request) {
    const bool changes = request.disposition != Disposition::openExisting;
    if (changes && !disk_.status(name)) static_cast<void>(pass(Gate::Step::change, {}));
    auto opened = disk_.open(name, request);
    if (!opened) return opened.error();
    const Text key = upper((*opened)->name());
    if (!names_.contains(key)) {
        names_[key] = {(*opened)->name(), std::make_shared<Content>()};
        named();
    } else if (request.disposition == Disposition::createEmpty) {
        names_[key].content->since.push_back({0, {}, 0});
    }
    return std::unique_ptr<File>(std::make_unique<Opening>(std::move(*opened), *this, key));
}

SystemError PowerCutFiles::remove(TextView name) {
    const auto error = GuardedFiles::remove(name);
    if (!failed(error) && names_.erase(upper(name)) != 0) named();
    return error;
}

SystemError PowerCutFiles::rename(TextView from, TextView to, bool replace) {
    const auto error = GuardedFiles::rename(from, to, replace);
    if (failed(error)) return error;
    auto node = names_.extract(upper(from));
    names_[upper(to)] = {Text(to), node.mapped().content};
    named();
    return error;
}

SystemError PowerCutFiles::exchange(TextView from, TextView to) {
    const auto error = GuardedFiles::exchange(from, to);
    if (failed(error)) return error;
    std::swap(names_[upper(from)].content, names_[upper(to)].content);
    named();
    return error;
}

SystemError PowerCutFiles::flushFolder(TextView) {
    moments_ = {names_};
    return SystemError::none;
}

}  // namespace tsRtm::test

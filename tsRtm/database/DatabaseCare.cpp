#include "tsRtm/database/DatabaseCare.hpp"

#include <list>

#include "tsRtm/database/engine/DatabaseEngine.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm {
namespace {

constexpr std::size_t kPiece = std::size_t{1} << 20;
constexpr int32 kMostLooks = 100;
constexpr std::size_t kMarkAt = 9;  // of Count.tsd

// Of the directory, but what belongs to nobody or to this moment.
bool goesAlong(const Text& name) {
    const Text capitals = upper(name);
    for (const TextView end : {u".TMP", u".OLD", u".NEW"})
        if (capitals.ends_with(end)) return false;
    return capitals != u"LOCK.TSD" && capitals != u"UPDATE.TSD";
}

struct Source {
    Text name;
    std::unique_ptr<platform::File> file;
    uint64 size = 0;
};

std::vector<Source> sources(const DatabaseFolder& folder) {
    std::vector<Source> out;
    for (const Text& name : folder.fileNames()) {
        if (!goesAlong(name)) continue;
        auto file = rtmMain::system().files.open(folder.path(name), {});
        if (!file) raiseFileFailure(file.error(), folder.path(name));
        const auto size = (*file)->size();
        if (!size) raiseFileFailure(size.error(), folder.path(name));
        out.push_back({name, std::move(*file), *size});
    }
    return out;
}

std::size_t readOnce(const Source& from, uint64 offset, Bytes& into) {
    const auto got = from.file->readAt(offset, std::as_writable_bytes(std::span(into)));
    if (!got) raiseFileFailure(got.error(), from.name);
    return *got;
}

// A write without a lock is whole in one of two looks that agree.
void readSteadily(const Source& from, uint64 offset, Bytes& into, Bytes& again) {
    again.resize(into.size());
    std::size_t got = readOnce(from, offset, into);
    for (int32 look = 0; look < kMostLooks && readOnce(from, offset, again) == got && again != into; ++look)
        into.swap(again);
    into.resize(got);
}

// All chains that are there.
std::list<ChainLock> locked(ChainSet& chains) {
    std::list<ChainLock> out;
    for (const int32 field : chains.fields())
        if (auto* const chain = chains.find(field); chain && chain->format().usable())
            if (chain->openToRead()) out.emplace_back(*chain);
    return out;
}

}  // namespace

DatabaseCare::DatabaseCare(clsTSDB& database) : engine_(*database.engine_) {}

bool DatabaseCare::copy(const Copying& to) {
    auto& d = engine_.d;
    if (!d.store || !d.count.inPlace() || engine_.writer.busy()) return engine_.fail(DatabaseError::locked);
    const DatabaseHold hold(d.locks);
    if (!hold) return engine_.fail(hold.error());
    try {
        if (const auto error = d.sign.enter(); failed(error)) return engine_.fail(error);
        if (!d.indexes.healLeftBehind()) return engine_.fail(DatabaseError::locked);
        const auto locks = locked(d.chains);
        const auto files = sources(d.folder);
        uint64 all = 0, done = 0;
        for (const auto& from : files) all += from.size;
        Bytes piece, again;
        for (const auto& from : files) {
            to.begin(from.name, from.size);
            for (uint64 at = 0; at < from.size; at += piece.size()) {
                piece.resize(std::min<uint64>(kPiece, from.size - at));
                readSteadily(from, at, piece, again);
                if (piece.empty()) must(platform::SystemError::deviceError, from.name);
                if (at == 0 && upper(from.name) == u"COUNT.TSD" && piece.size() > kMarkAt)
                    piece[kMarkAt] = ' ';
                to.piece(piece);
                done += piece.size();
                if (to.progress) to.progress(done, all);
            }
        }
        return true;
    } catch (const Failure& failure) {
        engine_.fail(failure);
        return false;
    }
}

}  // namespace tsRtm

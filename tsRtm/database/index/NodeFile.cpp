#include "tsRtm/database/index/NodeFile.hpp"

#include <cstring>
#include <limits>

#include "tsRtm/database/files/FetchAhead.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

template <class T>
BytesView bytesOf(const T& value) noexcept {
    return {reinterpret_cast<const char*>(&value), sizeof value};
}

template <class T>
std::span<char> roomOf(T& value) noexcept {
    return {reinterpret_cast<char*>(&value), sizeof value};
}

}  // namespace

void NodeFile::initialise() {
    if (!isNew()) return;
    bytes_.write(0, bytesOf(tree::Node{}));
    bytes_.store(0, bytesOf(tree::Header{}));
}

tree::Header NodeFile::header() {
    tree::Header header;
    if (const char* in = bytes_.view(0, sizeof header)) {
        std::memcpy(&header, in, sizeof header);
        return header;
    }
    if (isNew()) return header;
    header = {};
    header.magic[0] = '\0';
    bytes_.read(0, roomOf(header));
    return header;
}

void NodeFile::header(const tree::Header& header) { bytes_.store(0, bytesOf(header)); }

bool NodeFile::reaches(int32 address) {
    if (covers(address)) return true;
    if (address < tree::kFirstNode) return false;
    bytes_.refreshSize();
    return covers(address);
}

const tree::Node* NodeFile::inPlace(int32 address) const noexcept {
    const uint64 offset = tree::offsetOf(address);
    // In a damaged file an address may be anything.
    if (!covers(address) || offset % alignof(tree::Node) != 0) return nullptr;
    return reinterpret_cast<const tree::Node*>(bytes_.view(offset, tree::kBlockBytes));
}

const tree::Node& NodeFile::look(int32 address, tree::Node& room) const {
    if (const tree::Node* const node = inPlace(address)) return *node;
    if (bytes_.read(tree::offsetOf(address), roomOf(room)) != sizeof room) room.anzahl = tree::kFreeMark;
    return room;
}

void NodeFile::approach(int32 address) const noexcept {
    if (const tree::Node* const node = inPlace(address)) fetchAhead(node, sizeof *node);
}

bool NodeFile::read(int32 address, tree::Node& into) {
    return reaches(address) && bytes_.read(tree::offsetOf(address), roomOf(into)) == sizeof into;
}

void NodeFile::write(int32 address, const tree::Node& node) {
    bytes_.store(tree::offsetOf(address), bytesOf(node));
}

void NodeFile::writeCount(int32 address, int32 entry, int32 count) {
    const auto at = offsetof(tree::Node, entries) +
                    static_cast<std::size_t>(entry - 1) * sizeof(tree::Entry) +
                    offsetof(tree::Entry, zaehler);
    bytes_.store(tree::offsetOf(address) + at, bytesOf(count));
}

int32 NodeFile::allocate(tree::Header& header) {
    tree::Node node;
    if (header.freiListe > 0 && read(header.freiListe, node) && node.anzahl == tree::kFreeMark) {
        const int32 address = header.freiListe;
        header.freiListe = node.entry(1).kind;
        return address;
    }
    // A free list that leads nowhere is left alone: its nodes are lost until the next rebuild, nothing else.
    header.freiListe = 0;
    initialise();
    const uint64 end = (bytes_.knownSize() + tree::kBlockBytes - 1) / tree::kBlockBytes * tree::kBlockBytes;
    if (end + tree::kBlockBytes > static_cast<uint64>(std::numeric_limits<int32>::max()))
        raise(61, u"clsTSDB", u"Die Indexdatei ist zu groß");
    bytes_.write(end, bytesOf(tree::Node{}));
    return static_cast<int32>(end) + 1;
}

void NodeFile::release(int32 address, tree::Header& header) {
    tree::Node node;
    node.anzahl = tree::kFreeMark;
    node.entry(1).kind = header.freiListe;
    write(address, node);
    header.freiListe = address;
}

}  // namespace tsRtm

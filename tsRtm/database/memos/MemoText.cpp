#include "tsRtm/database/memos/MemoText.hpp"

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr TextView kSource = u"clsTSDB";
constexpr uint8 kFormBits = 127;

uint8 drawKey() {
    for (;;) {
        std::byte key{};
        if (failed(rtmMain::system().random.fill({&key, 1})))
            raise(70, kSource, u"Es ist keine Quelle für Zufallszahlen verfügbar");
        if (key != std::byte{}) return static_cast<uint8>(key);
    }
}

// Older stores have UTF-16 in entries that say nothing of it.
bool looksWide(BytesView payload) noexcept {
    return payload.size() >= 2 && payload.size() % 2 == 0 && payload[1] == '\0';
}

}  // namespace

void MemoText::needKeys() const {
    if (!scrambler_.ready()) raise(53, kSource, u"Die Schlüsseldatei fehlt");
}

std::pair<memoFormat::Head, Bytes> MemoText::encode(TextView text) const {
    Bytes bytes;
    auto form = memoFormat::ansi;
    if (kind_.blob) {
        bytes = toAnsi(text);
    } else if (!kind_.wide && kind_.utf8) {
        form = memoFormat::utf8;
        bytes = toUtf8(text);
    } else if (kind_.wide || !appendAnsi(bytes, text) || looksWide(bytes)) {
        form = memoFormat::utf16;
        bytes = toUtf16Le(text);
    }
    auto out = encodeBytes(std::move(bytes));
    out.first.form |= form;
    return out;
}

std::pair<memoFormat::Head, Bytes> MemoText::encodeBytes(Bytes bytes) const {
    std::pair<memoFormat::Head, Bytes> out;
    auto& [head, payload] = out;
    payload = std::move(bytes);
    head.length = static_cast<int32>(payload.size());
    if (!kind_.scrambled) return out;
    needKeys();
    head.form = memoFormat::kScrambled;
    head.key = drawKey();
    scrambler_.scramble(payload, head.key);
    return out;
}

Bytes MemoText::decodeBytes(const MemoEntry& entry) const {
    Bytes out = entry.payload;
    if (entry.kind == MemoEntry::Kind::entry && (entry.head.form & memoFormat::kScrambled) != 0) {
        needKeys();
        scrambler_.scramble(out, entry.head.key);
    }
    return out;
}

Text MemoText::decode(const MemoEntry& entry) const {
    const Bytes bytes = decodeBytes(entry);
    if (kind_.blob) return fromAnsi(bytes);
    if (entry.kind == MemoEntry::Kind::raw) return fromAnsi(oemToAnsi(bytes));
    switch (entry.head.form & kFormBits) {
        case memoFormat::utf8:
            return fromUtf8(bytes);
        case memoFormat::utf16:
            return fromUtf16Le(bytes);
        default:
            return looksWide(bytes) ? fromUtf16Le(bytes) : fromAnsi(bytes);
    }
}

}  // namespace tsRtm

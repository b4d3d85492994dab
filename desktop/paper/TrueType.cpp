#include "desktop/paper/TrueType.hpp"

#include <QtEndian>
#include <algorithm>
#include <set>

namespace tsRtm::desktop {
namespace {

constexpr qsizetype kLongLoca = 50, kChecksum = 8;  // offsets in "head"
constexpr qsizetype kGlyphCount = 4;                // in "maxp"
constexpr qsizetype kMetricsCount = 34;             // in "hhea"
constexpr qsizetype kRights = 8;                    // in "OS/2"

uint16 u16(const QByteArray& bytes, qsizetype at) {
    return at >= 0 && at + 2 <= bytes.size() ? qFromBigEndian<quint16>(bytes.constData() + at) : 0;
}
uint32 u32(const QByteArray& bytes, qsizetype at) {
    return at >= 0 && at + 4 <= bytes.size() ? qFromBigEndian<quint32>(bytes.constData() + at) : 0;
}
template <class Number>
void add(QByteArray& bytes, Number number) {
    const auto big = qToBigEndian(number);
    bytes.append(reinterpret_cast<const char*>(&big), sizeof big);
}
template <class Number>
void put(QByteArray& bytes, qsizetype at, Number number) {
    if (at + static_cast<qsizetype>(sizeof number) <= bytes.size()) qToBigEndian(number, bytes.data() + at);
}

// The outlines of a font by number.
class Outlines {
 public:
    explicit Outlines(const QRawFont& font)
        : glyf_(font.fontTable("glyf")),
          loca_(font.fontTable("loca")),
          count_(u16(font.fontTable("maxp"), kGlyphCount)) {
        wide_ = u16(font.fontTable("head"), kLongLoca) != 0;
    }
    QByteArray of(uint32 glyph) const {
        if (glyph >= count_) return {};
        const auto begin = placeOf(glyph), end = placeOf(glyph + 1);
        return begin < end && end <= glyf_.size() ? glyf_.mid(begin, end - begin) : QByteArray();
    }
    // With the glyphs that others are made of.
    void addWithParts(std::set<uint32>& all, uint32 glyph) const {
        if (!all.insert(glyph).second) return;
        const auto outline = of(glyph);
        if (outline.isEmpty() || (u16(outline, 0) & 0x8000) == 0) return;
        constexpr uint16 words = 1, scale = 8, more = 0x20, scales = 0x40, matrix = 0x80;
        for (qsizetype at = 10;;) {
            const uint16 flags = u16(outline, at);
            addWithParts(all, u16(outline, at + 2));
            at += 4 + (flags & words ? 4 : 2) +
                  (flags & scale    ? 2
                   : flags & scales ? 4
                   : flags & matrix ? 8
                                    : 0);
            if (!(flags & more) || at >= outline.size()) return;
        }
    }

 private:
    qsizetype placeOf(uint32 glyph) const {
        return wide_ ? static_cast<qsizetype>(u32(loca_, qsizetype{glyph} * 4))
                     : u16(loca_, qsizetype{glyph} * 2) * 2;
    }
    QByteArray glyf_, loca_;
    uint32 count_;
    bool wide_ = false;
};

// A segment for each character: they are few.
QByteArray cmapOf(const std::map<uint16, uint32>& glyphs) {
    const auto count = static_cast<uint16>(glyphs.size() + 1);
    QByteArray ends, starts, deltas, offsets;
    for (const auto& [letter, glyph] : glyphs) {
        add(ends, letter);
        add(starts, letter);
        add(deltas, static_cast<uint16>(glyph - letter));
        add(offsets, uint16{0});
    }
    add(ends, uint16{0xFFFF});
    add(starts, uint16{0xFFFF});
    add(deltas, uint16{1});
    add(offsets, uint16{0});
    uint16 range = 2, selector = 0;
    while (range * 2 <= count * 2) {
        range = static_cast<uint16>(range * 2);
        ++selector;
    }
    QByteArray table;
    for (const int word : {0, 1, 3, 1}) add(table, static_cast<uint16>(word));
    add(table, uint32{12});
    for (const uint16 word :
         {uint16{4}, static_cast<uint16>(16 + count * 8), uint16{0}, static_cast<uint16>(count * 2), range,
          selector, static_cast<uint16>(count * 2 - range)})
        add(table, word);
    return table + ends + QByteArray(2, '\0') + starts + deltas + offsets;
}

uint32 sumOf(const QByteArray& bytes) {
    uint32 sum = 0;
    for (qsizetype at = 0; at + 4 <= bytes.size(); at += 4) sum += u32(bytes, at);
    return sum;
}

QByteArray fileOf(std::map<QByteArray, QByteArray>& tables) {
    const auto count = static_cast<uint16>(tables.size());
    uint16 range = 16, selector = 0;
    while (range * 2 <= count * 16) {
        range = static_cast<uint16>(range * 2);
        ++selector;
    }
    QByteArray file, content;
    add(file, uint32{0x00010000});
    for (const uint16 word : {count, range, selector, static_cast<uint16>(count * 16 - range)})
        add(file, word);
    uint32 place = 12 + 16U * count;
    qsizetype checksum = 0;
    for (auto& [name, bytes] : tables) {
        const auto size = static_cast<uint32>(bytes.size());
        bytes.append((4 - size % 4) % 4, '\0');
        file += name;
        add(file, sumOf(bytes));
        add(file, place);
        add(file, size);
        if (name == "head") checksum = static_cast<qsizetype>(place) + kChecksum;
        place += static_cast<uint32>(bytes.size());
        content += bytes;
    }
    file += content;
    put(file, checksum, 0xB1B0AFBAU - sumOf(file));
    return file;
}

}  // namespace

bool canBeEmbedded(const QRawFont& font) {
    constexpr uint16 restricted = 2, whole = 0x100, bitmaps = 0x200;
    const uint16 rights = u16(font.fontTable("OS/2"), kRights);
    return font.isValid() && !font.fontTable("glyf").isEmpty() && !font.fontTable("loca").isEmpty() &&
           !font.fontTable("hmtx").isEmpty() && !(rights & (whole | bitmaps)) && (rights & 0xF) != restricted;
}

QByteArray subsetOf(const QRawFont& font, const std::map<uint16, uint32>& glyphs) {
    const Outlines outlines(font);
    std::set<uint32> all;
    outlines.addWithParts(all, 0);
    for (const auto& [letter, glyph] : glyphs) outlines.addWithParts(all, glyph);
    // Glyphs keep their numbers; those behind the last one go.
    const uint32 count = *all.rbegin() + 1;
    QByteArray glyf, loca;
    for (uint32 glyph = 0; glyph < count; ++glyph) {
        add(loca, static_cast<uint32>(glyf.size()));
        if (all.contains(glyph)) glyf += outlines.of(glyph);
        glyf.append((4 - glyf.size() % 4) % 4, '\0');
    }
    add(loca, static_cast<uint32>(glyf.size()));

    auto head = font.fontTable("head"), maxp = font.fontTable("maxp"), hhea = font.fontTable("hhea");
    put(head, kLongLoca, uint16{1});
    put(head, kChecksum, uint32{0});
    put(maxp, kGlyphCount, static_cast<uint16>(count));
    const uint32 metrics = std::min<uint32>(u16(hhea, kMetricsCount), count);
    put(hhea, kMetricsCount, static_cast<uint16>(metrics));
    std::map<QByteArray, QByteArray> tables = {
        {"cmap", cmapOf(glyphs)},
        {"glyf", glyf},
        {"head", head},
        {"hhea", hhea},
        {"loca", loca},
        {"maxp", maxp},
        {"hmtx", font.fontTable("hmtx").left(metrics * 4 + (count - metrics) * 2)}};
    for (const char* name : {"cvt ", "fpgm", "prep"})
        if (const auto table = font.fontTable(name); !table.isEmpty()) tables[name] = table;
    return fileOf(tables);
}

}  // namespace tsRtm::desktop

#include "desktop/paper/PdfEmbedding.hpp"

#include <QtEndian>
#include <qpdf/QPDF.hh>

#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm::desktop {
namespace {

QPDFObjectHandle name(const std::string& text) { return QPDFObjectHandle::newName("/" + text); }
QPDFObjectHandle number(int64 value) { return QPDFObjectHandle::newInteger(value); }
QPDFObjectHandle decimal(float64 value) { return QPDFObjectHandle::newReal(value, 3); }

// One word for each choice of letters, as the names of subsets begin.
std::string tagOf(const PdfLetters& letters) {
    auto value = std::hash<PdfLetters>()(letters);
    std::string tag;
    for (; tag.size() < 6; value /= 26) tag += static_cast<char>('A' + value % 26);
    return tag;
}

std::string plain(const QString& text) {
    std::string out;
    for (const QChar c : text)
        if (c.unicode() < 128 && c.isLetterOrNumber()) out += static_cast<char>(c.unicode());
    return out;
}

int wordOf(const QByteArray& table, qsizetype at) {
    return at + 2 <= table.size() ? qFromBigEndian<qint16>(table.constData() + at) : 0;
}

QPDFObjectHandle programOf(QPDF& file, const PdfFont::Program& from) {
    auto program = QPDFObjectHandle::newStream(&file);
    program.replaceStreamData(from.deflated, name("FlateDecode"), QPDFObjectHandle::newNull());
    program.getDict().replaceKey("/Length1", number(static_cast<int64>(from.length)));
    return program;
}

// Which characters the letters are, for those who copy and search.
QPDFObjectHandle unicodesOf(QPDF& file, const PdfLetters& letters) {
    constexpr std::size_t most = 100;  // rows of a block
    QByteArray rows,
        map =
            "/CIDInit /ProcSet findresource begin 12 dict begin begincmap /CMapType 2 def /CMapName /L def\n"
            "1 begincodespacerange <00> <FF> endcodespacerange\n";
    std::size_t count = 0;
    const auto endBlock = [&] {
        if (count > 0) map += QByteArray::number(qulonglong{count}) + " beginbfchar\n" + rows + "endbfchar\n";
        rows.clear();
        count = 0;
    };
    for (std::size_t letter = PdfFont::kFirst; letter <= PdfFont::kLast; ++letter) {
        if (!letters[letter]) continue;
        const Text text = fromAnsi(Bytes(1, static_cast<char>(letter)));
        rows += '<' + QByteArray::number(qulonglong{letter}, 16) + "> <" +
                QByteArray::number(uint{text[0]}, 16).rightJustified(4, '0') + ">\n";
        if (++count == most) endBlock();
    }
    endBlock();
    map += "endcmap CMapName currentdict /CMap defineresource pop end end";
    auto stream = QPDFObjectHandle::newStream(&file);
    stream.replaceStreamData(deflated(map), name("FlateDecode"), QPDFObjectHandle::newNull());
    return stream;
}

QPDFObjectHandle descriptorOf(QPDF& file, const PdfFont& font, const QPDFObjectHandle& fontName,
                              const PdfFont::Program& program) {
    constexpr int nonsymbolic = 32, italic = 64;
    const auto& raw = font.raw();
    const auto head = raw.fontTable("head");
    auto box = QPDFObjectHandle::newArray();
    for (const qsizetype at : {36, 38, 40, 42})
        box.appendItem(decimal(wordOf(head, at) * 1000 / std::max(raw.unitsPerEm(), qreal{1})));
    auto descriptor = QPDFObjectHandle::newDictionary();
    const auto tell = [&](const char* key, const QPDFObjectHandle& value) {
        descriptor.replaceKey(key, value);
    };
    tell("/Type", name("FontDescriptor"));
    tell("/FontName", fontName);
    tell("/Flags", number(nonsymbolic | (font.italic() ? italic : 0)));
    tell("/FontBBox", box);
    tell("/ItalicAngle", number(wordOf(raw.fontTable("post"), 4)));
    tell("/Ascent", decimal(raw.ascent() * PdfFont::kPerPixel));
    tell("/Descent", decimal(-raw.descent() * PdfFont::kPerPixel));
    tell("/CapHeight", decimal(raw.capHeight() * PdfFont::kPerPixel));
    tell("/StemV", number(font.bold() ? 140 : 80));
    tell("/FontFile2", programOf(file, program));
    return file.makeIndirectObject(descriptor);
}

}  // namespace

QPDFObjectHandle embedded(QPDF& file, PdfFont& font, const PdfLetters& used) {
    const auto& program = font.program(used);
    const auto& letters = program.letters;
    const auto fontName =
        name(tagOf(letters) + "+" + plain(font.raw().familyName()) + "-" + plain(font.raw().styleName()));
    auto widths = QPDFObjectHandle::newArray();
    for (std::size_t letter = PdfFont::kFirst; letter <= PdfFont::kLast; ++letter)
        widths.appendItem(letters[letter] ? decimal(font.width(static_cast<uint8>(letter))) : number(0));
    auto object = QPDFObjectHandle::newDictionary();
    const auto tell = [&](const char* key, const QPDFObjectHandle& value) { object.replaceKey(key, value); };
    tell("/Type", name("Font"));
    tell("/Subtype", name("TrueType"));
    tell("/BaseFont", fontName);
    tell("/FirstChar", number(PdfFont::kFirst));
    tell("/LastChar", number(PdfFont::kLast));
    tell("/Widths", widths);
    tell("/Encoding", name("WinAnsiEncoding"));
    tell("/ToUnicode", unicodesOf(file, letters));
    tell("/FontDescriptor", descriptorOf(file, font, fontName, program));
    return file.makeIndirectObject(object);
}

}  // namespace tsRtm::desktop

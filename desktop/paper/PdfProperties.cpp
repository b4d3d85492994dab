#include "desktop/paper/PdfProperties.hpp"

#include <QDateTime>
#include <memory>
#include <optional>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include "desktop/paper/PdfEmbedding.hpp"
#include "desktop/paper/Qt.hpp"

namespace tsRtm::desktop {
namespace {

constexpr const char* kProducer = "tsRtm";

QString escaped(TextView text) { return qt(text).toHtmlEscaped(); }

// What PDF/A demands: the information entries once more, value for value.
QByteArray xmpOf(const platform::PdfSettings& settings, const QString& moment) {
    QString items;
    const auto add = [&](const char* before, TextView text, const char* after) {
        if (!text.empty()) items += QString::fromLatin1(before) + escaped(text) + QString::fromLatin1(after);
    };
    add("<dc:title><rdf:Alt><rdf:li xml:lang=\"x-default\">", settings.title,
        "</rdf:li></rdf:Alt></dc:title>");
    add("<dc:creator><rdf:Seq><rdf:li>", settings.author, "</rdf:li></rdf:Seq></dc:creator>");
    add("<dc:description><rdf:Alt><rdf:li xml:lang=\"x-default\">", settings.subject,
        "</rdf:li></rdf:Alt></dc:description>");
    add("<pdf:Keywords>", settings.keywords, "</pdf:Keywords>");
    add("<xmp:CreatorTool>", settings.application, "</xmp:CreatorTool>");
    const QString packet =
        QStringLiteral(
            "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
            "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
            "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
            "<rdf:Description rdf:about=\"\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\" "
            "xmlns:pdf=\"http://ns.adobe.com/pdf/1.3/\" xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\" "
            "xmlns:pdfaid=\"http://www.aiim.org/pdfa/ns/id/\">%1<pdf:Producer>%2</pdf:Producer>"
            "<xmp:CreateDate>%3</xmp:CreateDate><xmp:ModifyDate>%3</xmp:ModifyDate>"
            "<pdfaid:part>1</pdfaid:part><pdfaid:conformance>B</pdfaid:conformance></rdf:Description></"
            "rdf:RDF>"
            "</x:xmpmeta>\n<?xpacket end=\"w\"?>")
            .arg(items, QString::fromLatin1(kProducer), moment);
    return packet.toUtf8();
}

void setInformation(QPDF& file, const platform::PdfSettings& settings, const std::string& moment) {
    auto info = QPDFObjectHandle::newDictionary();
    const auto put = [&](const char* key, TextView text) {
        if (!text.empty()) info.replaceKey(key, QPDFObjectHandle::newUnicodeString(toUtf8(text)));
    };
    put("/Title", settings.title);
    put("/Author", settings.author);
    put("/Subject", settings.subject);
    put("/Keywords", settings.keywords);
    put("/Creator", settings.application);
    info.replaceKey("/Producer", QPDFObjectHandle::newString(kProducer));
    info.replaceKey("/CreationDate", QPDFObjectHandle::newString(moment));
    info.replaceKey("/ModDate", QPDFObjectHandle::newString(moment));
    file.getTrailer().replaceKey("/Info", file.makeIndirectObject(info));
}

void setMetadata(QPDF& file, const QByteArray& xmp) {
    auto stream = QPDFObjectHandle::newStream(&file, xmp.toStdString());
    stream.getDict().replaceKey("/Type", QPDFObjectHandle::newName("/Metadata"));
    stream.getDict().replaceKey("/Subtype", QPDFObjectHandle::newName("/XML"));
    file.getRoot().replaceKey("/Metadata", stream);
}

std::string points(int32 twips) {
    return std::to_string(twips / 20) + "." + std::to_string(twips % 20 / 2) + std::to_string(twips % 2 * 5);
}

QPDFObjectHandle boxOf(const PdfPage& page) {
    auto box = QPDFObjectHandle::newArray();
    for (const auto& number : {std::string("0"), std::string("0"), points(page.width), points(page.height)})
        box.appendItem(QPDFObjectHandle::newReal(number));
    return box;
}

// The upper left corner stays in its place.
void setSize(QPDF& file, QPDFObjectHandle painted, const PdfPage& page) {
    constexpr double twipsPerPoint = 20;
    const double shift =
        page.height / twipsPerPoint - painted.getKey("/MediaBox").getArrayItem(3).getNumericValue();
    painted.replaceKey("/MediaBox", boxOf(page));
    if (shift == 0) return;
    auto content =
        QPDFObjectHandle::newStream(&file, "1 0 0 1 0 " + QByteArray::number(shift).toStdString() + " cm\n");
    painted.addPageContents(content, true);
}

QPDFObjectHandle toldPage(QPDF& file, const PdfPage& page, const QPDFObjectHandle& resources) {
    auto content = QPDFObjectHandle::newStream(&file);
    content.replaceStreamData(page.content, QPDFObjectHandle::newName("/FlateDecode"),
                              QPDFObjectHandle::newNull());
    auto told = QPDFObjectHandle::newDictionary();
    told.replaceKey("/Type", QPDFObjectHandle::newName("/Page"));
    told.replaceKey("/MediaBox", boxOf(page));
    told.replaceKey("/Resources", resources);
    told.replaceKey("/Contents", content);
    return file.makeIndirectObject(told);
}

QPDFObjectHandle resourcesOf(QPDF& file, const std::vector<PdfFontUses::Use>& fonts) {
    auto named = QPDFObjectHandle::newDictionary();
    for (std::size_t place = 0; place < fonts.size(); ++place)
        if (fonts[place].letters.any())
            named.replaceKey("/F" + std::to_string(place),
                             embedded(file, *fonts[place].font, fonts[place].letters));
    auto resources = QPDFObjectHandle::newDictionary();
    resources.replaceKey("/Font", named);
    return file.makeIndirectObject(resources);
}

void setPages(QPDF& file, const std::vector<PdfPage>& pages, const std::vector<PdfFontUses::Use>& fonts) {
    QPDFPageDocumentHelper all(file);
    const auto painted = all.getAllPages();
    std::optional<QPDFObjectHandle> resources;
    std::size_t next = 0;
    for (const auto& page : pages) {
        if (page.painted) {
            setSize(file, painted.at(next++).getObjectHandle(), page);
            continue;
        }
        if (!resources) resources = resourcesOf(file, fonts);
        const QPDFPageObjectHelper told(toldPage(file, page, *resources));
        if (next < painted.size())
            all.addPageAt(told, true, painted[next]);
        else
            all.addPage(told, false);
    }
}

}  // namespace

QByteArray completed(const QByteArray& painted, const platform::PdfSettings& settings,
                     const std::vector<PdfPage>& pages, const std::vector<PdfFontUses::Use>& fonts) {
    // In UTC: PDF and XMP write other offsets in ways that do not compare.
    const auto now = QDateTime::currentDateTimeUtc();
    QPDF file;
    if (painted.isEmpty())
        file.emptyPDF();
    else
        file.processMemoryFile("page", painted.constData(), static_cast<std::size_t>(painted.size()));
    setInformation(file, settings, now.toString(QStringLiteral("'D:'yyyyMMddHHmmss'Z'")).toStdString());
    if (settings.archive)
        setMetadata(file, xmpOf(settings, now.toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss'Z'"))));
    setPages(file, pages, fonts);
    QPDFWriter writer(file);
    writer.setOutputMemory();
    writer.setMinimumPDFVersion("1.4");
    writer.setStreamDataMode(qpdf_s_preserve);  // they are packed
    if (settings.archive) {
        writer.setObjectStreamMode(qpdf_o_disable);
        writer.setNewlineBeforeEndstream(true);
    }
    if (!settings.ownerPassword.empty())
        writer.setR6EncryptionParameters("", toUtf8(settings.ownerPassword).c_str(), true, false, false,
                                         false, false, false, qpdf_r3p_full, true);
    writer.write();
    const std::unique_ptr<Buffer> buffer(writer.getBuffer());
    return QByteArray(reinterpret_cast<const char*>(buffer->getBuffer()),
                      static_cast<qsizetype>(buffer->getSize()));
}

}  // namespace tsRtm::desktop

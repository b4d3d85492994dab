// The field description: its type word and its compound title.
#include "tsRtm/fields/TSIO.hpp"

#include "tests/support/Told.hpp"

namespace tsRtm {
namespace {

TSIO titled(TextView title) {
    TSIO field;
    field.Titel(title);
    return field;
}

TEST(TSIO, TypeWordTellsTheKind) {
    // Letters: m memo, b blob, x encrypted, k chain, a alphanumeric, h hidden.
    using Row = std::tuple<int32, std::string, Typen>;
    for (const auto& [typ, letters, datentyp] :
         {Row{tsAlles, "a", typALLES}, Row{tsZiffern_Sonderzeichen, "a", typTELEFON},
          Row{tsNumerisch, "", typWERT}, Row{tsMemo, "m", typNN}, Row{tsMemoEncrypted, "mx", typNN},
          Row{tsKette, "k", typNN}, Row{tsBlob, "b", typNN}, Row{tsBlobEncrypted, "bx", typNN},
          Row{tsAutowert, "", typWERT}, Row{tsUnsichtbar, "a", typALLES},  // the low bits would say blob
          Row{tsKeine_Eingabe, "ah", typALLES}, Row{tsMemo | fUniCode, "m", typNN},
          Row{tsAlphanumerisch | fUniCode, "a", typDRUCKBAR},
          Row{tsAlphanumerisch | fUnSichtbar, "ah", typDRUCKBAR}}) {
        TSIO field;
        field.Typ(typ);
        std::string kind;
        if (field.IsMemo()) kind += field.IsEncryptedMemo() ? "mx" : "m";
        if (field.IsBlob()) kind += field.IsEncryptedBlob() ? "bx" : "b";
        if (field.IsKette()) kind += "k";
        if (field.IsAlpha()) kind += "a";
        if (!field.Visible()) kind += "h";
        EXPECT_EQ(kind, letters) << "Typ " << typ;
        EXPECT_EQ(field.Datentyp(), datentyp) << "Typ " << typ;
    }
}

TEST(TSIO, WritingAFlagLeavesTheOtherBits) {
    TSIO field;
    field.Typ(typWERT | fEingabe_notwendig);
    field.ReadOnly(true);
    field.Alignment(ausrichtungRechts);
    field.Datentyp(typDATUM);
    EXPECT_EQ(field.Typ(), typDATUM | fEingabe_notwendig | fkeine_EingabeMoeglichkeit | fRechtsbuendig);
    field.ReadOnly(false);
    field.Alignment(ausrichtungLinks);
    EXPECT_EQ(field.Typ(), typDATUM | fEingabe_notwendig);
    field.Visible(false);
    field.Visible(true);
    EXPECT_FALSE(field.Visible()) << "once hidden stays hidden";
}

TEST(TSIO, TitleIsReadByItsParts) {
    const std::tuple<TextView, TextView, TextView, TextView, TextView> rows[] = {
        {u"", u"", u"", u"", u""},
        {u"&Betrag", u"&Betrag", u"", u"", u""},
        {u"&Uhrzeit     @Hilfe@7UHRZEIT", u"&Uhrzeit     ", u"Hilfe", u"UHRZEIT", u""},
        {u"A@@6 12/x@7b:C", u"A", u"", u"b:C", u" 12/x"},
        {u"A@7NAME", u"A", u"7NAME", u"", u""},  // the first part behind the caption is always the help
        {u"A@h@7", u"A", u"h", u"", u""},
        {u"A@h@7x@7y", u"A", u"h", u"x", u""}};
    for (const auto& [title, caption, help, names, width] : rows) {
        const auto field = titled(title);
        SCOPED_TRACE(toUtf8(title));
        EXPECT_EQ(
            std::tuple(field.Caption(), field.Hilfe(), field.EXTENSION(extHILFE), field.EXTENSION(extNAMEN),
                       field.EXTENSION(extDISPLAYWIDTH), field.EXTENSION(10)),
            std::tuple(caption, help, help, names, width, u""));
    }
}

TEST(TSIO, TitleIsWrittenPartByPart) {
    const std::tuple<TextView, void (*)(TSIO&), TextView> rows[] = {
        {u"A@h@7N", [](TSIO& f) { f.Caption(u"Neu"); }, u"Neu@h@7N"},
        {u"A@alt@7N", [](TSIO& f) { f.EXTENSION(-1, u"neu"); }, u"A@neu@7N"},
        {u"A", [](TSIO& f) { f.EXTENSION(0, u"1-5"); }, u"A@@01-5"},
        {u"A@h", [](TSIO& f) { f.ShellCommand(u"x"); }, u"A@h@8x"},
        {u"A@h@0alt@7N", [](TSIO& f) { f.Rules(u"neu"); }, u"A@h@0neu@7N"},
        {u"A@h@0alt@7N", [](TSIO& f) { f.Rules(u""); }, u"A@h@0@7N"},
        {u"A", [](TSIO& f) { f.Rules(u""); }, u"A"},
        {u"A@h", [](TSIO& f) { f.EXTENSION(10, u"x"); }, u"A@h"},
        {u"A@h@612/3", [](TSIO& f) { f.DisplayWidth(40); }, u"A@h@640/3"},
        {u"A", [](TSIO& f) { f.DisplayWidth(40); }, u"A@@640"},
        {u"A@h@7alt:o(1).p", [](TSIO& f) { f.Name(u"neu"); }, u"A@h@7NEU:o(1).p"},
        {u"A@h@7n:o", [](TSIO& f) { f.ObjectName(u"p"); }, u"A@h@7n:P"},
        {u"A@h@7n", [](TSIO& f) { f.ObjectName(u"p"); }, u"A@h@7P:"},  // stored data relies on it
    };
    for (const auto& [before, write, after] : rows) {
        auto field = titled(before);
        write(field);
        EXPECT_EQ(field.Titel(), after) << toUtf8(before);
    }
    EXPECT_TOLD("NAME|OBJ|12", titled(u"A@h@7name:obj").Name(), titled(u"A@h@7name:obj").ObjectName(),
                titled(u"A@h@612/3").DisplayWidth());
}

TEST(TSIO, CloneLeavesContentAndMarksBehind) {
    auto field = titled(u"A@h");
    field.Laenge(8);
    field.Seite(2);
    field.DBFeldName(u"NAME");
    field.Inhalt(u"Inhalt");
    field.IstIndexFeld(true);
    field.IstKetteFeld(true);
    const auto copy = field.Clone();
    EXPECT_TOLD("A@h|8|2|NAME||no|no", copy->Titel(), copy->Laenge(), copy->Seite(), copy->DBFeldName(),
                copy->Inhalt(), copy->IstIndexFeld(), copy->IstKetteFeld());
}

}  // namespace
}  // namespace tsRtm

// The field description: its type word and its compound title.
#include "tsRtm/fields/TSIO.hpp"

#include <gtest/gtest.h>

namespace tsRtm {
namespace {

TSIO titled(TextView title) {
    TSIO field;
    field.Titel(title);
    return field;
}

TEST(TSIO, TypeWordTellsTheKind) {
    enum Kind {
        plain = 0,
        memo = 1,
        secretMemo = 2,
        blob = 4,
        secretBlob = 8,
        kette = 16,
        alpha = 32,
        unseen = 64
    };
    struct Row {
        int32 typ;
        int32 kind;
        Typen datentyp;
    };
    const Row rows[] = {
        {tsAlles, alpha, typALLES},
        {tsZiffern_Sonderzeichen, alpha, typTELEFON},
        {tsZiffern, plain, typZIFFERN},
        {tsNumerisch, plain, typWERT},
        {tsTagesdatum, plain, typDATUM},
        {tsMemo, memo, typNN},
        {tsMemoEncrypted, memo | secretMemo, typNN},
        {tsProperties, memo, typNN},
        {tsCheckBox, plain, typNN},
        {tsKette, kette, typNN},
        {tsKette_ohne_F9, kette, typNN},
        {tsBlob, blob, typNN},
        {tsBlobEncrypted, blob | secretBlob, typNN},
        {tsAutowert, plain, typWERT},
        {tsUnsichtbar, alpha, typALLES},  // the low bits would say blob
        {tsKeine_Eingabe, alpha | unseen, typALLES},
        {tsMemo | fUniCode, memo, typNN},
        {tsAlphanumerisch | fUniCode, alpha, typDRUCKBAR},
        {tsAlphanumerisch | fUnSichtbar, alpha | unseen, typDRUCKBAR},
    };
    for (const auto& row : rows) {
        TSIO field;
        field.Typ(row.typ);
        const int32 kind = (field.IsMemo() ? memo : 0) | (field.IsEncryptedMemo() ? secretMemo : 0) |
                           (field.IsBlob() ? blob : 0) | (field.IsEncryptedBlob() ? secretBlob : 0) |
                           (field.IsKette() ? kette : 0) | (field.IsAlpha() ? alpha : 0) |
                           (field.Visible() ? 0 : unseen);
        EXPECT_EQ(kind, row.kind) << "Typ " << row.typ;
        EXPECT_EQ(field.Datentyp(), row.datentyp) << "Typ " << row.typ;
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
    struct Row {
        TextView title, caption, help, names, width;
    };
    const Row rows[] = {
        {u"", u"", u"", u"", u""},
        {u"&Betrag", u"&Betrag", u"", u"", u""},
        {u"&Uhrzeit     @Hilfe@7UHRZEIT", u"&Uhrzeit     ", u"Hilfe", u"UHRZEIT", u""},
        {u"A@@6 12/x@7b:C", u"A", u"", u"b:C", u" 12/x"},
        {u"A@7NAME", u"A", u"7NAME", u"", u""},  // the first part behind the caption is always the help
        {u"A@h@7", u"A", u"h", u"", u""},
        {u"A@h@7x@7y", u"A", u"h", u"x", u""},
    };
    for (const auto& row : rows) {
        const auto field = titled(row.title);
        EXPECT_EQ(field.Caption(), row.caption) << toUtf8(row.title);
        EXPECT_EQ(field.Hilfe(), row.help) << toUtf8(row.title);
        EXPECT_EQ(field.EXTENSION(extHILFE), row.help) << toUtf8(row.title);
        EXPECT_EQ(field.EXTENSION(extNAMEN), row.names) << toUtf8(row.title);
        EXPECT_EQ(field.EXTENSION(extDISPLAYWIDTH), row.width) << toUtf8(row.title);
        EXPECT_EQ(field.EXTENSION(10), u"") << toUtf8(row.title);
    }
}

TEST(TSIO, TitleIsWrittenPartByPart) {
    using Write = void (*)(TSIO&);
    struct Row {
        TextView before;
        Write write;
        TextView after;
    };
    const Row rows[] = {
        {u"A@h@7N", [](TSIO& f) { f.Caption(u"Neu"); }, u"Neu@h@7N"},
        {u"A", [](TSIO& f) { f.Hilfe(u"h"); }, u"A@h"},
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
        {u"A@h@7n", [](TSIO& f) { f.ObjectName(u"p"); }, u"A@h@7P:"},  // the format has always had it so
    };
    for (const auto& row : rows) {
        auto field = titled(row.before);
        row.write(field);
        EXPECT_EQ(field.Titel(), row.after) << toUtf8(row.before);
    }
    EXPECT_EQ(titled(u"A@h@7name:obj").Name(), u"NAME");
    EXPECT_EQ(titled(u"A@h@7name:obj").ObjectName(), u"OBJ");
    EXPECT_EQ(titled(u"A@h@612/3").DisplayWidth(), 12);
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
    EXPECT_EQ(copy->Titel(), u"A@h");
    EXPECT_EQ(copy->Laenge(), 8);
    EXPECT_EQ(copy->Seite(), 2);
    EXPECT_EQ(copy->DBFeldName(), u"NAME");
    EXPECT_EQ(copy->Inhalt(), u"");
    EXPECT_FALSE(copy->IstIndexFeld());
    EXPECT_FALSE(copy->IstKetteFeld());
}

}  // namespace
}  // namespace tsRtm

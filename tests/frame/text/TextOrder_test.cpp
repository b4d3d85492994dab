// The code pages, and the order of texts within them and beyond.
#include "tsRtm/frame/text/TextOrder.hpp"

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <random>
#include <vector>

#include "tests/support/Table.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm {
namespace {

TEST(CodePages, EveryByteSurvivesTheWayThroughText) {
    Bytes bytes;
    for (int code = 0; code < 256; ++code) {
        bytes.push_back(static_cast<char>(code));
        EXPECT_EQ(unicodeToAnsi(ansiToUnicode(static_cast<uint8>(code))), code);
    }
    EXPECT_EQ(toAnsi(fromAnsi(bytes)), bytes);
    EXPECT_EQ(fromUtf16Le(toUtf16Le(fromAnsi(bytes))), fromAnsi(bytes));
}

TEST(CodePages, Ansi) {
    EXPECT_EQ(fromAnsi("\x80 \x8A\x8E\x9F \xC4\xDF\xFF"), u"€ ŠŽŸ Äßÿ");
    EXPECT_EQ(fromAnsi("\x81\x8D\x8F\x90\x9D"), u"\u0081\u008D\u008F\u0090\u009D");
    EXPECT_EQ(toAnsi(u"Łóż \u0080"), "?\xF3? ?");
    EXPECT_EQ(unicodeToAnsi(u'Ł'), -1);
    Text text = u"longer than what comes";
    fromAnsi("ab", text);
    EXPECT_EQ(text, u"ab");
}

TEST(CodePages, OemBothWays) {
    const Text oem = fromAnsi("\x84\x94\x81\x8E\x99\x9A\xE1\xF5");
    EXPECT_EQ(OemToChar(oem), u"äöüÄÖÜß§");
    EXPECT_EQ(CharToOem(u"äöüÄÖÜß§"), oem);
    EXPECT_EQ(ansiToOem("\x80\x93\x94"), "?\"\"");  // best fit where the other page has no equal
    EXPECT_EQ(oemToAnsi("\xC9\xCD\xBB"), "+-+");
    for (int code = 0; code < 128; ++code) {
        const Bytes one(1, static_cast<char>(code));
        EXPECT_EQ(oemToAnsi(one), one) << code;
        EXPECT_EQ(ansiToOem(one), one) << code;
    }
}

TEST(CodePages, Utf16) {
    EXPECT_EQ(toUtf16Le(u"Aß€"), Bytes("A\0\xDF\0\xAC\x20", 6));
    EXPECT_EQ(fromUtf16Le(Bytes("A\0B", 3)), u"A");  // half a character at the end
}

int sign(std::strong_ordering order) { return order < 0 ? -1 : order > 0 ? 1 : 0; }

Bytes keyBy(void (*append)(Bytes&, BytesView), BytesView text) {
    Bytes key;
    append(key, text);
    return key;
}
Bytes ansiKey(BytesView text) { return keyBy(appendSortKeyAnsi, text); }
Bytes dosKey(BytesView text) { return keyBy(appendSortKeyDos, text); }
Bytes textKey(TextView text) {
    Bytes key;
    appendSortKey(key, text);
    return key;
}

int compareBytes(const Bytes& a, const Bytes& b) { return sign(a.compare(b) <=> 0); }

// Every face gives the same answer for texts of the code page.
void expectOrder(const Bytes& a, const Bytes& b, int expected) {
    EXPECT_EQ(sign(compareAnsi(a, b)), expected);
    EXPECT_EQ(sign(compareAnsi(b, a)), -expected);
    EXPECT_EQ(compareBytes(ansiKey(a), ansiKey(b)), expected);
    EXPECT_EQ(sign(AnsiSearchKey(a).compare(b)), expected);
    EXPECT_EQ(TextCompare(fromAnsi(a), fromAnsi(b)), expected);
    EXPECT_EQ(textKey(fromAnsi(a)), ansiKey(a));
}

TEST(TextOrder, AgreesWithMeasuredPairs) {
    std::ifstream file(TSRTM_TEST_DATA "/text-order-pairs.tsv");
    std::string line;
    std::getline(file, line);
    int count = 0;
    while (std::getline(file, line)) {
        SCOPED_TRACE(line);
        const auto first = line.find('\t');
        const auto second = line.find('\t', first + 1);
        ASSERT_NE(second, std::string::npos);
        expectOrder(toAnsi(fromUtf8(line.substr(0, first))),
                    toAnsi(fromUtf8(line.substr(first + 1, second - first - 1))),
                    std::stoi(line.substr(second + 1)));
        ++count;
    }
    EXPECT_EQ(count, 600);
}

// NUL and the soft hyphen weigh nothing, control characters least, by code, below hyphen and dashes; the hard
// blank comes behind the blank, superscripts behind their letters; some letters expand. A hyphen decides only
// at the end, the earlier one is the greater; so with accents, which come before hyphens.
TEST(TextOrder, RareCharacters) {
    using namespace std::string_literals;
    for (const auto& [text, equal] : {std::pair{""s, "\0"s},
                                      {"Amts\xADgericht", "Amtsgericht"},
                                      {"\x8C\xC6\xDE", "oeaeth"},
                                      {"\xFF", "\x9F"}})
        expectOrder(text, equal, 0);
    const std::vector<Bytes> ascending[] = {
        {"", "\x01", "\x1F", "\x7F", "'", "-", "\x96", "\x97", " ", "\xA0", "\t"},
        {"a", "\xAA", "b"},
        {"2", "\xB2", "3"},
        {"od", "\x9C", "of"},
        {"\x8E", "Zzzz"},
        {"coop", "co-op", "c-oop", "coopa"},
        {"e\xEA", "\xE9\x65"},
        {"coope", "co-op\xE9"},
        {"co-ope", "coop\xE9"}};
    for (const auto& texts : ascending)
        for (std::size_t i = 0; i < texts.size(); ++i)
            for (std::size_t j = i; j < texts.size(); ++j) {
                SCOPED_TRACE(toUtf8(fromAnsi(texts[i])) + " against " + toUtf8(fromAnsi(texts[j])));
                expectOrder(texts[i], texts[j], i == j ? 0 : -1);
            }
    EXPECT_EQ(lastAnsiByte(), 0x8E);
}

// Texts that are often nearly alike, so that every level is reached.
class RandomTexts {
 public:
    Bytes next(std::size_t longest) {
        static constexpr BytesView kTies =
            "aAbB \xE4\xC4\xDF-'\xAD\xB2"
            "2\x01s";
        Bytes text(random_() % (longest + 1), ' ');
        for (char& c : text)
            c = random_() % 8 == 0 ? static_cast<char>(random_() % 256) : kTies[random_() % kTies.size()];
        return text;
    }
    // The text with one byte changed, put in or taken out.
    Bytes changed(Bytes text) {
        const auto at = random_() % (text.size() + 1);
        const auto byte = next(1);
        return text.replace(at, random_() % 2, byte);
    }
    std::size_t number(std::size_t below) { return random_() % below; }

 private:
    std::mt19937 random_{20240615};
};

TEST(TextOrder, FacesAgreeOnRandomTexts) {
    RandomTexts random;
    for (int i = 0; i < 20000; ++i) {
        const Bytes a = random.next(i % 16 == 0 ? 300 : 7);
        const Bytes b = random.number(3) == 0 ? random.next(7) : random.changed(a);
        // Bytes of a key compare transitively, so agreement proves that the others do.
        const int byKey = compareBytes(ansiKey(a), ansiKey(b));
        expectOrder(a, b, byKey);
        EXPECT_EQ(ansiKey(a).find('\0'), Bytes::npos);
        if (HasFailure()) FAIL() << toUtf8(fromAnsi(a)) << " against " << toUtf8(fromAnsi(b));
    }
}

TEST(TextOrder, PiecesAreOneTextJoinedByBlanks) {
    RandomTexts random;
    for (int i = 0; i < 5000; ++i) {
        const std::array<Bytes, 3> fields = {random.next(4), random.next(4), random.next(4)};
        const std::array<BytesView, 3> views = {fields[0], fields[1], fields[2]};
        const std::size_t count = 1 + random.number(3);
        const Pieces pieces(views.data(), count);
        Bytes joined = fields[0];
        for (std::size_t k = 1; k < count; ++k) joined += " " + fields[k];
        const Bytes search = random.number(2) == 0 ? random.next(14) : random.changed(joined);

        EXPECT_EQ(sign(AnsiSearchKey(search).compare(pieces)), sign(compareAnsi(search, joined)));
        EXPECT_EQ(sign(DosSearchKey(search).compare(pieces)), sign(compareDos(search, joined)));
        // The columns of the first field as a record has them, filled up with blanks.
        Bytes ansi, dos;
        appendSortKeyAnsi(ansi, pieces);
        appendSortKeyDos(dos, pieces);
        EXPECT_EQ(ansi, ansiKey(joined));
        EXPECT_EQ(dos, dosKey(joined));
        if (HasFailure()) FAIL() << toUtf8(fromAnsi(search)) << " against " << toUtf8(fromAnsi(joined));
    }
}

TEST(TextOrder, ManyPlacesBetweenMarks) {
    // Distances beyond one byte of the key; an early accent beats a late one.
    for (const std::size_t distance : {238u, 239u, 240u, 241u, 479u, 480u, 481u, 2000u}) {
        SCOPED_TRACE(distance);
        const Bytes plain(2100, 'a');
        Bytes late = plain, later = plain;
        late[distance] = '\xE4';
        later[distance + 1] = '\xE4';
        expectOrder(late, later, 1);
        expectOrder(plain, later, -1);
    }
}

TEST(TextOrder, CharactersOutsideTheCodePage) {
    // Emoji: ICU sorts them before letters.
    const Text ordered[] = {u"",     u"Ž",    u"Žá",  u"Zoe",   u"\U0001F600", u"\U0001F600\U0001F601",
                            u"Č",    u"Ł",    u"Ła",  u"Łan-a", u"Λάμδα",      u"Елка",
                            u"Ёлка", u"Елки", u"日本"};
    for (std::size_t i = 0; i < std::size(ordered); ++i)
        for (std::size_t j = 0; j < std::size(ordered); ++j) {
            SCOPED_TRACE(toUtf8(ordered[i]) + " against " + toUtf8(ordered[j]));
            EXPECT_EQ(TextCompare(ordered[i], ordered[j]), i < j ? -1 : i > j ? 1 : 0);
            EXPECT_EQ(compareBytes(textKey(ordered[i]), textKey(ordered[j])), i < j ? -1 : i > j ? 1 : 0);
        }
    EXPECT_EQ(TextCompare(u"ŁÓDŹ", u"łódź"), 0);
    EXPECT_EQ(TextCompare(Text(u"Ł") + u'\0' + u"ć", u"łĆ"), 0);
    EXPECT_EQ(textKey(u"日本-\xD800").find('\0'), Bytes::npos);
}

TEST(DosOrder, FoldsCaseAndAccents) {
    const auto dos = [](const Text& text) { return ansiToOem(toAnsi(text)); };
    for (const auto& [a, b, wanted] :
         test::table<3>(u"müller=MULLER=0; Größe=GROSE=0; Éclair=eclair=0; Ångström=ANGSTROM=0; æ=Æ=0; "
                        u"Æ=Z=1; þ=Þ=0; Straße=Strasse=-1; Meier=Meier =-1; a-b=aab=-1; _=a=1; [=a=1",
                        u"; ")) {
        SCOPED_TRACE(toUtf8(a) + " against " + toUtf8(b));
        for (const int order :
             {sign(compareDos(dos(a), dos(b))), compareBytes(dosKey(dos(a)), dosKey(dos(b))),
              sign(DosSearchKey(dos(a)).compare(dos(b)))})
            EXPECT_EQ(order, test::number(wanted));
    }
    // Range searches end in 255, a hard blank in this code page.
    for (int code = 0; code < 255; ++code)
        EXPECT_EQ(sign(compareDos(Bytes(1, static_cast<char>(code)), "\xFF")), -1);
    EXPECT_EQ(dosKey(Bytes(1, '\0')).find('\0'), Bytes::npos);
}

}  // namespace
}  // namespace tsRtm

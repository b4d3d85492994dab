#include "tsRtm/frame/rtf/Reader.hpp"

#include <algorithm>
#include <utility>

#include "tsRtm/frame/rtf/BorderWords.hpp"
#include "tsRtm/frame/rtf/Charsets.hpp"
#include "tsRtm/frame/rtf/FormatWords.hpp"
#include "tsRtm/frame/rtf/HeadTables.hpp"
#include "tsRtm/frame/rtf/PictureText.hpp"
#include "tsRtm/frame/rtf/RowWords.hpp"
#include "tsRtm/frame/rtf/Tokens.hpp"

namespace tsRtm::rtf {
namespace {

// Control words that stand for a character.
struct CharacterRow {
    TextView name;
    char16_t character;
};
constexpr CharacterRow kCharacters[] = {
    {u"bullet", u'\u2022'},  {u"emdash", u'\u2014'},    {u"emspace", u'\u2003'}, {u"endash", u'\u2013'},
    {u"enspace", u'\u2002'}, {u"ldblquote", u'\u201C'}, {u"lquote", u'\u2018'},  {u"ltrmark", u'\u200E'},
    {u"qmspace", u'\u2005'}, {u"rdblquote", u'\u201D'}, {u"rquote", u'\u2019'},  {u"rtlmark", u'\u200F'},
    {u"tab", u'\t'},         {u"zwj", u'\u200D'},       {u"zwnj", u'\u200C'},
};

struct BreakRow {
    TextView name;
    Break kind;
};
constexpr BreakRow kBreaks[] = {
    {u"cell", Break::cell},     {u"column", Break::page}, {u"line", Break::line}, {u"page", Break::page},
    {u"par", Break::paragraph}, {u"row", Break::row},     {u"sect", Break::page},
};

// Destinations whose content is no running text. Those behind "\*" are skipped without being known.
constexpr TextView kSkipped[] = {
    u"annotation", u"bkmkend", u"bkmkstart",  u"falt",     u"filetbl",      u"fldinst",    u"footer",
    u"footerf",    u"footerl", u"footerr",    u"footnote", u"header",       u"headerf",    u"headerl",
    u"headerr",    u"info",    u"listtable",  u"nextfile", u"nonesttables", u"nonshppict", u"objdata",
    u"revtbl",     u"rxe",     u"stylesheet", u"tc",       u"tcn",          u"xe",
};

template <class Row, std::size_t Count>
const Row* rowOf(const Row (&rows)[Count], TextView name) noexcept {
    const auto* row = std::ranges::lower_bound(rows, name, {}, &Row::name);
    return row != std::end(rows) && row->name == name ? row : nullptr;
}

static_assert(std::ranges::is_sorted(kCharacters, {}, &CharacterRow::name));
static_assert(std::ranges::is_sorted(kBreaks, {}, &BreakRow::name));
static_assert(std::ranges::is_sorted(kSkipped));

enum class Content { text, fonts, colours, picture, shape, shapeName, shapePicture, nothing };

// What a group inherits and its end takes back.
struct Group {
    Content content = Content::text;
    Content aroundFaces = Content::nothing;  // of the group that has an \upr
    CharacterFormat character;
    ParagraphState paragraph;
    int32 standIns = 1;  // characters behind \u that stand for it in old readers
    bool label = false;  // of a list
};

// A shape: a picture, or a frame with a text of its own.
struct Shape {
    void word(const Token& word) {
        const int32 number = std::clamp(word.number, -kLargestLength, kLargestLength);
        if (word.name == u"shpleft") left = number;
        if (word.name == u"shptop") top = number;
        if (word.name == u"shpright") right = number;
        if (word.name == u"shpbottom") bottom = number;
    }
    int32 width() const noexcept { return std::clamp(right - left, 0, kLargestLength); }
    int32 height() const noexcept { return std::clamp(bottom - top, 0, kLargestLength); }

    int32 left = 0, top = 0, right = 0, bottom = 0;
    Text name;           // of the pair that is read
    bool shown = false;  // its stand-in is not wanted
};

class Reader {
 public:
    Reader(TextView rtf, Visitor& visitor) : tokens_(rtf), visitor_(visitor) {}

    void read() {
        for (Token token = tokens_.next(); token.kind != TokenKind::end && !ended_; token = tokens_.next()) {
            if (token.kind == TokenKind::text && !bytes_.empty()) takeTrail(token.text);
            if (token.kind != TokenKind::byte) flushBytes();
            take(token);
        }
        flushBytes();
        giveBreak(Break::end);
    }

 private:
    // Groups beyond share the state of the last one.
    static constexpr std::size_t kDeepest = 1000;

    Group& group() noexcept { return groups_.back(); }
    bool shows() noexcept { return group().content == Content::text; }

    void take(const Token& token) {
        const bool starred = std::exchange(starred_, false);
        switch (token.kind) {
            case TokenKind::open:
                standIns_ = 0;
                openGroup();
                break;
            case TokenKind::close:
                standIns_ = 0;
                closeGroup();
                break;
            case TokenKind::text:
                takeText(token.text);
                break;
            case TokenKind::byte:
                if (!isStandIn()) bytes_.push_back(static_cast<char>(token.number));
                break;
            case TokenKind::symbol:
                if (!isStandIn()) takeSymbol(token.character);
                break;
            case TokenKind::word:
                if (!isStandIn()) takeWord(token, starred);
                break;
            case TokenKind::end:
                break;
        }
    }

    void openGroup() {
        if (groups_.size() < kDeepest)
            groups_.push_back(Group(group()));
        else
            ++tooDeep_;
    }

    void closeGroup() {
        if (tooDeep_ > 0)
            --tooDeep_;
        else if (groups_.size() > 2)
            leaveGroup();
        else
            ended_ = true;  // what follows the outermost group is not of the text
    }

    void leaveGroup() {
        const auto content = group().content;
        const bool label = group().label;
        groups_.pop_back();
        if (label && !group().label) endLabel();
        if (content == Content::picture && (shows() || group().content == Content::shapePicture))
            givePicture();
    }

    // What writers set before a number is no part of it; one of nothing but a tabulator is none.
    void endLabel() {
        if (labelGiven_) return;
        run_.erase(0, run_.find_first_not_of(u' '));
        if (run_.find_first_not_of(u" \t") == Text::npos) run_.clear();
    }

    void givePicture() {
        auto picture = pictures_.picture();
        if (group().content == Content::shapePicture) {
            if (picture.width == 0) picture.width = shape_.width();
            if (picture.height == 0) picture.height = shape_.height();
            shape_.shown = true;
        }
        flushRun();
        visitor_.onPicture(picture);
    }

    bool isStandIn() noexcept {
        if (standIns_ == 0) return false;
        --standIns_;
        return true;
    }

    void takeText(TextView text) {
        const std::size_t skipped = std::min(text.size(), static_cast<std::size_t>(standIns_));
        standIns_ -= static_cast<int32>(skipped);
        give(text.substr(skipped));
    }

    // The second half of a character may stand for itself, as "A" in \'83A.
    void takeTrail(TextView& text) {
        if (standIns_ > 0 || text.front() > 0x7F || !awaitsTrail(bytes_, codePage())) return;
        bytes_.push_back(static_cast<char>(text.front()));
        text.remove_prefix(1);
    }

    void takeSymbol(char16_t c) {
        switch (c) {
            case u'*':
                starred_ = true;
                break;
            case u'\\':
            case u'{':
            case u'}':
            case u'\t':
                give({&c, 1});
                break;
            case u'~':
                give(u"\u00A0");
                break;
            case u'-':
                give(u"\u00AD");
                break;
            case u'_':
                give(u"\u2011");
                break;
            case u'\r':
            case u'\n':
                if (shows()) giveBreak(Break::paragraph);
                break;
            default:
                break;
        }
    }

    void takeWord(const Token& word, bool starred) {
        if (word.name == u"u" && word.hasNumber)
            takeUnicode(word.number);
        else if (word.name == u"uc")
            group().standIns = std::max(word.hasNumber ? word.number : 1, 0);
        else if (!takeDestination(word.name, starred) && !takeDocumentWord(word))
            takeWordOf(group().content, word);
    }

    void takeWordOf(Content content, const Token& word) {
        if (content == Content::fonts) fonts_.word(word);
        if (content == Content::colours) colours_.word(word);
        if (content == Content::picture) pictures_.word(word);
        if (content == Content::shape) shape_.word(word);
        if (content != Content::text || row_.take(word, colours_)) return;
        auto& paragraph = group().paragraph;
        if (applyCharacterWord(group().character, word) || applyParagraphWord(paragraph, word) ||
            applyBoxWord(paragraph, word, colours_))
            return;
        if (const auto* row = rowOf(kCharacters, word.name)) give({&row->character, 1});
        if (word.name == u"nestcell") give(u"\t");
        if (const auto* row = rowOf(kBreaks, word.name)) giveBreak(row->kind);
    }

    // Codes from 8000 on, in hexadecimal, come as negative numbers.
    void takeUnicode(int32 number) {
        const auto unit = static_cast<char16_t>(static_cast<uint32>(number) & 0xFFFF);
        give({&unit, 1});
        standIns_ = group().standIns;
    }

    bool takeDestination(TextView name, bool starred) {
        if (name == u"fonttbl" || name == u"colortbl") {
            if (shows()) group().content = name == u"fonttbl" ? Content::fonts : Content::colours;
        } else if (name == u"upr") {
            group().aroundFaces = std::exchange(group().content, Content::nothing);
        } else if (name == u"ud" && starred) {
            group().content = group().aroundFaces;  // the Unicode face; the other one is skipped
        } else if (name == u"pict") {
            if (shows() || group().content == Content::shapePicture) {
                group().content = Content::picture;
                pictures_ = {};
            }
        } else if (name == u"nesttableprops") {
            if (shows()) giveBreak(Break::paragraph);  // a row of an inner table ends
            group().content = Content::nothing;
        } else if (name == u"listtext" || name == u"pntext") {
            flushRun();
            labelGiven_ = false;
            group().label = true;
        } else if (name == u"shppict" || takeShape(name)) {
            return true;  // the picture as newer readers know it; a shape
        } else if (starred || std::ranges::binary_search(kSkipped, name)) {
            group().content = Content::nothing;
        } else {
            return false;
        }
        return true;
    }

    // A shape tells what it is in pairs of name and value; old readers find a stand-in for it behind.
    bool takeShape(TextView name) {
        auto& content = group().content;
        const bool within = content == Content::shape;
        if (name == u"shpinst" && (shows() || within)) {
            content = Content::shape;
            shape_ = {};
        } else if (name == u"shptxt" && within) {
            content = Content::text;
            shape_.shown = true;
        } else if (name == u"sn" && within) {
            content = Content::shapeName;
            shape_.name.clear();
        } else if (name == u"sv" && within) {
            content = shape_.name == u"pib" ? Content::shapePicture : Content::nothing;
        } else if (name == u"shprslt" && shape_.shown) {
            content = Content::nothing;
        } else {
            return false;
        }
        return true;
    }

    bool takeDocumentWord(const Token& word) {
        if (word.name == u"sbknone")
            newPage_ = false;
        else if (word.name == u"deff")
            defaultFont_ = word.number;
        else if (word.name == u"deftab")
            defaultTab_ = word.number > 0 ? std::min(word.number, kLargestLength) : defaultTab_;
        else if (word.name == u"ansicpg")
            documentPage_ = word.number;
        else if (word.name == u"pc")
            documentPage_ = 437;
        else if (word.name == u"pca")
            documentPage_ = 850;
        else if (word.name == u"mac")
            documentPage_ = 10000;
        else
            return false;
        return true;
    }

    int32 fontNumber(const CharacterFormat& format) const noexcept {
        return format.font == kNoNumber ? defaultFont_ : format.font;
    }

    // Of the bytes that come now.
    int32 codePage() {
        const bool naming = group().content == Content::fonts;
        const int32 font = naming ? fonts_.current() : fontNumber(group().character);
        const int32 own = codePageOfCharset(fonts_.font(font).charset);
        return own != 0 ? own : documentPage_;
    }

    // Bytes wait until their sequence ends: a character may have several.
    void flushBytes() {
        if (bytes_.empty()) return;
        Text decoded;
        decoder_.append(decoded, bytes_, codePage());
        bytes_.clear();
        give(decoded);
    }

    // Characters, to where the group wants them.
    void give(TextView text) {
        if (group().content == Content::fonts) fonts_.text(text);
        if (group().content == Content::colours) colours_.text(text);
        if (group().content == Content::picture) pictures_.text(text);
        if (group().content == Content::shapeName) shape_.name += text;
        if (shows()) show(text);
    }

    // A line end that comes as a character is one of its line; a NUL is none at all.
    void show(TextView text) {
        constexpr TextView kNoCharacters(u"\r\n\0", 3);
        for (auto end = text.find_first_of(kNoCharacters); end != TextView::npos;
             end = text.find_first_of(kNoCharacters)) {
            append(text.substr(0, end));
            if (text[end] != u'\0') giveBreak(Break::line);
            text.remove_prefix(text.substr(end).starts_with(u"\r\n") ? end + 2 : end + 1);
        }
        append(text);
    }

    void append(TextView text) {
        if (text.empty()) return;
        if (!run_.empty() && runFormat_ != group().character) flushRun();
        if (run_.empty()) runFormat_ = group().character;
        run_ += text;
    }

    void flushRun() {
        if (run_.empty()) return;
        visitor_.onRun(runOf(run_, runFormat_));
        run_.clear();
        labelGiven_ = true;
    }

    Run runOf(TextView text, const CharacterFormat& format) {
        return {text, format, fonts_.font(fontNumber(format)), colours_.colour(format.colour),
                colours_.colour(format.background)};
    }

    void giveBreak(Break kind) {
        flushRun();
        auto& format = group().paragraph.format;
        format.defaultTab = defaultTab_;
        if (kind == Break::row && !row_.row().cells.empty()) visitor_.onRow(row_.row());
        if (kind == Break::line || kind == Break::row) {
            visitor_.onBreak(kind, format);
            return;
        }
        visitor_.onMark(runOf({}, group().character));
        const bool own = format.pageBreakBefore;
        format.pageBreakBefore |= newPage_;
        visitor_.onBreak(kind, format);
        format.pageBreakBefore = own;
        newPage_ = kind == Break::page;
    }

    Tokens tokens_;
    Visitor& visitor_;
    Decoder decoder_;
    FontTable fonts_;
    ColourTable colours_;
    PictureText pictures_;
    RowWords row_;
    Shape shape_;
    std::vector<Group> groups_{Group{}};
    std::size_t tooDeep_ = 0;
    Bytes bytes_;
    Text run_;
    CharacterFormat runFormat_;
    int32 defaultFont_ = 0;
    int32 defaultTab_ = 720;
    int32 documentPage_ = 1252;
    int32 standIns_ = 0;
    bool starred_ = false;
    bool labelGiven_ = false;  // of the label that is read something is with the visitor
    bool newPage_ = false;     // the next paragraph begins one
    bool ended_ = false;
};

}  // namespace

void read(TextView rtf, Visitor& visitor) { Reader(rtf, visitor).read(); }

}  // namespace tsRtm::rtf

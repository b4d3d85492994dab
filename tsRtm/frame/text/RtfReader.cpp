#include "tsRtm/frame/text/RtfReader.hpp"

#include <algorithm>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tsRtm/frame/text/RtfCodePages.hpp"
#include "tsRtm/frame/text/RtfTokens.hpp"

namespace tsRtm {
namespace {

using rtf::Token;
using rtf::TokenKind;

// Control words that stand for text.
struct TextWord {
    TextView name;
    TextView text;
};
constexpr TextWord kTextWords[] = {
    {u"par", u"\r\n"},       {u"line", u"\r\n"},        {u"sect", u"\r\n"},        {u"page", u"\r\n"},
    {u"row", u"\r\n"},       {u"tab", u"\t"},           {u"cell", u"\t"},          {u"nestcell", u"\t"},
    {u"nestrow", u"\r\n"},   {u"emdash", u"\u2014"},    {u"endash", u"\u2013"},    {u"emspace", u"\u2003"},
    {u"enspace", u"\u2002"}, {u"qmspace", u"\u2005"},   {u"bullet", u"\u2022"},    {u"lquote", u"\u2018"},
    {u"rquote", u"\u2019"},  {u"ldblquote", u"\u201C"}, {u"rdblquote", u"\u201D"},
};

// Destinations whose content is no running text. Those behind "\*" are skipped without being known.
constexpr TextView kSkipped[] = {
    u"annotation", u"bkmkend", u"bkmkstart", u"colortbl", u"filetbl", u"fldinst", u"footer",
    u"footerf",    u"footerl", u"footerr",   u"footnote", u"header",  u"headerf", u"headerl",
    u"headerr",    u"info",    u"listtable", u"objdata",  u"pict",    u"revtbl",  u"rxe",
    u"stylesheet", u"tc",      u"upr",       u"xe",
};

enum class Content { text, fonts, nothing };

// What a group inherits and its end takes back.
struct GroupState {
    Content content = Content::text;
    int32 font = -1;            // -1: the default font
    int32 bytesPerUnicode = 1;  // characters behind \u that stand for it in old readers
};

class PlainTextReader {
 public:
    explicit PlainTextReader(TextView rtf) : tokens_(rtf) {}

    Text read() {
        for (Token token = tokens_.next(); token.kind != TokenKind::end && !ended_; token = tokens_.next()) {
            if (token.kind != TokenKind::byte) flushBytes();
            take(token);
        }
        flushBytes();
        return std::move(out_);
    }

 private:
    // Groups beyond share the state of the last one.
    static constexpr std::size_t kDeepest = 1000;

    GroupState& group() { return groups_.back(); }
    bool shows() { return group().content == Content::text; }

    void take(const Token& token) {
        const bool starred = std::exchange(starred_, false);
        switch (token.kind) {
            case TokenKind::open:
                unicodeSkip_ = 0;
                openGroup();
                break;
            case TokenKind::close:
                unicodeSkip_ = 0;
                closeGroup();
                break;
            case TokenKind::text:
                takeText(token.text);
                break;
            case TokenKind::byte:
                if (!skippedForUnicode() && shows()) bytes_.push_back(static_cast<char>(token.number));
                break;
            case TokenKind::symbol:
                if (!skippedForUnicode()) takeSymbol(token.character);
                break;
            case TokenKind::word:
                if (!skippedForUnicode()) takeWord(token, starred);
                break;
            case TokenKind::end:
                break;
        }
    }

    void openGroup() {
        if (groups_.size() < kDeepest)
            groups_.push_back(group());
        else
            ++tooDeep_;
    }

    void closeGroup() {
        if (tooDeep_ > 0)
            --tooDeep_;
        else if (groups_.size() > 2)
            groups_.pop_back();
        else
            ended_ = true;  // what follows the outermost group is not of the text
    }

    bool skippedForUnicode() {
        if (unicodeSkip_ == 0) return false;
        --unicodeSkip_;
        return true;
    }

    void takeText(TextView text) {
        const std::size_t skipped = std::min(text.size(), static_cast<std::size_t>(unicodeSkip_));
        unicodeSkip_ -= static_cast<int32>(skipped);
        if (shows()) out_ += text.substr(skipped);
    }

    void takeSymbol(char16_t c) {
        if (c == u'*') {
            starred_ = true;
            return;
        }
        if (!shows()) return;
        switch (c) {
            case u'\\':
            case u'{':
            case u'}':
                out_.push_back(c);
                break;
            case u'~':
                out_.push_back(u'\u00A0');
                break;
            case u'-':
                out_.push_back(u'\u00AD');
                break;
            case u'_':
                out_.push_back(u'\u2011');
                break;
            case u'\t':
                out_.push_back(c);
                break;
            case u'\r':
            case u'\n':
                out_ += u"\r\n";
                break;
            default:
                break;
        }
    }

    void takeWord(const Token& token, bool starred) {
        const auto is = [&token](TextView name) { return token.name == name; };
        if (is(u"u") && token.hasNumber)
            takeUnicode(token.number);
        else if (is(u"uc"))
            group().bytesPerUnicode = std::max(token.hasNumber ? token.number : 1, 0);
        else if (takeDestination(token.name, starred) || takeFontWord(token))
            return;
        else if (shows())
            takeTextWord(token.name);
    }

    void takeUnicode(int32 number) {
        // Codes from 8000 on come as negative numbers.
        if (shows()) out_.push_back(static_cast<char16_t>(static_cast<uint32>(number) & 0xFFFF));
        unicodeSkip_ = group().bytesPerUnicode;
    }

    bool takeDestination(TextView name, bool starred) {
        if (name == u"fonttbl") {
            if (shows()) group().content = Content::fonts;
        } else if (name == u"ud" && starred) {
            group().content = Content::text;  // the Unicode face of \upr, which is skipped itself
        } else if (starred ||
                   std::find(std::begin(kSkipped), std::end(kSkipped), name) != std::end(kSkipped)) {
            group().content = Content::nothing;
        } else {
            return false;
        }
        return true;
    }

    // Fonts and what they say about the code page.
    bool takeFontWord(const Token& token) {
        const auto is = [&token](TextView name) { return token.name == name; };
        if (is(u"f"))
            group().font = token.number;
        else if (is(u"plain"))
            group().font = -1;
        else if (is(u"deff"))
            defaultFont_ = token.number;
        else if (is(u"fcharset") && group().content == Content::fonts)
            fontPages_[group().font] = rtf::codePageOfCharset(token.number);
        else if (is(u"ansicpg"))
            documentPage_ = token.number;
        else if (is(u"pc"))
            documentPage_ = 437;
        else if (is(u"pca"))
            documentPage_ = 850;
        else if (is(u"mac"))
            documentPage_ = 10000;
        else
            return false;
        return true;
    }

    void takeTextWord(TextView name) {
        const auto* const found = std::find_if(std::begin(kTextWords), std::end(kTextWords),
                                               [name](const TextWord& row) { return row.name == name; });
        if (found != std::end(kTextWords)) out_ += found->text;
    }

    // Bytes wait until the run ends: a character may have several.
    void flushBytes() {
        if (bytes_.empty()) return;
        const int32 font = group().font < 0 ? defaultFont_ : group().font;
        const auto page = fontPages_.find(font);
        const bool own = page != fontPages_.end() && page->second != 0;
        decoder_.append(out_, bytes_, own ? page->second : documentPage_);
        bytes_.clear();
    }

    rtf::Tokens tokens_;
    rtf::Decoder decoder_;
    Text out_;
    Bytes bytes_;
    std::vector<GroupState> groups_{GroupState{}};
    std::size_t tooDeep_ = 0;
    std::unordered_map<int32, int32> fontPages_;
    int32 defaultFont_ = 0;
    int32 documentPage_ = 1252;
    int32 unicodeSkip_ = 0;
    bool starred_ = false;
    bool ended_ = false;
};

}  // namespace

Text rtfToPlainText(TextView rtf) { return PlainTextReader(rtf).read(); }

}  // namespace tsRtm

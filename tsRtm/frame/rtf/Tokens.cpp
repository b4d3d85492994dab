#include "tsRtm/frame/rtf/Tokens.hpp"

#include <algorithm>
#include <limits>

#include "tsRtm/types/Digits.hpp"

namespace tsRtm::rtf {
namespace {

bool isLetter(char16_t c) noexcept { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); }
int32 hexDigit(char16_t c) noexcept {
    if (isDigit(c)) return c - u'0';
    const char16_t small = lower(c);
    return small >= u'a' && small <= u'f' ? small - u'a' + 10 : -1;
}

// Takes the digits off the front; limited, never overflowing.
int32 takeNumber(TextView& rest, bool negative) {
    int64 number = 0;
    for (; !rest.empty() && isDigit(rest.front()); rest.remove_prefix(1))
        number = std::min<int64>(number * 10 + (rest.front() - u'0'), std::numeric_limits<int32>::max());
    return static_cast<int32>(negative ? -number : number);
}

}  // namespace

Token Tokens::next() {
    while (rest_.starts_with(u'\r') || rest_.starts_with(u'\n')) rest_.remove_prefix(1);
    Token token;
    if (rest_.empty()) return token;
    const char16_t first = rest_.front();
    if (first == u'{' || first == u'}') {
        token.kind = first == u'{' ? TokenKind::open : TokenKind::close;
        rest_.remove_prefix(1);
    } else if (first == u'\\') {
        rest_.remove_prefix(1);
        return controlWord();
    } else {
        token.kind = TokenKind::text;
        token.text = rest_.substr(0, rest_.find_first_of(u"\\{}\r\n"));
        rest_.remove_prefix(token.text.size());
    }
    return token;
}

Token Tokens::controlWord() {
    Token token;
    if (rest_.empty()) return token;
    if (!isLetter(rest_.front())) {
        token.kind = TokenKind::symbol;
        token.character = rest_.front();
        rest_.remove_prefix(1);
        return token.character == u'\'' ? hexByte() : token;
    }
    token.kind = TokenKind::word;
    const auto letters = std::find_if_not(rest_.begin(), rest_.end(), isLetter);
    token.name = rest_.substr(0, static_cast<std::size_t>(letters - rest_.begin()));
    rest_.remove_prefix(token.name.size());
    const bool negative = rest_.size() > 1 && rest_[0] == u'-' && isDigit(rest_[1]);
    if (negative) rest_.remove_prefix(1);
    token.hasNumber = !rest_.empty() && isDigit(rest_.front());
    if (token.hasNumber) token.number = takeNumber(rest_, negative);
    if (rest_.starts_with(u' ')) rest_.remove_prefix(1);
    if (token.name == u"bin" && token.number > 0)
        rest_.remove_prefix(std::min(rest_.size(), static_cast<std::size_t>(token.number)));
    return token;
}

Token Tokens::hexByte() {
    Token token;
    token.kind = TokenKind::symbol;  // without two digits: a symbol that means nothing
    token.character = u'\'';
    const int32 high = rest_.size() > 1 ? hexDigit(rest_[0]) : -1;
    const int32 low = rest_.size() > 1 ? hexDigit(rest_[1]) : -1;
    if (high < 0 || low < 0) return token;
    token.kind = TokenKind::byte;
    token.number = high * 16 + low;
    rest_.remove_prefix(2);
    return token;
}

}  // namespace tsRtm::rtf

#include "tsRtm/frame/options/IniFile.hpp"

#include <algorithm>
#include <array>
#include <optional>

#include "tsRtm/frame/files/Encodings.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"

namespace tsRtm {

namespace {

constexpr std::size_t kBlock = 64 * 1024;  // bytes, an even number
constexpr std::size_t kLongestLine = 1'000'000;
constexpr TextView kDefaultSection = u"Default";

// The lines of a text file, in its encoding. A line ends with CR or LF: of CR LF an empty line comes too.
class LineReader {
 public:
    explicit LineReader(platform::File& file) : file_(file) {
        std::array<std::byte, 4> head{};
        const auto count = file_.readAt(0, head);
        if (!count) return;
        const auto found = encodings::detect({reinterpret_cast<const char*>(head.data()), *count});
        if (!found.textBegin) return;
        encoding_ = found.encoding;
        position_ = *found.textBegin;
        readable_ = true;
    }

    // Nothing at the end of the file, and where it cannot be read.
    std::optional<Text> next() {
        Bytes line;
        bool any = false;
        while (nextUnit()) {
            any = true;
            if (isLineEnd()) return encodings::decode(line, encoding_);
            if (line.size() < kLongestLine) line += unit_;
        }
        if (!any) return std::nullopt;
        return encodings::decode(line, encoding_);
    }

 private:
    bool wide() const noexcept { return encoding_ == UTF16LE || encoding_ == UTF16BE; }

    bool isLineEnd() const noexcept {
        const char c = encoding_ == UTF16BE ? unit_.back() : unit_.front();
        const char other = !wide() ? '\0' : encoding_ == UTF16BE ? unit_.front() : unit_.back();
        return (c == '\r' || c == '\n') && other == '\0';
    }

    bool nextUnit() {
        if (at_ == block_.size() && !readBlock()) return false;
        unit_ = BytesView(block_).substr(at_, wide() ? 2 : 1);
        at_ += unit_.size();
        return true;
    }

    bool readBlock() {
        if (!readable_) return false;
        block_.resize(kBlock);
        const auto count = file_.readAt(position_, std::as_writable_bytes(std::span(block_)));
        block_.resize(count ? *count : 0);
        position_ += block_.size();
        at_ = 0;
        readable_ = !block_.empty();
        return readable_;
    }

    platform::File& file_;
    int32 encoding_ = ANSI1252;
    uint64 position_ = 0;
    bool readable_ = false;
    Bytes block_;
    std::size_t at_ = 0;
    BytesView unit_;  // the character of a code page or a byte of it, two bytes of UTF-16
};

// The old mark of a file's end is a blank, too.
constexpr bool isBlank(char16_t c) noexcept { return c == u' ' || c == u'\t' || c == 0x1A; }

TextView stripped(TextView text) noexcept {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

Text plainValue(TextView value) {
    value = stripped(value);
    const bool quoted = value.size() >= 2 && (value.front() == u'"' || value.front() == u'\'') &&
                        value.back() == value.front();
    if (quoted) value = value.substr(1, value.size() - 2);
    return rtmMain::CutAtNul(value.substr(0, kLongestIniValue));
}

// The name of the section that a line begins; nothing for other lines.
std::optional<TextView> sectionOf(TextView line) noexcept {
    const auto end = line.rfind(u']');
    if (!line.starts_with(u'[') || end == TextView::npos) return std::nullopt;
    return stripped(line.substr(1, end - 1));
}

// The value of a line, if its key is this one.
std::optional<Text> valueOf(TextView line, TextView key) {
    const auto equals = line.find(u'=');
    if (line.starts_with(u';') || equals == TextView::npos) return std::nullopt;
    if (!equalIgnoringCase(stripped(line.substr(0, equals)), key)) return std::nullopt;
    return plainValue(line.substr(equals + 1));
}

}  // namespace

Text iniValue(TextView path, TextView section, TextView key) {
    const auto file = rtmMain::system().files.open(path, {});
    section = stripped(section.empty() ? kDefaultSection : section);
    key = stripped(key);
    if (!file || key.empty()) return {};
    LineReader lines(*file.value());
    bool inside = false;
    while (const auto whole = lines.next()) {
        const auto line = stripped(*whole);
        const auto name = sectionOf(line);
        if (name && inside) return {};  // only the first section of a name counts
        if (name) inside = equalIgnoringCase(*name, section);
        if (inside)
            if (auto value = valueOf(line, key)) return *std::move(value);
    }
    return {};
}

}  // namespace tsRtm

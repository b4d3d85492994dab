#include "cli/dates/IcsLines.hpp"

#include <algorithm>

namespace tsRtm::cli {
namespace {

constexpr std::size_t kLineBytes = 75;
constexpr std::size_t kMostLine = std::size_t{1} << 20;

bool beginsCharacter(char c) noexcept { return (static_cast<uint8>(c) & 0xC0) != 0x80; }

// Up to the first of these marks that no quotation holds.
std::size_t endOf(const std::string& text, std::size_t from, char mark) {
    bool quoted = false;
    while (from < text.size() && (quoted || text[from] != mark)) quoted ^= text[from++] == '"';
    return from;
}

struct Line {
    int64 number = 0;
    std::string text;
};
std::vector<Line> linesOf(InputFile& file) {
    std::string all(file.size(), '\0');
    all.resize(file.read(0, all));
    std::vector<Line> lines;
    int64 number = 0;
    for (std::size_t at = 0; at < all.size();) {
        const auto end = std::min(all.find('\n', at), all.size());
        std::string text = all.substr(at, end - at);
        at = end + 1;
        ++number;
        if (!text.empty() && text.back() == '\r') text.pop_back();
        if (!lines.empty() && !text.empty() && (text.front() == ' ' || text.front() == '\t')) {
            if (lines.back().text.size() < kMostLine) lines.back().text += text.substr(1);
        } else {
            lines.push_back({number, text});
        }
    }
    return lines;
}

IcsProperty propertyOf(const Line& line) {
    const std::size_t colon = endOf(line.text, 0, ':');
    const std::string head = line.text.substr(0, colon);
    const std::size_t semicolon = endOf(head, 0, ';');
    IcsProperty out;
    out.line = line.number;
    out.name = icsCapitals(head.substr(0, semicolon));
    if (semicolon < head.size()) out.parameters = icsParts(head.substr(semicolon + 1));
    if (colon < line.text.size()) out.value = line.text.substr(colon + 1);
    return out;
}

}  // namespace

std::string IcsProperty::parameter(const std::string& wanted) const {
    const auto found = parameters.find(wanted);
    return found == parameters.end() ? std::string() : found->second;
}

std::vector<IcsProperty> icsProperties(InputFile& file) {
    std::vector<IcsProperty> out;
    for (const auto& line : linesOf(file)) out.push_back(propertyOf(line));
    return out;
}

std::map<std::string, std::string> icsParts(const std::string& text) {
    std::map<std::string, std::string> out;
    for (std::size_t at = 0; at < text.size();) {
        const auto end = endOf(text, at, ';');
        const std::string part = text.substr(at, end - at);
        at = end + 1;
        const auto mark = std::min(part.find('='), part.size());
        std::string value = part.substr(std::min(mark + 1, part.size()));
        std::erase(value, '"');
        out.emplace(icsCapitals(part.substr(0, mark)), std::move(value));
    }
    return out;
}

std::vector<std::string> icsList(const std::string& text) {
    std::vector<std::string> out;
    for (std::size_t at = 0; at < text.size();) {
        const auto end = std::min(text.find(',', at), text.size());
        out.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return out;
}

std::string icsCapitals(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    return text;
}

std::string icsLine(const std::string& text) {
    std::string out;
    std::size_t room = kLineBytes;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = std::min(at + room, text.size());
        while (end < text.size() && !beginsCharacter(text[end])) --end;
        out += (at > 0 ? "\r\n " : "") + text.substr(at, end - at);
        at = end;
        room = kLineBytes - 1;  // a folded line begins with a blank
    }
    return out + "\r\n";
}

std::string icsEscaped(const std::string& text) {
    std::string out;
    for (const char c : text) {
        if (c == '\r') continue;
        if (c == '\n') {
            out += "\\n";
            continue;
        }
        if (c == '\\' || c == ';' || c == ',') out += '\\';
        out += c;
    }
    return out;
}

Text icsUnescaped(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        const char c = text[++i];
        out += c == 'n' || c == 'N' ? '\n' : c;
    }
    return fromUtf8(out);
}

}  // namespace tsRtm::cli

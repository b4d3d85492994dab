#include "tsRtm/validation/texts/OptionScan.hpp"

#include <algorithm>

namespace tsRtm {

std::optional<Text> optionValue(TextView text, TextView key) {
    for (std::size_t at = 0; at < text.size();) {
        const TextView rest = text.substr(at);
        const bool quoted = rest.starts_with(u"\"/");
        if (!quoted && rest.front() != u'/' && rest.front() != u'-') {
            ++at;
            continue;
        }
        const std::size_t end = std::min(rest.find(quoted ? u"\" " : u" "), rest.size());
        TextView token = rest.substr(quoted ? 2 : 1, end - (quoted ? 2 : 1));
        if (quoted && at + end == text.size() && token.ends_with(u'"')) token.remove_suffix(1);
        if (equalIgnoringCase(token.substr(0, key.size()), key)) {
            if (token.size() == key.size()) return Text();
            if (token[key.size()] == u':') return Text(token.substr(key.size() + 1));
        }
        at += end;
    }
    return std::nullopt;
}

}  // namespace tsRtm

#include "tsRtm/frame/files/Wildcards.hpp"

namespace tsRtm::wildcards {

bool matches(TextView name, TextView pattern) {
    std::size_t n = 0, p = 0;
    // Where to go on after a mismatch: the last "*", and the name's place it has reached.
    std::size_t star = TextView::npos, reached = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == u'*') {
            star = p++;
            reached = n;
        } else if (p < pattern.size() && (pattern[p] == u'?' || upper(pattern[p]) == upper(name[n]))) {
            ++p;
            ++n;
        } else if (star != TextView::npos) {
            p = star + 1;
            n = ++reached;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(u'*', p) == TextView::npos;
}

bool matchesEntry(TextView name, TextView pattern) {
    if (pattern.empty() || matches(name, pattern)) return true;
    const bool dotted = pattern.ends_with(u".*") || pattern.ends_with(u'.');
    return dotted && name.find(u'.') == TextView::npos && matches(Text(name) + u'.', pattern);
}

}  // namespace tsRtm::wildcards

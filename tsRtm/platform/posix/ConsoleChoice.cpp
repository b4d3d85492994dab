#include "tsRtm/platform/posix/ConsoleChoice.hpp"

#include <algorithm>

namespace tsRtm::platform::posix {
namespace {

constexpr int32 kPage = 15;
constexpr TextView kBetween = u"  ";

Text joined(const std::vector<Text>& cells) {
    Text out;
    for (const auto& cell : cells) (out += out.empty() ? TextView() : kBetween) += trim(cell);
    return out;
}

}  // namespace

int32 ConsoleChoice::linesOfPage() const { return std::min(kPage, list_.count - first_ + 1); }

void ConsoleChoice::move(int32 to) { first_ = std::clamp(to, 1, std::max(list_.count, 1)); }

void ConsoleChoice::showPage() const {
    if (!list_.titles.empty()) print_(u"    " + joined(list_.titles));
    for (int32 i = 1; i <= linesOfPage(); ++i) {
        const Text number = toText(i);
        print_((number.size() < 2 ? u" " : u"") + number + u"  " + joined(list_.cells(first_ + i - 1)));
    }
}

int32 ConsoleChoice::hold() {
    if (list_.count < 1) return 0;
    move(list_.start);
    if (!list_.caption.empty()) print_(list_.caption);
    for (;;) {
        showPage();
        print_(list_.find ? u"Nummer, Suchtext, Eingabetaste: weiter, -: zurück, .: Ende"
                          : u"Nummer, Eingabetaste: weiter, -: zurück, .: Ende");
        const auto typed = read_();
        if (!typed || *typed == ".") return 0;
        const Text text(trim(fromUtf8(*typed)));
        const auto number = IstZiffern(text) && text.size() < 3 ? static_cast<int32>(Val(text)) : 0;
        if (number >= 1 && number <= linesOfPage()) return first_ + number - 1;
        if (text.empty())
            move(first_ + kPage > list_.count ? first_ : first_ + kPage);
        else if (text == u"-")
            move(first_ - kPage);
        else if (list_.find)
            move(list_.find(text));
    }
}

}  // namespace tsRtm::platform::posix

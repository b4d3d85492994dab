#include "tsRtm/frame/text/ForeignOrder.hpp"

#include <unicode/ucol.h>

#include <memory>
#include <vector>

#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/frame/text/TextOrderMarks.hpp"

namespace tsRtm::textorder {
namespace {

using Collator = std::unique_ptr<UCollator, decltype(&ucol_close)>;

Collator openCollator() {
    UErrorCode status = U_ZERO_ERROR;
    Collator collator(ucol_open("de", &status), &ucol_close);
    if (U_FAILURE(status)) return {nullptr, &ucol_close};
    ucol_setStrength(collator.get(), UCOL_SECONDARY);
    return collator;
}

// ICU's key without its closing 00.
std::vector<uint8> icuKey(TextView run) {
    static const Collator collator = openCollator();
    std::vector<uint8> key;
    if (collator == nullptr) {
        for (const char16_t c : run)
            key.insert(key.end(), {static_cast<uint8>(c >> 8), static_cast<uint8>(c & 0xFF)});
        return key;
    }
    const auto length = static_cast<int32>(run.size());
    const UChar* units = run.data();
    key.resize(static_cast<std::size_t>(ucol_getSortKey(collator.get(), units, length, nullptr, 0)));
    ucol_getSortKey(collator.get(), units, length, key.data(), static_cast<int32>(key.size()));
    if (!key.empty()) key.pop_back();
    return key;
}

// One letter of the base level: the lead byte, the run's key with each byte one higher (the highest in two
// bytes), and an end that is below all of them, so that no run's letter begins another's.
void appendRun(Bytes& key, TextView run) {
    constexpr uint8 kHighest = 0xFF;
    key.push_back(static_cast<char>(kForeign));
    for (const uint8 byte : icuKey(run)) {
        if (byte + 2 < kHighest) {
            key.push_back(static_cast<char>(byte + 2));
        } else {
            key.push_back(static_cast<char>(kHighest));
            key.push_back(static_cast<char>(byte - (kHighest - 2) + 1));
        }
    }
    key.push_back(static_cast<char>(kLevelEnd));
}

bool weighsNothing(int32 code) noexcept {
    const auto at = static_cast<std::size_t>(code);
    return tables.base[at] == 0 && tables.special[at] == 0;
}

}  // namespace

void appendForeignSortKey(Bytes& key, TextView text) {
    // The text as the levels behind the base see it: a plain letter for each run.
    Bytes shadow;
    Text run;
    const auto endRun = [&] {
        if (run.empty()) return;
        appendRun(key, run);
        shadow.push_back('x');
        run.clear();
    };
    for (const char16_t c : text) {
        const int32 code = unicodeToAnsi(c);
        if (code < 0) {
            run.push_back(c);
        } else if (!weighsNothing(code)) {
            endRun();
            const auto byte = static_cast<char>(code);
            const auto at = static_cast<std::size_t>(code);
            if (tables.base[at] != 0) key.push_back(static_cast<char>(tables.base[at]));
            if (tables.second[at] != 0) key.push_back(static_cast<char>(tables.second[at]));
            shadow.push_back(byte);
        }
    }
    endRun();
    const BytesView view = shadow;
    appendMarks(key, Pieces(&view, 1));
}

}  // namespace tsRtm::textorder

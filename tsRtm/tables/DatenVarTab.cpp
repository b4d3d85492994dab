#include "tsRtm/tables/DatenVarTab.hpp"

#include <optional>

#include "tsRtm/frame/runtime/VariantText.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/NumberText.hpp"
#include "tsRtm/tables/storage/LineCode.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr char16_t kLineBreak = u'`';
constexpr int32 kTimesDefault = 3;  // a row may be longer than the usual one

// The number of a count line; nothing for any other line.
std::optional<int32> countOf(TextView line) {
    if (!line.ends_with(u'#')) return std::nullopt;
    line.remove_suffix(1);
    const auto& locale = rtmMain::state().locale;
    if (!IstNumerisch(line, locale.sepDec, locale.sep1000)) return std::nullopt;
    return roundToInt32(TSVal(line));
}

Text withoutLf(TextView item) {
    Text text(item);
    std::erase(text, u'\n');
    return text;
}

}  // namespace

void DatenVarTab::Init(TextView Datei, bool SyncAlways, bool /*UseWriteMethod*/) { bind(Datei, SyncAlways); }

int32 DatenVarTab::plausible(int32 count) const noexcept {
    const bool tooMany = defaultItemCount_ >= 1 && count > int64{kTimesDefault} * defaultItemCount_;
    return count < 0 || tooMany ? 0 : count;
}

void DatenVarTab::load(const std::vector<Text>& lines) {
    std::vector<std::vector<Text>> read;
    bool whole = true;
    for (std::size_t at = 0; at < lines.size();) {
        const auto found = countOf(lines[at++]);
        if (!found) {
            whole = false;
            continue;
        }
        const int32 count = plausible(*found);
        // A row without items can be written by others, but is never read.
        if (count < 1)
            raise(57, u"DatenVarTab",
                  u"Daten in \"" + Datei() + u"\" sind ab Satz " + toText(std::ssize(read) + 1) +
                      u" nicht im richtigen Format.");
        if (static_cast<std::size_t>(count) > lines.size() - at) {
            whole = false;
            break;
        }
        auto& row = read.emplace_back();
        row.reserve(static_cast<std::size_t>(count));
        for (int32 i = 0; i < count; ++i) {
            Text item = decoded(lines[at++]);
            for (char16_t& c : item)
                if (c == kLineBreak) c = u'\r';
            row.push_back(std::move(item));
        }
    }
    rows_ = std::move(read);
    okay_ = whole;
}

Text DatenVarTab::lineOf(TextView item) {
    needHeldText(item, Holds::lineBreaks, u".SchreibDaten");
    Text line = withoutLf(item);
    for (char16_t& c : line)
        if (c == u'\r') c = kLineBreak;
    return coded(line) += kLineEnd;
}

Text DatenVarTab::rowText(const std::vector<Text>& row) {
    Text text = (toText(std::ssize(row)) += u'#') += kLineEnd;
    for (const Text& item : row) text += lineOf(item);
    return text;
}

Text DatenVarTab::fileText() {
    Text text;
    for (const auto& row : rows_) text += rowText(row);
    return text;
}

const std::vector<Text>* DatenVarTab::row(int32 number) const noexcept {
    return number >= 1 && number <= rows() ? &rows_[static_cast<std::size_t>(number) - 1] : nullptr;
}

int32 DatenVarTab::ItemCount(int32 Zeile) {
    sync();
    const auto* found = row(Zeile);
    return found ? static_cast<int32>(found->size()) : 0;
}

Text DatenVarTab::Item(int32 Zeile, int32 Spalte) {
    if (Spalte < 1 || Spalte > ItemCount(Zeile)) return {};
    return (*row(Zeile))[static_cast<std::size_t>(Spalte) - 1];
}

void DatenVarTab::Item(int32 Zeile, int32 Spalte, TextView Wert) {
    beforeChange(u".Item");
    const auto* found = row(Zeile);
    if (!found || Spalte < 1 || Spalte > std::ssize(*found)) return;
    needHeldText(Wert, Holds::lineBreaks, u".Item");
    rows_[static_cast<std::size_t>(Zeile) - 1][static_cast<std::size_t>(Spalte) - 1] = withoutLf(Wert);
    afterChange();
}

std::vector<Text> DatenVarTab::Record(int32 Zeile) {
    sync();
    const auto* found = row(Zeile);
    return found ? *found : std::vector<Text>();
}

int32 DatenVarTab::Add(const std::vector<Text>& Daten, bool Sync) {
    const bool save = beforeAdding(Sync, u".Add");
    std::vector<Text> items;
    items.reserve(Daten.size());
    for (const Text& item : Daten) {
        needHeldText(item, Holds::lineBreaks, u".Add");
        items.push_back(withoutLf(item));
    }
    // A row without items could not be read back.
    if (items.empty()) items.emplace_back();
    const bool stored = save && appended(rowText(items));
    rows_.push_back(std::move(items));
    const int32 number = rows();
    if (!stored) changed_ = true;
    if (save) write();
    Change();
    return number;
}

int32 DatenVarTab::VarAdd(const VariantList& Daten) {
    std::vector<Text> items;
    items.reserve(Daten.size());
    for (const Variant& value : Daten) items.push_back(textOf(value));
    return Add(items);
}

int32 DatenVarTab::Remove(int32 Zeile) {
    beforeChange(u".Remove");
    if (!row(Zeile)) return 0;
    if (rows() == 1) return Clear(false);
    rows_.erase(rows_.begin() + (Zeile - 1));
    afterChange();
    return 1;
}

}  // namespace tsRtm

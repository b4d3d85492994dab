#include "tsRtm/database/upkeep/IndexCheck.hpp"

#include "tsRtm/frame/runtime/DebugLog.hpp"

namespace tsRtm {
namespace {

// Records that the index does not name, or names more than once.
void countPointers(const std::vector<int32>& found, int32 count, std::vector<Text>& lines) {
    std::vector<int32> times(static_cast<std::size_t>(count) + 1, 0);
    for (const int32 record : found)
        if (record >= 1 && record <= count) ++times[static_cast<std::size_t>(record)];
    for (int32 n = 1; n <= count; ++n) {
        const int32 times_n = times[static_cast<std::size_t>(n)];
        if (times_n == 0)
            lines.push_back(u"Fehlender Pointer auf Satz " + toText(n));
        else if (times_n > 1)
            lines.push_back(u"Mehrfachverweis auf Satz " + toText(n) + u" Anzahl: " + toText(times_n));
    }
}

}  // namespace

std::vector<Text> checkIndex(OpenDatabase& d, int32 number) {
    try {
        IndexForm& form = d.indexes.openAsItIs(number);
        form.forget();
        IndexFindings findings = form.inspect(number);
        countPointers(findings.records, d.records(), findings.lines);
        rtmMain::DebugLog(u"CheckIndex auf Feld " + toText(d.indexes.keys(number).primary()) + u" liefert " +
                          toText(static_cast<int64>(findings.records.size())) + u" Einträge");
        // Its next opening looks at the total again, and heals.
        if (!findings.lines.empty()) d.indexes.close(number);
        return std::move(findings.lines);
    } catch (const Failure& failure) {
        d.indexes.close(number);
        return {failure.Description()};
    }
}

std::vector<Text> checkBeside(OpenDatabase& d, int32 number) {
    const auto check = [&] {
        d.refreshCount();
        return checkIndex(d, number);
    };
    return d.watch.steady([&](uint64) { return check(); }, check);
}

void repairIndexes(OpenDatabase& d, const std::vector<int32>& numbers) {
    if (const auto error = d.sign.enter(); failed(error))
        raise(numberOf(error), kFileFailureSource, d.folder.name + u": kein Zugriff zum Schreiben");
    d.indexes.completeRecord();
    // One pair of marks around all: nobody may search the last one when only the first is right.
    d.marks.begin();
    try {
        if (!numbers.empty()) d.indexes.rebuild(numbers);
        d.marks.end(d.records());
    } catch (const Failure&) {
        d.marks.giveUp();
        throw;
    }
}

void settleIndexes(OpenDatabase& d) {
    std::vector<int32> faulty;
    for (int32 number = 1; d.indexes.has(number); ++number)
        if (!checkIndex(d, number).empty()) faulty.push_back(number);
    if (!faulty.empty()) repairIndexes(d, faulty);
}

}  // namespace tsRtm

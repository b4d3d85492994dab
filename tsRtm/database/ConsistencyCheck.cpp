// clsTSDB::Check: every index against the records.
#include <algorithm>

#include "tsRtm/database/DatabaseParts.hpp"
#include "tsRtm/database/IndexFiles.hpp"
#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/frame/rtmMain.hpp"

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

bool clsTSDB::checkIndex(int32 number, bool repair) {
    auto& d = *parts_;
    const auto note = [this](Text line) {
        rtmMain::DebugLog(line);
        befunde_.push_back(std::move(line));
    };
    rtmMain::DebugLog(u"Konsistenzprüfung Index " + Caption(d.index(number).keys.primary()));
    std::size_t faults = 0;
    try {
        // The check looks at the file as it is: a wrong total is a finding, not a reason to rebuild unasked.
        const bool before = std::exchange(d.inBulk, true);
        IndexForm* form = nullptr;
        try {
            form = &openIndex(d, number);
        } catch (const Failure&) {
            d.inBulk = before;
            throw;
        }
        d.inBulk = before;
        IndexFindings findings = form->inspect(number);
        countPointers(findings.records, d.records(), findings.lines);
        rtmMain::DebugLog(u"CheckIndex auf Feld " + toText(d.index(number).keys.primary()) + u" liefert " +
                          toText(static_cast<int64>(findings.records.size())) + u" Einträge");
        faults = findings.lines.size();
        for (auto& line : findings.lines) note(std::move(line));
    } catch (const Failure& failure) {
        ++faults;
        note(failure.Description());
    }
    if (faults > 0) closeIndex(d, number);  // its next opening looks at the total again, and heals
    if (faults > 0 && repair) Sort(number);
    return faults == 0;
}

bool clsTSDB::Check(bool Repair, TextView Zusatz) {
    auto& d = *parts_;
    befunde_.clear();
    rtmMain::DebugLog(u"Konsistenzprüfung für Datenbank " + Pfad());
    if (!Zusatz.empty()) rtmMain::DebugLog(Zusatz);
    const bool held = d.locks.databaseLocked;
    if (!d.readOnly && !lockIntern(true)) {
        rtmMain::DebugLog(u"DB kann nicht gesperrt werden.");
        return false;
    }
    d.fehler = 0;
    const int32 count = d.records();
    d.refreshCount();
    if (d.records() != count) {
        befunde_.push_back(u"Count: " + toText(count) + u" - Dateilänge: " +
                           toText(static_cast<int64>(d.store ? d.store.bytes().knownSize() : 0)) +
                           u" -> Anzahl: " + toText(d.records()));
        rtmMain::DebugLog(befunde_.back());
        if (Repair && d.count) d.count.write(d.records());
    }
    bool sound = true;
    for (int32 number = 1; d.hasIndex(number) && d.store; ++number)
        sound = checkIndex(number, Repair) && sound;
    if (!held && !d.readOnly) lockIntern(false);
    return sound;
}

}  // namespace tsRtm

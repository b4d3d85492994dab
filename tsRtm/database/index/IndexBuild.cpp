#include "tsRtm/database/index/IndexBuild.hpp"

#include <algorithm>
#include <array>
#include <numeric>

#include "tsRtm/database/index/FlatFile.hpp"
#include "tsRtm/database/index/TreeWriter.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

enum Phase : int32 { phaseRead = 1, phaseWrite = 2 };

constexpr std::size_t kUsualKey = 24;
constexpr std::size_t kDigits = sizeof(KeyWord);
constexpr std::size_t kDigitValues = 256;
// Fewer are sorted faster by comparing them.
constexpr std::size_t kWorthCounting = 2000;

// Reports each hundredth of a work.
class Progress {
 public:
    Progress(const WorkProgress& tell, Phase phase, int32 sum) : tell_(tell), phase_(phase), sum_(sum) {}
    void operator()(int32 done) {
        if (done < next_) return;
        next_ = done + std::max(1, sum_ / 100);
        if (tell_) tell_(phase_, done, sum_);
    }

 private:
    const WorkProgress& tell_;
    Phase phase_;
    int32 sum_;
    int32 next_ = 1;
};

void writeFlat(FlatFile file, const std::vector<int32>& records) {
    FlatFile::Array array;
    array.reserve(records.size());
    for (const int32 record : records) array.push_back(static_cast<int16>(record));
    file.reserve(static_cast<int32>(array.size()));
    file.store(array, 0, array.size());
}

void writeTree(TreeWriter& writer, const std::vector<int32>& records, const WorkProgress& tell) {
    Progress progress(tell, phaseWrite, static_cast<int32>(records.size()));
    int32 done = 0;
    for (const int32 record : records) {
        writer.add(record);
        progress(++done);
    }
    writer.finish();
}

}  // namespace

std::vector<int32> RecordSorter::inOrder(RecordStore& store, const IndexKeys& keys,
                                         const WorkProgress& progress) {
    collect(store, keys, progress);
    sort(entries_, 0);
    std::vector<int32> out;
    out.reserve(entries_.size());
    for (const auto& entry : entries_) out.push_back(entry.record);
    return out;
}

void RecordSorter::collect(RecordStore& store, const IndexKeys& keys, const WorkProgress& progress) {
    const int32 count = store.count();
    entries_.resize(static_cast<std::size_t>(count));
    ends_.resize(entries_.size() + 1);
    keys_.clear();
    keys_.reserve(entries_.size() * kUsualKey);
    Progress tell(progress, phaseRead, count);
    Bytes room;
    for (int32 record = 1; record <= count; ++record) {
        keys.appendSortKey(keys_, store.view(record, room));
        ends_[static_cast<std::size_t>(record)] = keys_.size();
        entries_[static_cast<std::size_t>(record - 1)] = {wordOf(record, 0), record};
        tell(record);
    }
    store.bytes().check();
}

KeyWord RecordSorter::wordOf(int32 record, std::size_t from) const noexcept {
    const auto at = static_cast<std::size_t>(record);
    const std::size_t begin = std::min(ends_[at - 1] + from, ends_[at]);
    return keyWord(BytesView(keys_).substr(begin, ends_[at] - begin));
}

void RecordSorter::sort(Run run, std::size_t from) {
    if (run.size() >= kWorthCounting)
        sortByDigits(run);
    else
        std::sort(run.begin(), run.end(), [](const Entry& a, const Entry& b) {
            return a.word != b.word ? a.word < b.word : a.record < b.record;
        });
    for (auto begin = run.begin(); begin != run.end();) {
        const KeyWord word = begin->word;
        const auto end =
            std::find_if(begin + 1, run.end(), [word](const Entry& entry) { return entry.word != word; });
        if (end - begin > 1 && !endsIn(word)) {
            for (auto& entry : Run(begin, end)) entry.word = wordOf(entry.record, from + sizeof word);
            sort({begin, end}, from + sizeof word);
        }
        begin = end;
    }
}

// One digit of all words after the other, the lowest first; what is equal stays as it stood.
void RecordSorter::sortByDigits(Run run) {
    std::array<std::array<std::size_t, kDigitValues>, kDigits> counts{};
    const auto valueOf = [](KeyWord word, std::size_t digit) { return word >> (8 * digit) & 0xFF; };
    for (const auto& entry : run)
        for (std::size_t digit = 0; digit < kDigits; ++digit) ++counts[digit][valueOf(entry.word, digit)];
    spare_.resize(std::max(spare_.size(), run.size()));
    Run from = run;
    Run to = Run(spare_).first(run.size());
    for (std::size_t digit = 0; digit < kDigits; ++digit) {
        auto& places = counts[digit];
        if (places[valueOf(from.front().word, digit)] == run.size()) continue;
        std::exclusive_scan(places.begin(), places.end(), places.begin(), std::size_t{0});
        for (const auto& entry : from) to[places[valueOf(entry.word, digit)]++] = entry;
        std::swap(from, to);
    }
    if (from.data() != run.data()) std::copy(from.begin(), from.end(), run.begin());
}

void buildNewIndex(platform::File& file, IndexFileForm form, const std::vector<int32>& records, int32 index,
                   const WorkProgress& progress) {
    if (form == IndexFileForm::flat) return writeFlat(FlatFile(file, false), records);
    TreeWriter writer(file, index);
    writeTree(writer, records, progress);
}

void rebuildIndex(platform::File& file, IndexFileForm form, const std::vector<int32>& records, int32 index) {
    if (form == IndexFileForm::flat) return writeFlat(FlatFile(file), records);
    TreeWriter writer(file, index, records.size());
    writeTree(writer, records, {});
}

}  // namespace tsRtm

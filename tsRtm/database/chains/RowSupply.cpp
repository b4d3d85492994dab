#include "tsRtm/database/chains/RowSupply.hpp"

#include <algorithm>

#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr int32 kNoRoom = 61;

}  // namespace

ChainHead RowSupply::dropped(int32 hoch, TextView why) const {
    rtmMain::DebugLog(file_.file().name() + u": Freiliste verworfen, " + Text(why));
    return {hoch, hoch + 1};
}

ChainHead RowSupply::sound() const {
    ChainHead head = file_.rows() == 0 ? ChainHead() : file_.head();
    const bool whole = file_.size() >= file_.format().rowBytes();
    const int32 least = std::max({file_.rows(), 1, whole || !lastNamed ? 1 : lastNamed()});
    if (head.hoch < least) {
        // Row 1 is torn or of another time; a file of that row alone has no list that could be lost.
        if (least > 1) return dropped(least, u"der Kopf gibt zu wenige Zeilen an");
        head.hoch = least;
    }
    if (!isLink(head.frei, head.hoch)) return dropped(head.hoch, u"der Kopf verweist auf keine Zeile");
    if (head.frei == 0) head.frei = head.hoch + 1;
    return head;
}

int32 RowSupply::fromList(ChainHead& head, Taken& taken, std::unordered_set<int32>& given) const {
    if (head.frei > head.hoch) return 0;
    const int32 row = head.frei;
    Bytes room;
    const int32 link = file_.format().link(file_.row(row, room));
    given.insert(row);
    if (!isLink(link, head.hoch) || given.contains(link)) {
        head = dropped(head.hoch, u"eine freie Zeile verweist auf keine");
        return 0;
    }
    head.frei = link == 0 ? head.hoch + 1 : link;
    taken.links.push_back(link);
    return row;
}

RowSupply::Taken RowSupply::take(int32 count) {
    file_.refresh();
    Taken taken;
    std::unordered_set<int32> given;
    ChainHead head = taken.before = sound();
    taken.rows.reserve(static_cast<std::size_t>(count));
    while (static_cast<int32>(taken.rows.size()) < count) {
        int32 row = fromList(head, taken, given);
        if (row == 0) {
            if (head.frei > file_.format().greatest())
                raise(kNoRoom, kFileFailureSource,
                      u"Datei \"" + file_.file().name() + u"\": keine Zeile mehr frei");
            row = head.frei;
            head = {row, row + 1};
        }
        taken.rows.push_back(row);
    }
    taken.after = head;
    file_.head(head);
    taken.size = file_.size();
    return taken;
}

void RowSupply::takeBack(const Taken& taken) {
    if (taken.rows.empty()) return;
    file_.refresh();
    if (!stands(taken)) return;
    for (std::size_t i = 0; i < taken.links.size(); ++i)
        file_.writePointer(taken.rows[i], ChainFormat::kLinkOffset, taken.links[i]);
    // The end before the number that tells of it: between the two a row number is lost, no row.
    const uint64 end = file_.format().offsetOf(taken.after.hoch + 1);
    if (file_.size() > taken.size && file_.size() <= end) file_.cutTo(taken.size);
    file_.head(taken.before);
}

void RowSupply::free(std::span<const int32> rows) {
    if (rows.empty()) return;
    file_.refresh();
    ChainHead head = sound();
    int32 link = head.frei;
    Bytes room;
    // The last one first: at no moment does a free row lead into the chain that it came from.
    for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
        if (file_.format().link(file_.row(*row, room)) != link)
            file_.writePointer(*row, ChainFormat::kLinkOffset, link);
        link = *row;
    }
    head.frei = link;
    file_.head(head);
}

void RowSupply::dropList() {
    file_.refresh();
    if (file_.rows() == 0) return;
    const ChainHead head = sound();
    const ChainHead without{head.hoch, head.hoch + 1};
    if (file_.head() != without) file_.head(without);
}

}  // namespace tsRtm

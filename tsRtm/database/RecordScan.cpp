#include "tsRtm/database/RecordScan.hpp"

#include <algorithm>
#include <limits>
#include <utility>

#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/database/engine/DatabaseEngine.hpp"

namespace tsRtm {
namespace {

// Near enough to the processor to be read again at once.
constexpr std::size_t kScanBlock = std::size_t{64} * 1024;

}  // namespace

// What the records of a block are read by: the database may get another layout while they are looked at.
struct RecordScan::Texts {
    RecordLayout layout;
    RecordText inPlace;
    std::vector<Text> decoded;  // from 1
};

RecordScan::RecordScan(clsTSDB& database, int32 first, int32 last)
    : database_(database),
      engine_(*database.engine_),
      number_(std::max(first, 1) - 1),
      last_(last > 0 ? last : std::numeric_limits<int32>::max()),
      texts_(std::make_unique<Texts>()) {}

RecordScan::~RecordScan() = default;

void RecordScan::learnLayout() {
    const RecordLayout& layout = texts_->layout = engine_.d.layout;
    length_ = layout.bytes();
    columns_.assign(1, {0, layout.unit()});
    for (int32 i = 1; i <= layout.fields(); ++i)
        columns_.push_back({layout.field(i).offset, layout.field(i).bytes});
    texts_->decoded.resize(columns_.size());
}

// number_ is the record to come.
bool RecordScan::readBlock() {
    const clsTSDB::Working working(database_);
    auto& d = engine_.d;
    row_ = end_ = nullptr;
    engine_.recordingFileFailures([&] {
        d.refreshWhenDue();
        if (!d.store || number_ > last_ || !d.store.reaches(number_)) return;
        learnLayout();
        const auto most = static_cast<int32>(std::max<std::size_t>(kScanBlock / length_, 1));
        const int32 count = std::min({most, last_ - number_ + 1, d.records() - number_ + 1});
        d.readRun(number_, count, block_);
        row_ = block_.data();
        end_ = row_ + block_.size();
    });
    // Asked again behind the end, it stays there.
    if (!row_) {
        --number_;
        length_ = 0;
    }
    return row_ != nullptr;
}

TextView RecordScan::value(int32 field) {
    const auto& layout = texts_->layout;
    if (!layout.has(field)) {
        engine_.fail(DatabaseError::badField);
        return {};
    }
    const auto& form = layout.field(field);
    Text& decoded = texts_->decoded[static_cast<std::size_t>(field)];
    if (form.inPlace) {
        if (!std::exchange(textKnown_, true)) texts_->inPlace.look(record());
        const TextView text = texts_->inPlace.field(form);
        if (!form.date || !text.starts_with(u'J')) return text;
    }
    layout.decode(form, columns(field), RecordLayout::Decode::value, decoded);
    return decoded;
}

}  // namespace tsRtm

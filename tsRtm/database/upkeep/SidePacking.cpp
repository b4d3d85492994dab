#include "tsRtm/database/upkeep/SidePacking.hpp"

#include <optional>

#include "tsRtm/database/upkeep/LostFiles.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

// All memos and blobs that records, or rows of a chain, point to.
class MemoPacking {
 public:
    MemoPacking(OpenDatabase& d, MemoStores& stores, const RecordLayout& layout, FileExchange& exchange)
        : stores_(stores) {
        for (int32 field = 1; field <= layout.fields(); ++field) {
            const Text name = stores.fileName(field);
            if (stores.has(field) && FilesTopic::Exist(d.folder.path(name)))
                fresh_.push_back({field, MemoFile(exchange.make(name))});
        }
    }
    bool empty() const noexcept { return fresh_.empty(); }

    // Copies the entries of an image, and names their new places in it.
    void copy(std::span<char> image) {
        const BytesView bytes(image.data(), image.size());
        for (auto& [field, file] : fresh_)
            stores_.setPointer(image, field, stores_.copy(field, stores_.pointerIn(bytes, field), file));
    }

 private:
    struct Store {
        int32 field;
        MemoFile file;
    };

    MemoStores& stores_;
    std::vector<Store> fresh_;
};

// The chains of one field.
class ChainPacking {
 public:
    ChainPacking(OpenDatabase& d, ChainStore& chain, int32 field, FileExchange& exchange)
        : chain_(chain),
          field_(d.layout.field(field)),
          number_(field),
          rows_(exchange.make(chain.fileName())) {
        if (auto* const stores = OpenDatabase::rowMemos(chain))
            memos_.emplace(d, *stores, chain.rows().layout(), exchange);
        rows_.add(chain.format().blankRow());  // its numbers come last
    }

    void copy(int32 record, std::span<char> image) {
        const auto columns = image.subspan(field_.offset, field_.bytes);
        ChainContent content = chain_.walk({columns.data(), columns.size()});
        refuseCorrupt(record, content);
        const auto& format = chain_.format();
        const auto count = static_cast<int32>(content.rows.size());
        if (count > format.greatest() - last_)
            raise(numberOf(DatabaseError::noRoom), kFileFailureSource, chain_.path() + u": zu viele Zeilen");
        const std::size_t length = format.rowBytes();
        for (int32 i = 1; i <= count; ++i) {
            const auto row =
                std::span(content.bytes).subspan(static_cast<std::size_t>(i - 1) * length, length);
            format.pointers(i == 1 ? 0 : last_ + i - 1, i == count ? 0 : last_ + i + 1, row);
            if (memos_) memos_->copy(row);
        }
        rows_.add(content.bytes);
        format.ends(count == 0 ? ChainEnds() : ChainEnds{last_ + 1, last_ + count}, columns);
        last_ += count;
    }
    void finish() { rows_.put(0, chain_.format().head({last_, last_ + 1})); }

 private:
    // Row 1 is no row: a pointer to it ends a chain.
    void refuseCorrupt(int32 record, const ChainContent& content) const {
        const auto& format = chain_.format();
        const std::size_t length = format.rowBytes();
        const int32 to = content.rows.empty()
                             ? format.ends(content.columns).first
                             : format.next(BytesView(content.bytes).substr(content.bytes.size() - length));
        if (to == 0 || to == 1) return;
        const Text text = u"Corrupt pointer in chain #" + toText(number_) + u" of record #" + toText(record);
        rtmMain::DebugLog(text);
        raise(numberOf(DatabaseError::device), kRaisedSource, text);
    }

    ChainStore& chain_;
    const FieldLayout& field_;
    int32 number_;
    RunOfRecords rows_;
    std::optional<MemoPacking> memos_;
    int32 last_ = 1;  // row
};

}  // namespace

BulkOutcome packSideFiles(OpenDatabase& d, const BulkFace& face) {
    return exchangeFiles(
        d, face, {[&](FileExchange& exchange) {
            for (const auto& line : unfinishedWork(d.folder)) raise(70, kFileFailureSource, line);
            MemoPacking memos(d, d.memos, d.layout, exchange);
            std::vector<std::unique_ptr<ChainPacking>> chains;
            for (const int32 field : d.chains.fields()) {
                auto* const chain = d.chains.find(field);
                if (chain && chain->format().usable() && FilesTopic::Exist(chain->path()))
                    chains.push_back(std::make_unique<ChainPacking>(d, *chain, field, exchange));
            }
            if (memos.empty() && chains.empty()) return;
            RunOfRecords records(exchange.make(kDataFile));
            Bytes image;
            eachRecord(d, face, [&](int32 number, BytesView record) {
                image.assign(record);
                memos.copy(image);
                for (auto& chain : chains) chain->copy(number, image);
                records.add(image);
            });
            records.flush();
            for (auto& chain : chains) chain->finish();
        }});
}

}  // namespace tsRtm

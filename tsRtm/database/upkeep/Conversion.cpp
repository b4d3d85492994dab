#include "tsRtm/database/upkeep/Conversion.hpp"

#include <algorithm>

#include "tsRtm/control/files/ControlText.hpp"
#include "tsRtm/database/upkeep/LostFiles.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

CharacterForm formAfter(Conversion conversion, CharacterForm before) {
    switch (conversion) {
        case Conversion::toAnsi:
            return {};
        case Conversion::toUnicode:
            return {.wide = true};
        default:
            return {.wide = before.wide};
    }
}

// The chains of one field.
struct ChainPart {
    ChainPart(ChainStore& store, Conversion conversion) : ChainPart(store, formOf(store), conversion) {}
    ChainPart(ChainStore& store, CharacterForm form, Conversion conversion)
        : chain(store), recoding(store.control(), form, formAfter(conversion, form)) {}

    static CharacterForm formOf(const ChainStore& store) {
        return {store.rows().layout().wide(), store.rows().layout().dos()};
    }

    ChainStore& chain;
    Recoding recoding;
};

class Converter {
 public:
    Converter(OpenDatabase& d, const BulkFace& face, Conversion conversion)
        : d_(d), face_(face), recoding_(*d.control, formOf(d), formAfter(conversion, formOf(d))) {
        for (const int32 field : d.chains.fields()) {
            auto* const chain = d.chains.find(field);
            if (!chain) continue;
            ChainPart part(*chain, conversion);
            if (part.recoding.changes()) chains_.push_back(std::move(part));
        }
    }

    bool changes() const noexcept { return recoding_.changes() || !chains_.empty(); }

    ConversionLoss loss() {
        ConversionLoss loss;
        if (recoding_.changes() && !recoding_.to().wide()) addTitles(loss, *d_.control);
        for (const auto& part : chains_)
            if (!part.recoding.to().wide()) addTitles(loss, part.chain.control());
        eachRecord(d_, face_, [&](int32 number, BytesView record) {
            const auto lost = recoding_.lossOf(record);
            add(loss, number, lost.field, lost.characters);
            for (auto& part : chains_) addRows(loss, number, record, part);
        });
        return loss;
    }

    void make(FileExchange& exchange) {
        if (recoding_.changes()) {
            auto& data = exchange.make(kDataFile);
            makeRecords(data);
            makeIndexes(exchange, data);
            exchange.control(d_.control->TextAs(recoding_.to().wide()));
        }
        for (auto& part : chains_) makeChain(exchange, part);
    }

 private:
    static CharacterForm formOf(const OpenDatabase& d) { return {d.layout.wide(), d.layout.dos()}; }

    static void add(ConversionLoss& loss, int32 record, int32 field, int64 characters) {
        if (characters > 0 && loss.characters == 0) {
            loss.record = record;
            loss.field = field;
        }
        loss.characters += characters;
    }
    static void addTitles(ConversionLoss& loss, const clsControl& control) {
        for (int32 i = 1; i <= control.Felder(); ++i)
            for (const char16_t c : control.field(i).Titel()) add(loss, 0, i, unicodeToAnsi(c) < 0 ? 1 : 0);
    }
    // Only rows that belong to a record: what stands in free ones is nobody's.
    void addRows(ConversionLoss& loss, int32 number, BytesView record, ChainPart& part) {
        auto& chain = part.chain;
        if (part.recoding.to().wide() || !chain.format().usable()) return;
        const ChainContent content = chain.walk(d_.layout.bytesOf(chain.field(), record));
        const std::size_t length = chain.format().rowBytes();
        for (std::size_t i = 0; i < content.rows.size(); ++i)
            add(loss, number, chain.control().Anker(),
                part.recoding.lossOf(BytesView(content.bytes).substr(i * length, length)).characters);
    }

    void makeRecords(platform::File& data) {
        RunOfRecords records(data);
        Bytes image, whole;
        eachRecord(d_, face_, [&](int32, BytesView record) {
            recoding_.recode(record, image);
            records.add(image);
        });
        records.flush();
    }

    void makeIndexes(FileExchange& exchange, platform::File& data) {
        RecordStore store(data, recoding_.to(), false);
        const auto form = d_.indexes.big() ? IndexFileForm::tree : IndexFileForm::flat;
        RecordSorter sorter;
        for (int32 i = 1; d_.indexes.has(i); ++i) {
            const IndexKeys& now = d_.indexes.keys(i);
            const IndexKeys keys(recoding_.to(), {now.field(0), now.field(1), now.field(2)});
            const auto order = sorter.inOrder(store, keys, face_.progress);
            buildNewIndex(exchange.make(d_.indexes.fileName(i)), form, order, i, face_.progress);
        }
    }

    // All rows: row 1 is its two numbers in the same characters, and a free row its link.
    void makeChain(FileExchange& exchange, ChainPart& part) {
        auto& chain = part.chain;
        if (chain.format().usable() && chain.openToRead()) {
            RunOfRecords rows(exchange.make(chain.fileName()));
            Bytes room, image;
            const int32 count = chain.file().refresh();
            for (int32 row = 1; row <= count; ++row) {
                part.recoding.recode(chain.file().row(row, room), image);
                rows.add(image);
            }
            rows.flush();
            chain.file().check();
        }
        const Bytes text = chain.control().TextAs(part.recoding.to().wide());
        RunOfRecords control(exchange.make(ketteCtlName(chain.control().Anker())));
        control.add(text);
        control.flush();
    }

    OpenDatabase& d_;
    const BulkFace& face_;
    Recoding recoding_;
    std::vector<ChainPart> chains_;
};

}  // namespace

ConversionOutcome convertDatabase(OpenDatabase& d, const BulkFace& face, Conversion conversion,
                                  const std::function<bool(const ConversionLoss&)>& accepts) {
    ConversionOutcome out;
    BulkWork work;
    work.make = [&](FileExchange& exchange) {
        Converter converter(d, face, conversion);
        if (!converter.changes()) return;
        for (const auto& line : unfinishedWork(d.folder)) raise(70, kFileFailureSource, line);
        const auto loss = converter.loss();
        out.refused = loss.characters > 0 && !accepts(loss);
        if (!out.refused) converter.make(exchange);
    };
    work.committed = [&] {
        if (!d.readStructure())
            raise(numberOf(DatabaseError::noControl), kFileFailureSource, d.folder.path(kControlFile));
    };
    static_cast<BulkOutcome&>(out) = exchangeFiles(d, face, work);
    return out;
}

}  // namespace tsRtm

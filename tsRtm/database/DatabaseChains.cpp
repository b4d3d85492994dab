// clsTSDB: chains of the current record.
#include <algorithm>

#include "tsRtm/database/chains/ChainMerge.hpp"
#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/database/engine/DatabaseEngine.hpp"
#include "tsRtm/frame/text/ByteStrings.hpp"

namespace tsRtm {
namespace {

constexpr DatabaseError kNoChain = DatabaseError::badIndex;

// What KetteAction is asked to do.
enum class Operation : int32 { read = 1, write = 2, addAtTail = 5, addAtHead = 7 };
constexpr int32 kOperation = 7;
constexpr int32 kFirstThatWrites = 4;
constexpr int32 kPacked = 16;
constexpr int32 kByEvent = 32;
constexpr char16_t kBetweenCells = 0;

std::vector<Text> packed(const std::vector<Text>& cells) {
    Text out;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (i > 0) out += kBetweenCells;
        out += cells[i];
    }
    return {out};
}

std::vector<Text> unpacked(const std::vector<Text>& row) {
    std::vector<Text> cells;
    if (row.empty()) return cells;
    TextView rest = row.front();
    for (;;) {
        const auto end = rest.find(kBetweenCells);
        cells.emplace_back(rest.substr(0, end));
        if (end == TextView::npos) return cells;
        rest.remove_prefix(end + 1);
    }
}

Text descriptor(const clsControl& control) {
    return MKI(1) + MKI(control.Felder()) + MKI(control.MaxRecords()) + Text(1, kBetweenCells);
}

// Rows between the chain and the caller of KetteAction; `io(n, cells)` raises the event.
template <class Io>
int32 giveRows(TextTable& rows, int32 action, TextTable& table, Io io) {
    if ((action & kPacked) != 0) std::transform(rows.begin(), rows.end(), rows.begin(), packed);
    const auto all = static_cast<int32>(rows.size());
    if ((action & kByEvent) != 0) {
        for (int32 n = 1; n <= all; ++n) io(n, rows[static_cast<std::size_t>(n - 1)]);
        return all;
    }
    // As many rows and cells as the caller has room for.
    const std::size_t count = std::min(rows.size(), table.empty() ? 0 : table.size() - 1);
    for (std::size_t i = 0; i < count; ++i)
        std::copy_n(rows[i].begin(), std::min(rows[i].size(), table[i + 1].size()), table[i + 1].begin());
    return static_cast<int32>(count);
}

// False where the table has not so many rows.
template <class Io>
bool takeRows(TextTable& rows, int32 wanted, int32 fields, int32 action, const TextTable& table, Io io) {
    const bool byEvent = (action & kByEvent) != 0;
    if (wanted < 0 || (!byEvent && wanted > 0 && static_cast<std::size_t>(wanted) >= table.size()))
        return false;
    for (int32 n = 1; n <= wanted; ++n) {
        std::vector<Text> row(static_cast<std::size_t>(fields));
        if (byEvent)
            io(n, row);
        else
            row = table[static_cast<std::size_t>(n)];
        rows.push_back((action & kPacked) != 0 ? unpacked(row) : std::move(row));
    }
    return true;
}

}  // namespace

ChainStore* clsTSDB::useChain(int32 field) {
    auto& e = *engine_;
    ChainStore* const store = e.d.chains.find(field);
    if (store)
        e.c.chain = field;
    else
        e.fail(kNoChain);
    return store;
}

bool clsTSDB::readChain(int32 record, ChainStore& store, TextTable& rows) {
    auto& e = *engine_;
    rows.clear();
    try {
        if (!e.d.store || !e.d.store.reaches(record)) return e.fail(DatabaseError::badRecord);
        const ChainContent content = store.read(record);
        const std::size_t length = store.format().rowBytes();
        rows.resize(content.rows.size());
        for (std::size_t i = 0; i < rows.size(); ++i)
            store.rows().decode(BytesView(content.bytes).substr(i * length, length), rows[i]);
    } catch (const Failure& failure) {
        rows.clear();
        e.fail(failure);
    }
    return !rows.empty();
}

// `written` comes before anybody hears of it.
bool clsTSDB::writeChain(int32 record, const ChainStore& store, SideWrite& write,
                         const std::function<void()>& written) {
    auto& e = *engine_;
    auto nothing = e.takeBuffer();
    SideWrite* const sides[] = {&write};
    const auto out = e.writer.change(
        record, {.content = *nothing, .extent = RecordBuffer::Extent::assigned, .sides = sides});
    e.giveBack(std::move(nothing));
    if (!out) return e.fail(out.error);
    if (written) written();
    e.recordingFileFailures([&] {
        Bytes place(store.field().bytes, ' ');
        e.d.read(record, store.field().offset, place);
        if (e.c.aktSatz == record) e.c.felder.show(store.control().Anker(), place);
    });
    recordChanged(record);
    return true;
}

bool clsTSDB::readRows(int32 record, int32 field, ChainRowSet& rows) {
    const Working working(*this);
    auto& e = *engine_;
    ChainStore* const store = useChain(field);
    if (!store) return false;
    if (!e.d.store || !e.d.store.reaches(record)) return e.fail(DatabaseError::badRecord);
    try {
        rows.load(store->read(record));
        return true;
    } catch (const Failure& failure) {
        e.fail(failure);
        return false;
    }
}

bool clsTSDB::storeRows(clsTSRecord& parent, int32 field, ChainRowSet& rows, const ChainRow* only) {
    const Working working(*this);
    auto& e = *engine_;
    e.fehler = 0;
    if (e.d.folder.readOnly) return e.fail(DatabaseError::readOnly);
    ChainStore* const store = useChain(field);
    if (!store) return false;
    MergeChain write(*store, rows, only);
    return writeChain(parent.Satznummer(), *store, write, [&] { write.settle(); });
}

bool clsTSDB::KetteLesen(int32 KetteNr, TextTable& Inhalt) {
    const Working working(*this);
    auto& e = *engine_;
    Inhalt.clear();
    const int32 field = e.d.control ? e.d.control->KetteFeld(KetteNr) : 0;
    if (field == 0) return e.fail(DatabaseError::badField);
    ChainStore* const store = useChain(field);
    return store && readChain(e.c.aktSatz, *store, Inhalt);
}

void clsTSDB::KetteSchreiben(int32 KetteNr, const TextTable& Kette) {
    const Working working(*this);
    auto& e = *engine_;
    if (e.d.folder.readOnly) {
        e.fail(DatabaseError::readOnly);
        return;
    }
    ChainStore* const store = useChain(e.d.control ? e.d.control->KetteFeld(KetteNr) : 0);
    if (!store) return;
    ReplaceChain write(*store, store->rows().encode(Kette));
    writeChain(e.c.aktSatz, *store, write);
}

void clsTSDB::KetteAction(int32 How, int32 Feld, TextTable& TabFeld, int32& Anzahl) {
    const Working working(*this);
    auto& e = *engine_;
    if (Feld < 1) return;
    const auto operation = static_cast<Operation>(How & kOperation);
    if (e.d.folder.readOnly && (operation == Operation::write || (How & kOperation) >= kFirstThatWrites)) {
        e.fail(DatabaseError::chainRefused);
        return;
    }
    const bool reads = operation == Operation::read;
    const bool adds = operation == Operation::addAtTail || operation == Operation::addAtHead;
    if (!reads && !adds && operation != Operation::write) return;
    ChainStore* const store = useChain(Feld);
    if (!store) return;
    // Handlers of KetteIO may stand elsewhere.
    const int32 record = e.c.aktSatz;
    const int32 fields = store->rows().fields();
    const auto io = [&](int32 row, std::vector<Text>& cells) { KetteIO(Feld, row, cells, !reads); };
    TextTable rows;
    if (reads) {
        readChain(record, *store, rows);
        if (TabFeld.empty())
            TabFeld.assign(rows.size() + 1, std::vector<Text>(static_cast<std::size_t>(fields)));
    }
    if (!adds && !TabFeld.empty() && !TabFeld[0].empty()) TabFeld[0][0] = descriptor(store->control());
    if (reads) {
        Anzahl = giveRows(rows, How, TabFeld, io);
        return;
    }
    if (!takeRows(rows, adds ? 1 : Anzahl, fields, How, TabFeld, io)) {
        e.fail(DatabaseError::badField);
        return;
    }
    if (adds) {
        using enum AddChainRow::Place;
        AddChainRow write(*store, operation == Operation::addAtTail ? tail : head,
                          store->rows().encode(rows.front()));
        writeChain(record, *store, write);
    } else {
        ReplaceChain write(*store, store->rows().encode(rows));
        writeChain(record, *store, write);
    }
}

// --- What the fields of the chain are

template <class Entry, class Take>
void clsTSDB::eachChainField(std::vector<Entry>& out, Take take) const {
    out.clear();
    const ChainStore* const store =
        engine_->c.chain == 0 ? nullptr : engine_->d.chains.find(engine_->c.chain);
    for (int32 n = 1; store && n <= store->control().Felder(); ++n) out.push_back(take(store->control(), n));
}

void clsTSDB::KetteCaption(std::vector<Text>& Inhalt) const {
    eachChainField(Inhalt, [](auto& control, int32 n) { return Text(control.field(n).Caption()); });
}
void clsTSDB::KetteHilfe(std::vector<Text>& Inhalt) const {
    eachChainField(Inhalt, [](auto& control, int32 n) { return Text(control.field(n).Hilfe()); });
}
void clsTSDB::KetteTyp(std::vector<int32>& Inhalt) const {
    eachChainField(Inhalt, [](auto& control, int32 n) { return control.field(n).Typ(); });
}
void clsTSDB::KetteNachkomma(std::vector<int32>& Inhalt) const {
    eachChainField(Inhalt, [](auto& control, int32 n) { return control.field(n).NachKomma(); });
}
void clsTSDB::KetteLaenge(std::vector<int32>& Inhalt) const {
    eachChainField(Inhalt, [](auto& control, int32 n) { return control.field(n).Laenge(); });
}
void clsTSDB::KetteTSIO(TSIOArray& Inhalt) const {
    eachChainField(Inhalt, [](auto& control, int32 n) { return control.Feld(n); });
}

int32 clsTSDB::KetteMaxZeilen() const {
    const ChainStore* const store =
        engine_->c.chain == 0 ? nullptr : engine_->d.chains.find(engine_->c.chain);
    return store ? store->control().MaxRecords() : 0;
}

}  // namespace tsRtm

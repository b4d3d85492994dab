#include "tsRtm/tables/DatenTab.hpp"

#include <cmath>

#include "tsRtm/frame/files/SystemFailures.hpp"
#include "tsRtm/frame/runtime/VariantText.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/NumberText.hpp"
#include "tsRtm/tables/storage/LineCode.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

// As files have it, on every machine alike.
Text machineForm(float64 value) {
    Text text;
    Runden(rtmMain::state().locale.currDigits, value, text);
    return text;
}

Text localForm(float64 value) { return replaceAll(machineForm(value), u".", rtmMain::state().locale.sepDec); }

template <class T>
void insertCells(std::vector<T>& all, std::size_t at, const std::vector<T>& cells) {
    all.insert(all.begin() + static_cast<std::ptrdiff_t>(at), cells.begin(), cells.end());
}

template <class T>
void eraseCells(std::vector<T>& all, std::size_t from, std::size_t to) {
    all.erase(all.begin() + static_cast<std::ptrdiff_t>(from), all.begin() + static_cast<std::ptrdiff_t>(to));
}

}  // namespace

void DatenTab::Init(TextView Datei, int32 Spalten, TextView Typen, bool SyncAlways, bool /*UseWriteMethod*/) {
    if (Spalten < 1) raise(380, source(u".Init"), u"Eine Tabelle hat mindestens eine Spalte");
    bind(Datei, SyncAlways);
    columns_.assign(static_cast<std::size_t>(Spalten), {});
    textColumns_ = wholeColumns_ = realColumns_ = 0;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const char16_t letter = i < Typen.size() ? Typen[i] : u'T';
        Column& column = columns_[i];
        column.kind = letter == u'L' ? Kind::whole : letter == u'D' ? Kind::real : Kind::text;
        auto& count = column.kind == Kind::whole  ? wholeColumns_
                      : column.kind == Kind::real ? realColumns_
                                                  : textColumns_;
        column.place = count++;
    }
}

void DatenTab::dropRows() noexcept {
    cells_ = {};
    rows_ = 0;
    for (Column& column : columns_) column.sumValid = false;
}

bool DatenTab::has(int32 row, int32 column) const noexcept {
    return row >= 1 && row <= rows_ && column >= 1 && column <= Spalten();
}

std::size_t DatenTab::at(int32 row, const Column& column) const noexcept {
    const std::size_t perRow = column.kind == Kind::whole  ? wholeColumns_
                               : column.kind == Kind::real ? realColumns_
                                                           : textColumns_;
    return (static_cast<std::size_t>(row) - 1) * perRow + column.place;
}

void DatenTab::store(Cells& cells, std::size_t at, Kind kind, TextView text) const {
    switch (kind) {
        case Kind::text:
            cells.texts[at] = text;
            break;
        case Kind::whole:
            cells.wholes[at] = roundToInt32(Val(text));
            break;
        case Kind::real:
            cells.reals[at] = TSVal(text);
            break;
    }
}

// The lines that are left over when the rows are whole are in the file still, until it is written.
void DatenTab::load(const std::vector<Text>& lines) {
    const std::size_t count = lines.size() / columns_.size();
    dropRows();
    cells_.texts.resize(count * textColumns_);
    cells_.wholes.resize(count * wholeColumns_);
    cells_.reals.resize(count * realColumns_);
    rows_ = static_cast<int32>(count);
    auto line = lines.begin();
    for (int32 row = 1; row <= rows_; ++row)
        for (const Column& column : columns_) store(cells_, at(row, column), column.kind, decoded(*line++));
    okay_ = line == lines.end();
}

Text DatenTab::lineOf(const Cells& cells, std::size_t at, Kind kind) {
    const Text plain = kind == Kind::whole  ? toText(cells.wholes[at])
                       : kind == Kind::real ? machineForm(cells.reals[at])
                                            : cells.texts[at];
    // Encrypted may have been switched off since the cell was set.
    if (kind == Kind::text) needHeldText(plain, Holds::oneLine, u".SchreibDaten");
    return coded(plain) += kLineEnd;
}

Text DatenTab::rowText(const Cells& cells, std::size_t row) {
    Text text;
    for (const Column& column : columns_)
        text += lineOf(cells, at(static_cast<int32>(row), column), column.kind);
    return text;
}

Text DatenTab::fileText() {
    Text text;
    for (int32 row = 1; row <= rows_; ++row) text += rowText(cells_, static_cast<std::size_t>(row));
    return text;
}

Text DatenTab::Item(int32 Zeile, int32 Spalte) {
    sync();
    return has(Zeile, Spalte) ? cell(Zeile, column(Spalte)) : Text();
}

Text DatenTab::cell(int32 row, const Column& of) const {
    const std::size_t place = at(row, of);
    return of.kind == Kind::whole  ? toText(cells_.wholes[place])
           : of.kind == Kind::real ? localForm(cells_.reals[place])
                                   : cells_.texts[place];
}

void DatenTab::Item(int32 Zeile, int32 Spalte, TextView Wert) {
    beforeChange(u".Item");
    if (!has(Zeile, Spalte)) return;
    Column& of = column(Spalte);
    if (of.kind == Kind::text) needHeldText(Wert, Holds::oneLine, u".Item");
    const float64 before = of.kind == Kind::text ? 0 : number(Zeile, of);
    store(cells_, at(Zeile, of), of.kind, Wert);
    if (of.sumValid) of.sum += number(Zeile, of) - before;
    afterChange();
}

float64 DatenTab::number(int32 row, const Column& of) const {
    const std::size_t place = at(row, of);
    return of.kind == Kind::whole  ? cells_.wholes[place]
           : of.kind == Kind::real ? cells_.reals[place]
                                   : TSVal(cells_.texts[place]);
}

float64 DatenTab::Value(int32 Zeile, int32 Spalte) {
    sync();
    return has(Zeile, Spalte) ? number(Zeile, column(Spalte)) : 0;
}

void DatenTab::Value(int32 Zeile, int32 Spalte, float64 Wert) {
    // What cannot be written must not get in.
    if (!std::isfinite(Wert)) raise(6, source(u".Value"), failureText(6));
    beforeChange(u".Value");
    if (!has(Zeile, Spalte)) return;
    Column& of = column(Spalte);
    const float64 before = of.sumValid ? number(Zeile, of) : 0;
    const std::size_t place = at(Zeile, of);
    if (of.kind == Kind::whole)
        cells_.wholes[place] = roundToInt32(Wert);
    else if (of.kind == Kind::real)
        cells_.reals[place] = Wert;
    else
        cells_.texts[place] = plainNumber(Wert);
    if (of.sumValid) of.sum += number(Zeile, of) - before;
    afterChange();
}

std::vector<Text> DatenTab::Record(int32 Zeile) {
    sync();
    std::vector<Text> record;
    if (!has(Zeile, 1)) return record;
    // Without another look: the row is of one version.
    for (const Column& of : columns_) record.push_back(cell(Zeile, of));
    return record;
}

DatenTab::Cells DatenTab::rowOf(const std::vector<Text>& Daten, TextView Operation) const {
    Cells row{std::vector<Text>(textColumns_), std::vector<int32>(wholeColumns_),
              std::vector<float64>(realColumns_)};
    for (std::size_t i = 0; i < columns_.size() && i < Daten.size(); ++i) {
        if (columns_[i].kind == Kind::text) needHeldText(Daten[i], Holds::oneLine, Operation);
        store(row, columns_[i].place, columns_[i].kind, Daten[i]);
    }
    return row;
}

void DatenTab::insertRow(int32 row, const Cells& cells) {
    const auto before = static_cast<std::size_t>(row) - 1;
    insertCells(cells_.texts, before * textColumns_, cells.texts);
    insertCells(cells_.wholes, before * wholeColumns_, cells.wholes);
    insertCells(cells_.reals, before * realColumns_, cells.reals);
    ++rows_;
    addToSums(row, 1);
}

void DatenTab::addToSums(int32 row, float64 sign) {
    for (Column& of : columns_)
        if (of.sumValid) of.sum += sign * number(row, of);
}

int32 DatenTab::Add(const std::vector<Text>& Daten, bool Sync) {
    const bool save = beforeAdding(Sync, u".Add");
    const Cells row = rowOf(Daten, u".Add");
    // The new row alone goes to the file, not the whole table.
    const bool stored = save && appended(rowText(row, 1));
    insertRow(rows_ + 1, row);
    const int32 number = rows_;
    if (!stored) changed_ = true;
    if (save) write();
    Change();
    return number;
}

int32 DatenTab::VarAdd(const VariantList& Daten) {
    std::vector<Text> cells;
    cells.reserve(Daten.size());
    for (const Variant& value : Daten) cells.push_back(textOf(value));
    return Add(cells);
}

int32 DatenTab::Insert(int32 Zeile, const std::vector<Text>& Daten, bool Sync) {
    const bool save = beforeAdding(Sync, u".Insert");
    if (!has(Zeile, 1)) return 0;
    insertRow(Zeile, rowOf(Daten, u".Insert"));
    changed_ = true;
    if (save) write();
    Change();
    return Zeile;
}

int32 DatenTab::RemoveRange(int32 VonZeile, int32 BisZeile) {
    beforeChange(u".RemoveRange");
    if (!has(VonZeile, 1) || !has(BisZeile, 1) || BisZeile < VonZeile) return 0;
    if (VonZeile == 1 && BisZeile == rows_) return Clear(false);
    for (int32 row = VonZeile; row <= BisZeile; ++row) addToSums(row, -1);
    const auto from = static_cast<std::size_t>(VonZeile) - 1;
    const auto to = static_cast<std::size_t>(BisZeile);
    eraseCells(cells_.texts, from * textColumns_, to * textColumns_);
    eraseCells(cells_.wholes, from * wholeColumns_, to * wholeColumns_);
    eraseCells(cells_.reals, from * realColumns_, to * realColumns_);
    const int32 removed = BisZeile - VonZeile + 1;
    rows_ -= removed;
    afterChange();
    return removed;
}

float64 DatenTab::Summe(int32 Spalte) {
    if (Spalte < 1 || Spalte > Spalten())
        raise(381, source(u".Summe"),
              u"Die Spalte " + toText(Spalte) + u" existiert in der Tabelle \"" + Datei() + u"\" nicht");
    sync();
    Column& of = column(Spalte);
    if (of.kind == Kind::text) return 0;
    if (!of.sumValid) {
        of.sum = 0;
        for (int32 row = 1; row <= rows_; ++row) of.sum += number(row, of);
        of.sumValid = true;
    }
    return of.sum;
}

void DatenTab::CountKey(TextView Key) {
    sync();
    int32 row = 1;
    while (row <= rows_ && cell(row, column(1)) != Key) ++row;
    if (row > rows_) row = Add({Text(Key)});
    Value(row, 2, Value(row, 2) + 1);
}

}  // namespace tsRtm

#pragma once
// A table with a fixed number of typed columns that lives in a text file.
//
//     DatenTab table;
//     table.Init(u"Konten.tab", 3, u"TLD");        // text, whole number, number
//     table.Add({u"Müller", u"7", u"12,50"});       // one row more in the file
//     table.Summe(3);
#include "tsRtm/tables/TableBase.hpp"

namespace tsRtm {

// Columns count from 1. The file has a cell a line, row by row. A line break in a cell raises 380 unless the
// cells are encrypted or there is no file: it would shift all cells behind it. Sharing, storing and failures:
// TableBase.hpp.
class DatenTab final : public TableBase {
 public:
    DatenTab() : TableBase(u"DatenTab") {}
    ~DatenTab() override { writeAtTheEnd(); }

    // Typen has a letter a column: "L" int32, "D" float64, any other, or none, Text. UseWriteMethod has no
    // effect. Raises 380 for fewer than one column.
    void Init(TextView Datei, int32 Spalten, TextView Typen = {}, bool SyncAlways = false,
              bool UseWriteMethod = false);

    int32 Spalten() const noexcept { return static_cast<int32>(columns_.size()); }
    bool Dirty() const noexcept { return changed_; }
    void Dirty(bool Value) noexcept { changed_ = Value; }

    // A cell; empty outside the table, where a write does nothing. Numbers are
    // decimal text; a "D" cell has Curr_Digits places behind the locale's decimal mark.
    Text Item(int32 Zeile, int32 Spalte);
    void Item(int32 Zeile, int32 Spalte, TextView Wert);
    // The number of a cell, of a Text cell the one that its text gives; 0 outside the table. Raises 6 for an
    // infinite number.
    float64 Value(int32 Zeile, int32 Spalte);
    void Value(int32 Zeile, int32 Spalte, float64 Wert);
    // All cells of a row; none outside the table.
    std::vector<Text> Record(int32 Zeile);

    // Daten may have fewer cells than the table has columns; the others are empty or 0. With Sync the row is
    // put into the file at once. The number of the new row.
    int32 Add(const std::vector<Text>& Daten, bool Sync = true);
    int32 VarAdd(const VariantList& Daten);
    // In front of a row that is there. Its number, or 0.
    int32 Insert(int32 Zeile, const std::vector<Text>& Daten, bool Sync = true);
    // The number of rows removed; 0 for a range that does not lie in the table.
    int32 RemoveRange(int32 VonZeile, int32 BisZeile);
    int32 Remove(int32 Zeile) { return RemoveRange(Zeile, Zeile); }

    // Sum of a numeric column, kept up to date from the first call on; 0 of a Text column. Raises 381 outside
    // 1..Spalten.
    float64 Summe(int32 Spalte);

    // Adds 1 to the second cell, an "L" one, of the row whose first cell is the key; a row is added for a new
    // key.
    void CountKey(TextView Key);

 private:
    enum class Kind { text, whole, real };
    struct Column {
        Kind kind = Kind::text;
        std::size_t place = 0;  // among the columns of its kind
        float64 sum = 0;
        bool sumValid = false;
    };
    // The cells of all rows, by kind: row by row, the columns of the kind in their order.
    struct Cells {
        std::vector<Text> texts;
        std::vector<int32> wholes;
        std::vector<float64> reals;
    };

    void load(const std::vector<Text>& lines) override;
    int32 rows() const noexcept override { return rows_; }
    void dropRows() noexcept override;
    Text fileText() override;

    bool has(int32 row, int32 column) const noexcept;
    std::size_t at(int32 row, const Column& column) const noexcept;
    const Column& column(int32 number) const { return columns_[static_cast<std::size_t>(number) - 1]; }
    Column& column(int32 number) { return columns_[static_cast<std::size_t>(number) - 1]; }
    Text cell(int32 row, const Column& column) const;
    float64 number(int32 row, const Column& column) const;
    void store(Cells& cells, std::size_t at, Kind kind, TextView text) const;
    Cells rowOf(const std::vector<Text>& Daten, TextView Operation) const;
    void insertRow(int32 row, const Cells& cells);
    void addToSums(int32 row, float64 sign);
    Text lineOf(const Cells& cells, std::size_t at, Kind kind);
    Text rowText(const Cells& cells, std::size_t row);

    std::vector<Column> columns_;
    std::size_t textColumns_ = 0, wholeColumns_ = 0, realColumns_ = 0;
    Cells cells_;
    int32 rows_ = 0;
};

}  // namespace tsRtm

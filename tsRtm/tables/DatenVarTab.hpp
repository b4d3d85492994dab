#pragma once
// A table with rows of different lengths that lives in a text file.
#include "tsRtm/tables/TableBase.hpp"

namespace tsRtm {

// The file has for each row a line of the number of items and "#", then an item a line. A line break (CR) in
// an item is a grave accent in the file, so that a grave accent comes back as a line break; LF is dropped.
// A file that does not have this form raises 57 with the source "DatenVarTab" as soon as it is read; until
// somebody mends it or Clear is called it is not written. Sharing, storing, other failures: TableBase.hpp.
class DatenVarTab final : public TableBase {
 public:
    DatenVarTab() : TableBase(u"DatenVarTab") {}
    ~DatenVarTab() override { writeAtTheEnd(); }

    // UseWriteMethod has no effect.
    void Init(TextView Datei, bool SyncAlways = false, bool UseWriteMethod = false);

    // How many items a row usually has; 0: nobody knows. A file with rows of more than three times as many is
    // taken for damaged.
    int32 DefaultItemCount() const noexcept { return defaultItemCount_; }
    void DefaultItemCount(int32 Value) noexcept { defaultItemCount_ = Value; }

    // Empty outside the table, where a write does nothing.
    Text Item(int32 Zeile, int32 Spalte);
    void Item(int32 Zeile, int32 Spalte, TextView Wert);
    // 0 outside the table.
    int32 ItemCount(int32 Zeile);
    // All items of a row; none outside the table.
    std::vector<Text> Record(int32 Zeile);

    // A row without items is stored as one empty item. With Sync the row is put into the file at once. The
    // number of the new row. Raises 380 for an item with an end-of-file mark (code 26), unless encrypted.
    int32 Add(const std::vector<Text>& Daten, bool Sync = true);
    int32 VarAdd(const VariantList& Daten);
    // 1; 0 outside the table.
    int32 Remove(int32 Zeile);

 private:
    void load(const std::vector<Text>& lines) override;
    int32 rows() const noexcept override { return static_cast<int32>(rows_.size()); }
    void dropRows() noexcept override { rows_.clear(); }
    Text fileText() override;

    const std::vector<Text>* row(int32 number) const noexcept;
    int32 plausible(int32 count) const noexcept;
    Text lineOf(TextView item);
    Text rowText(const std::vector<Text>& row);

    std::vector<std::vector<Text>> rows_;
    int32 defaultItemCount_ = 0;
};

}  // namespace tsRtm

// A list, a table with sums and a sort through the helper interface.
//
//     tables_show
//
// Makes Zuletzt.txt and Konten.tab anew in the current folder.
#include <filesystem>
#include <iostream>

#include "tsRtm/tsRtm.hpp"

using namespace tsRtm;

// Sorts the rows of a table by their first cell: all that the sorting service asks of its caller.
class ByName final : public iSortHelper {
 public:
    explicit ByName(DatenTab& table) : table_(table) {}
    void Suchbegriff(const Variant& key) override { key_ = *key.text(); }
    eCompareResults Compare(int32 row, int32 pivot, eCompareMethod how, Variant&) override {
        // The pivot is the same for many calls in a row.
        if (how == NewPivot) key_ = table_.Item(pivot, 1);
        const Text name = table_.Item(row, 1);
        return name < key_ ? Kleiner : name > key_ ? Groesser : Gleich;
    }
    void Swap(int32 a, int32 b, Variant&) override {
        for (int32 column = 1; column <= table_.Spalten(); ++column) {
            const Text kept = table_.Item(a, column);
            table_.Item(a, column, table_.Item(b, column));
            table_.Item(b, column, kept);
        }
    }

 private:
    DatenTab& table_;
    Text key_;
};

int main() {
    for (const auto* name : {"Zuletzt.txt", "Konten.tab"}) std::filesystem::remove(name);
    DatenSeq recent;
    recent.Init(u"Zuletzt.txt", 0, u"", true);  // every change is in the file at once
    for (const auto* entry : {u"Müller", u"Abel"}) recent.Add(entry);

    DatenTab accounts;
    accounts.Init(u"Konten.tab", 3, u"TLD");  // a text, a whole number, a number
    accounts.Add({u"Zorn", u"3", u"12,50"});
    accounts.Add({u"Abel", u"1", u"7,25"});
    accounts.Add({u"Müller", u"2", u"80"});
    ByName byName(accounts);
    clsQuickSort().QuickSort(1, accounts.Count(), &byName);
    accounts.Commit();
    int32 row = 0;
    const bool found = clsQuickSort().BSearch(u"Müller", 1, accounts.Count(), &byName, row);

    std::cout << recent.Count() << " entries; sum " << accounts.Summe(3) << "; first "
              << toUtf8(accounts.Item(1, 1)) << "; Müller is row " << row << '\n';
    return found && row == 2 && accounts.Summe(3) == 99.75 ? 0 : 1;
}

#include "cli/tab/TabFile.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "cli/shared/CliError.hpp"
#include "cli/shared/ErrorText.hpp"
#include "cli/shared/Terminal.hpp"
#include "cli/shared/TextFiles.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/tables/DatenSeq.hpp"
#include "tsRtm/tables/DatenTab.hpp"
#include "tsRtm/tables/DatenVarTab.hpp"

namespace tsRtm::cli {
namespace {

constexpr std::size_t kLongestKey = 4;

class ListFile final : public TabFile {
 public:
    ListFile(const std::string& name, const TabForm& form) : TabFile(name, form) { bind(false); }

 private:
    int32 rowCount() override { return list_.Count(); }
    std::vector<Text> cells(int32 row) override { return {list_.Item(row)}; }
    void setCell(int32 row, int32, const Text& value) override { list_.Item(row, value); }
    // Put behind what others have added meanwhile, and written alone.
    int32 addRow(const std::vector<Text>& values) override {
        bind(true);
        const int32 number = list_.Add(values[0]);
        list_.Dirty(false);
        return number;
    }
    void insertRow(int32 before, const std::vector<Text>& values) override {
        list_.Insert(before, values[0]);
    }
    void removeRow(int32 row) override { list_.Remove(row); }
    void commit() override {
        list_.Commit();
        list_.Dirty(false);
    }
    int32 encoding() override { return list_.Encoding(); }

    void bind(bool syncAlways) {
        list_.Init(fromUtf8(name()), 0, {}, syncAlways);
        list_.Encrypted(form().encrypted);
        list_.Sensible(form().wipe);
    }

    DatenSeq list_;
};

class TableFileOfCells final : public TabFile {
 public:
    TableFileOfCells(const std::string& name, const TabForm& form) : TabFile(name, form) {
        table_.Init(fromUtf8(name), form.columns, fromUtf8(form.types));
        table_.Encrypted(form.encrypted);
        table_.Sensible(form.wipe);
    }
    bool isNumber(int32 column) const override {
        const auto at = static_cast<std::size_t>(column) - 1;
        return at < form().types.size() && (form().types[at] == 'L' || form().types[at] == 'D');
    }
    float64 number(int32 row, int32 column) override { return table_.Value(row, column); }
    bool whole() override { return table_.Okay(); }

 private:
    int32 rowCount() override { return table_.Count(); }
    std::vector<Text> cells(int32 row) override { return table_.Record(row); }
    void setCell(int32 row, int32 column, const Text& value) override { table_.Item(row, column, value); }
    int32 addRow(const std::vector<Text>& values) override { return table_.Add(values); }
    void insertRow(int32 before, const std::vector<Text>& values) override {
        table_.Insert(before, values, false);
    }
    void removeRow(int32 row) override { table_.Remove(row); }
    void commit() override { table_.Commit(); }
    int32 encoding() override { return table_.Encoding(); }

    DatenTab table_;
};

class RowsFile final : public TabFile {
 public:
    RowsFile(const std::string& name, const TabForm& form) : TabFile(name, form) {
        table_.Init(fromUtf8(name));
        table_.Encrypted(form.encrypted);
        table_.Sensible(form.wipe);
    }
    bool whole() override { return table_.Okay(); }

 private:
    int32 rowCount() override { return table_.Count(); }
    std::vector<Text> cells(int32 row) override { return table_.Record(row); }
    void setCell(int32 row, int32 column, const Text& value) override { table_.Item(row, column, value); }
    int32 addRow(const std::vector<Text>& values) override { return table_.Add(values); }
    void insertRow(int32, const std::vector<Text>&) override {
        throw CliError("rows of different lengths are added at the end only; leave --before away");
    }
    void removeRow(int32 row) override { table_.Remove(row); }
    void commit() override { table_.Commit(); }
    int32 encoding() override { return table_.Encoding(); }

    DatenVarTab table_;
};

// The first character that code page 1252 lacks, with its second half where it has two.
std::string outside1252(TextView text) {
    const auto at = std::find_if(text.begin(), text.end(), [](char16_t c) { return unicodeToAnsi(c) < 0; });
    if (at == text.end()) return {};
    const bool pair = *at >= 0xD800 && *at < 0xDC00 && at + 1 != text.end();
    return toUtf8(text.substr(static_cast<std::size_t>(at - text.begin()), pair ? 2 : 1));
}

Text numberText(const std::string& value, char type) {
    Text text(trim(fromUtf8(value)));
    const bool plain = IstNumerisch(text, u".", u"") || IstNumerisch(text, u",", u"");
    if (type == 'D' && plain) return replaceAll(text, u",", u".");
    const float64 number = plain ? Val(text) : 0.5;
    using Whole = std::numeric_limits<int32>;
    if (type == 'L' && text.find_first_of(u".,") == Text::npos && number == std::floor(number) &&
        number >= Whole::min() && number <= Whole::max())
        return text;
    throw CliError("'" + printable(fromUtf8(value)) + "' is no " +
                   (type == 'L' ? "whole number of 32 bits" : "number"));
}

}  // namespace

std::unique_ptr<TabFile> TabFile::open(const std::string& name, const TabForm& form) {
    TabForm known = form;
    if (form.kind == TabForm::shortcuts) {
        known.columns = 2;
        known.types = "SS";
    }
    if (form.kind == TabForm::lines) return std::make_unique<ListFile>(name, known);
    if (form.kind == TabForm::rows) return std::make_unique<RowsFile>(name, known);
    return std::make_unique<TableFileOfCells>(name, known);
}

bool TabFile::isNumber(int32) const { return false; }
float64 TabFile::number(int32, int32) { return 0; }

int32 TabFile::count() {
    int32& F = rtmMain::state().F;
    F = 0;
    const int32 rows = rowCount();
    if (F != 0) throw CliError("cannot read '" + name_ + "': " + databaseErrorText(F));
    return rows;
}

std::vector<Text> TabFile::row(int32 number) { return cells(number); }

void TabFile::needRow(int32 number) {
    const int32 has = count();
    if (number >= 1 && number <= has) return;
    throw CliError("no entry " + std::to_string(number) + " in '" + name_ + "': it has " +
                   (has == 0 ? "none" : "1 to " + std::to_string(has)));
}

void TabFile::needWhole() {
    static_cast<void>(count());
    if (!whole())
        throw CliError("'" + name_ +
                       "' has lines that belong to no row, which a change would lose; is it of " +
                       "another form, or another number of columns?");
}

Text TabFile::fitting(const std::string& value, int32 column) {
    if (!isUtf8(value)) throw CliError("'" + printable(fromUtf8(value)) + "' is not UTF-8");
    const auto refuse = [&](const char* why) {
        throw CliError("'" + printable(fromUtf8(value)) + "' " + why);
    };
    if (isNumber(column)) return numberText(value, form_.types[static_cast<std::size_t>(column) - 1]);
    Text text = fromUtf8(value);
    const bool rows = form_.kind == TabForm::rows;
    if (!rows && text.find_first_of(u"\r\n") != Text::npos)
        refuse("has a line break, and each cell is a line");
    if (rows && text.find(u'`') != Text::npos) refuse("has a grave accent, which would become a line break");
    if (!form_.encrypted && text.find(u'\x1A') != Text::npos) refuse("has an end-of-file mark (code 26)");
    if (form_.kind == TabForm::shortcuts && column == 1 && (text.empty() || text.size() > kLongestKey))
        refuse("is no key: a key has 1 to 4 characters");
    // A line break is a single character in the file.
    if (rows) text = replaceAll(replaceAll(text, u"\r\n", u"\r"), u"\n", u"\r");
    if (form_.encrypted || encoding() == 1252)
        if (const auto lacks = outside1252(text); !lacks.empty())
            throw CliError("'" + lacks + "' is not in code page 1252, which '" + name_ + "' is in");
    return text;
}

std::vector<Text> TabFile::fitting(const std::vector<std::string>& values) {
    const int32 most = form_.kind == TabForm::lines       ? 1
                       : form_.kind == TabForm::rows      ? std::numeric_limits<int32>::max()
                       : form_.kind == TabForm::shortcuts ? 2
                                                          : form_.columns;
    if (std::ssize(values) > most)
        throw CliError(std::to_string(values.size()) + " values, but there " +
                       (most == 1 ? "is 1 column" : "are " + std::to_string(most) + " columns"));
    std::vector<Text> cells;
    cells.reserve(values.size());
    for (const auto& value : values) cells.push_back(fitting(value, static_cast<int32>(cells.size()) + 1));
    return cells;
}

void TabFile::set(int32 number, int32 column, const std::string& value) {
    needWhole();
    needRow(number);
    if (const auto has = std::ssize(row(number)); column < 1 || column > has)
        throw CliError("no column " + std::to_string(column) + ": entry " + std::to_string(number) +
                       " has 1 to " + std::to_string(has));
    setCell(number, column, fitting(value, column));
    commit();
}

int32 TabFile::add(const std::vector<std::string>& values) {
    needWhole();
    const int32 number = addRow(fitting(values));
    commit();
    return number;
}

int32 TabFile::insert(int32 before, const std::vector<std::string>& values) {
    needWhole();
    needRow(before);
    insertRow(before, fitting(values));
    commit();
    return before;
}

void TabFile::remove(std::vector<int32> numbers) {
    needWhole();
    for (const int32 number : numbers) needRow(number);
    // From the end, so that the numbers stay right.
    std::sort(numbers.begin(), numbers.end(), std::greater());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    for (const int32 number : numbers) removeRow(number);
    commit();
}

}  // namespace tsRtm::cli

#pragma once
// A list or table file as rows of cells, whichever of the three forms it has.
#include <memory>
#include <string>
#include <vector>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::cli {

// What the command line says of a file; the file itself does not tell.
struct TabForm {
    enum Kind { lines, table, rows, shortcuts } kind = lines;
    int32 columns = 0;  // of a table
    std::string types;  // of a table, a letter a column
    bool encrypted = false;
    bool wipe = false;  // old versions are overwritten
};

// Opens the file; each call throws a CliError, or the library's Failure, where it cannot be done.
class TabFile {
 public:
    virtual ~TabFile() = default;
    static std::unique_ptr<TabFile> open(const std::string& name, const TabForm& form);

    int32 count();
    std::vector<Text> row(int32 number);
    // The number of a cell of a number column; nothing to ask for elsewhere.
    virtual bool isNumber(int32 column) const;
    virtual float64 number(int32 row, int32 column);
    // Whether all of the file is in its rows.
    virtual bool whole() { return true; }

    // Texts that the file cannot hold are refused before anything changes.
    void set(int32 number, int32 column, const std::string& value);
    int32 add(const std::vector<std::string>& values);
    int32 insert(int32 before, const std::vector<std::string>& values);
    void remove(std::vector<int32> numbers);

    void needRow(int32 number);
    const std::string& name() const noexcept { return name_; }

 protected:
    TabFile(std::string name, const TabForm& form) : name_(std::move(name)), form_(form) {}
    const TabForm& form() const noexcept { return form_; }

 private:
    virtual int32 rowCount() = 0;
    virtual std::vector<Text> cells(int32 row) = 0;
    virtual void setCell(int32 row, int32 column, const Text& value) = 0;
    virtual int32 addRow(const std::vector<Text>& values) = 0;
    virtual void insertRow(int32 before, const std::vector<Text>& values) = 0;
    virtual void removeRow(int32 row) = 0;
    virtual void commit() = 0;
    virtual int32 encoding() = 0;

    void needWhole();
    Text fitting(const std::string& value, int32 column);
    std::vector<Text> fitting(const std::vector<std::string>& values);

    std::string name_;
    TabForm form_;
};

}  // namespace tsRtm::cli

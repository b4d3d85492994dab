#pragma once
// The rows of a file that were not taken, in a file of their own.
#include <optional>

#include "cli/shared/CsvWriter.hpp"

namespace tsRtm::cli {

// Made with the first row that goes there, as CSV in UTF-8: line, reason, and the row as it came where its
// cells are told. Throws a CliError where it cannot be written.
class Rejects {
 public:
    explicit Rejects(std::string name) : name_(std::move(name)) {}

    void add(int64 line, const std::string& reason, const std::vector<Text>& titles = {},
             const std::vector<Text>& cells = {}) {
        if (!file_) {
            file_.emplace(name_);
            writer_.emplace(*file_, ',', FileEncoding::utf8);
            write({u"line", u"reason"}, titles);
        }
        write({toText(line), fromUtf8(reason)}, cells);
        ++count_;
    }
    int64 count() const noexcept { return count_; }
    const std::string& name() const noexcept { return name_; }
    // How many and where: "rejected 2 rows: see x.csv".
    std::string told() const {
        return "rejected " + std::to_string(count_) + (count_ == 1 ? " row: see " : " rows: see ") + name_;
    }
    void finish() {
        if (file_) file_->finish();
        file_.reset();
    }

 private:
    void write(std::vector<Text> cells, const std::vector<Text>& more) {
        cells.insert(cells.end(), more.begin(), more.end());
        writer_->row(cells);
    }

    std::string name_;
    std::optional<OutputFile> file_;
    std::optional<CsvWriter> writer_;
    int64 count_ = 0;
};

}  // namespace tsRtm::cli

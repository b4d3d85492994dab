#pragma once
// The rows of an import, whatever their file looks like, as fields and texts that fit the database.
#include <memory>

#include "cli/shared/Records.hpp"
#include "cli/shared/TextFiles.hpp"

namespace tsRtm::cli {

struct RowOptions {
    std::string file;
    std::string separator = ",";
    FileEncoding encoding = FileEncoding::automatic;
    bool ignoreUnknown = false;
};

// A record to be: texts of its fields, and the rows of its chains.
struct ImportRow {
    std::vector<Assignment> values;
    std::vector<std::pair<int32, TextTable>> chains;  // by field
};

class RowSource {
 public:
    virtual ~RowSource() = default;
    // The next row; false at the end. `reason` tells why it does not fit, empty where it does.
    virtual bool next(ImportRow& row, std::string& reason) = 0;
    // The row as it came, for the file of rejects: its first line, its cells; and the titles of the cells.
    virtual int64 line() const = 0;
    virtual std::vector<Text> cells() const = 0;
    virtual std::vector<Text> titles() const = 0;
    // Bytes of the file behind it.
    virtual uint64 position() const = 0;
};

// By the name of the file: JSON, a record a line, for ".jsonl", else CSV, whose first line names the fields.
// Throws a CliError where no row could ever fit. All that is given outlives it.
std::unique_ptr<RowSource> makeRowSource(InputFile& file, Session& session, const FieldMap& map,
                                         const RowOptions& options);
bool isJsonLines(const std::string& file);

// One kind each, for makeRowSource.
std::unique_ptr<RowSource> makeCsvRows(InputFile& file, Session& session, const FieldMap& map,
                                       const RowOptions& options);
std::unique_ptr<RowSource> makeJsonRows(InputFile& file, Session& session, const FieldMap& map,
                                        const RowOptions& options);

}  // namespace tsRtm::cli

// Rows of CSV.
#include <algorithm>

#include "cli/db/RowSource.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/CsvReader.hpp"

namespace tsRtm::cli {
namespace {

// A lone title that is no field, but would be several with another separator.
void needSeparator(const CsvRow& header, const FieldMap& map, const RowOptions& options) {
    if (header.fields.size() != 1 || map.find(header.fields.front()) != 0) return;
    for (const auto& [mark, word] : {std::pair{';', "';'"}, {'\t', "$'\\t'"}, {',', "','"}})
        if (header.fields.front().find(mark) != std::string::npos)
            throw CliError("'" + options.file +
                           "': the header line has another separator; try: --separator " + word);
}

// Field of each column by the header line, 0 for a column that is left out.
std::vector<int32> columnFields(const CsvRow& header, const FieldMap& map, FileEncoding encoding,
                                const RowOptions& options) {
    if (!header.fault.empty()) throw CliError("'" + options.file + "': the header line has " + header.fault);
    needSeparator(header, map, options);
    std::vector<int32> fields;
    for (const auto& title : header.fields) {
        const auto text = decodeText(title, encoding);
        if (!text)
            throw CliError("'" + options.file + "': the header line is not in " + encodingName(encoding));
        const std::string word = toUtf8(*text);
        const int32 field = options.ignoreUnknown ? map.find(word) : map.need(word);
        if (field != 0 && std::find(fields.begin(), fields.end(), field) != fields.end())
            throw CliError("'" + options.file + "': two columns are meant for the field " + map.label(field));
        fields.push_back(field);
    }
    if (std::count(fields.begin(), fields.end(), 0) == static_cast<std::ptrdiff_t>(fields.size()))
        throw CliError("'" + options.file + "': no column of the header line is a field");
    return fields;
}

// Checks rows against the fields of their columns.
class RowCheck {
 public:
    RowCheck(Session& session, const FieldMap& map, std::vector<int32> columns, FileEncoding encoding)
        : rules_(session.control()), map_(map), columns_(std::move(columns)), encoding_(encoding) {}

    // The reason why the row does not fit, empty where it does.
    std::string operator()(const CsvRow& row, std::vector<Assignment>& values) {
        values.clear();
        if (!row.fault.empty()) return row.fault;
        if (row.fields.size() != columns_.size())
            return std::to_string(row.fields.size()) + (row.fields.size() == 1 ? " field" : " fields") +
                   ", the header line has " + std::to_string(columns_.size());
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            const int32 field = columns_[i];
            if (field == 0) continue;
            const auto text = decodeText(row.fields[i], encoding_);
            if (!text) return map_.label(field) + ": not in " + encodingName(encoding_);
            auto accepted = rules_.accept(field, *text, map_.label(field));
            if (!accepted) return rules_.reason();
            if (!accepted->empty()) values.push_back({field, std::move(*accepted)});
        }
        return {};
    }

 private:
    FieldRules rules_;
    const FieldMap& map_;
    std::vector<int32> columns_;
    FileEncoding encoding_;
};

class CsvRows final : public RowSource {
 public:
    CsvRows(FileEncoding encoding, CsvReader reader, CsvRow header, std::vector<int32> columns,
            Session& session, const FieldMap& map)
        : reader_(std::move(reader)),
          header_(std::move(header)),
          encoding_(encoding),
          skipBlank_(columns.size() > 1),
          check_(session, map, std::move(columns), encoding) {}

    bool next(ImportRow& row, std::string& reason) override {
        do {
            if (!reader_.next(row_)) return false;
        } while (skipBlank_ && row_.blank());
        reason = check_(row_, row.values);
        return true;
    }
    int64 line() const override { return row_.line; }
    std::vector<Text> cells() const override { return readable(row_); }
    std::vector<Text> titles() const override { return readable(header_); }
    uint64 position() const override { return reader_.position(); }

 private:
    // What is malformed is shown byte by byte.
    std::vector<Text> readable(const CsvRow& row) const {
        std::vector<Text> out;
        for (const auto& field : row.fields) {
            const auto text = decodeText(field, encoding_);
            out.push_back(text ? *text : *decodeText(field, FileEncoding::cp1252));
        }
        return out;
    }

    CsvReader reader_;
    CsvRow header_;
    CsvRow row_;
    FileEncoding encoding_;
    bool skipBlank_;
    RowCheck check_;
};

}  // namespace

std::unique_ptr<RowSource> makeCsvRows(InputFile& file, Session& session, const FieldMap& map,
                                       const RowOptions& options) {
    const FileEncoding encoding =
        options.encoding == FileEncoding::automatic ? detectEncoding(file) : options.encoding;
    CsvReader reader(file, options.separator.front());
    CsvRow header;
    if (!reader.next(header))
        throw CliError("'" + options.file + "' is empty: a header line names the fields");
    auto columns = columnFields(header, map, encoding, options);
    return std::make_unique<CsvRows>(encoding, std::move(reader), std::move(header), std::move(columns),
                                     session, map);
}

}  // namespace tsRtm::cli

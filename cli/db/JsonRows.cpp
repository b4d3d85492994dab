// Rows of JSON lines, as export writes them.
#include "cli/db/ChainTexts.hpp"
#include "cli/db/RowSource.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/SideFields.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm::cli {
namespace {

constexpr std::size_t kLinesRead = std::size_t{64} * 1024;
constexpr std::size_t kLongestLine = std::size_t{1} << 30;

// Lines of a file by its position, without their ends.
class Lines {
 public:
    explicit Lines(InputFile& file) : file_(file) {}

    bool next(std::string& line) {
        line.clear();
        for (;;) {
            const auto end = piece_.find('\n', at_);
            line.append(piece_, at_, end == std::string::npos ? end : end - at_);
            at_ = end == std::string::npos ? piece_.size() : end + 1;
            if (end != std::string::npos || line.size() > kLongestLine) break;
            if (!fill()) return !line.empty();
        }
        if (line.ends_with('\r')) line.pop_back();
        return true;
    }
    uint64 position() const noexcept { return read_ - (piece_.size() - at_); }

 private:
    bool fill() {
        piece_.resize(kLinesRead);
        piece_.resize(file_.read(read_, piece_));
        read_ += piece_.size();
        at_ = 0;
        return !piece_.empty();
    }

    InputFile& file_;
    std::string piece_;
    std::size_t at_ = 0;
    uint64 read_ = 0;
};

class JsonRows final : public RowSource {
 public:
    JsonRows(InputFile& file, Session& session, const FieldMap& map, bool ignoreUnknown)
        : lines_(file),
          control_(session.control()),
          db_(session.db()),
          rules_(control_),
          map_(map),
          ignoreUnknown_(ignoreUnknown) {}

    bool next(ImportRow& row, std::string& reason) override {
        row = {};
        reason.clear();
        do {
            if (!lines_.next(text_)) return false;
            ++line_;
        } while (text_.find_first_not_of(" \t") == std::string::npos);
        try {
            const Json json = Json::parse(text_);
            if (!json.isObject()) throw CliError("no object");
            if (const Json* deleted = json.find("deleted"); deleted && deleted->truth())
                throw CliError("a deleted record");
            for (const auto& [name, part] :
                 {std::pair{"fields", Part::fields}, {"memos", Part::memos}, {"blobs", Part::blobs}})
                if (const Json* texts = json.find(name)) take(*texts, part, row.values);
            if (const Json* chains = json.find("chains")) takeChains(*chains, row.chains);
            if (row.values.empty()) throw CliError("no field has a text");
        } catch (const CliError& error) {
            reason = error.what();
        } catch (const JsonError&) {
            reason = "not of the form {\"fields\":{\"NAME\":\"text\"}}";
        }
        return true;
    }
    int64 line() const override { return line_; }
    std::vector<Text> cells() const override { return {fromUtf8(text_)}; }
    std::vector<Text> titles() const override { return {u"record"}; }
    uint64 position() const override { return lines_.position(); }

 private:
    enum class Part { fields, memos, blobs };

    // Where "fields" names a memo, a blob or a chain it shows its place, which is another one here.
    static Part partOf(const TSIO& field) {
        return field.IsMemo() ? Part::memos : field.IsBlob() ? Part::blobs : Part::fields;
    }
    void take(const Json& texts, Part part, std::vector<Assignment>& values) {
        for (const auto& [word, value] : texts.members()) {
            const int32 field = ignoreUnknown_ ? map_.find(word) : map_.need(word);
            if (field == 0) continue;
            if (control_.field(field).IsKette() || partOf(control_.field(field)) != part) continue;
            const auto& text = value.text();
            auto accepted = part == Part::blobs ? blob(text, word)
                                                : rules_.accept(field, fromUtf8(text), map_.label(field));
            if (!accepted) throw CliError(rules_.reason());
            if (!accepted->empty()) values.push_back({field, std::move(*accepted)});
        }
    }
    void takeChains(const Json& chains, std::vector<std::pair<int32, TextTable>>& into) {
        for (const auto& [word, rows] : chains.members()) {
            const int32 field = ignoreUnknown_ ? map_.find(word) : map_.need(word);
            if (field == 0 || rows.elements().empty()) continue;
            const auto chain = db_.Control()->Kette(field);
            if (!chain) throw CliError(word + " has no rows here");
            into.emplace_back(field, ChainTexts(*chain).rows(rows));
        }
    }
    static std::optional<Text> blob(const std::string& digits, const std::string& word) {
        const auto bytes = bytesOfDigits(digits);
        if (!bytes) throw CliError(word + ": no hexadecimal digits");
        return fromAnsi(*bytes);
    }

    Lines lines_;
    const clsControl& control_;
    clsTSDB& db_;
    FieldRules rules_;
    const FieldMap& map_;
    bool ignoreUnknown_;
    std::string text_;
    int64 line_ = 0;
};

}  // namespace

std::unique_ptr<RowSource> makeJsonRows(InputFile& file, Session& session, const FieldMap& map,
                                        const RowOptions& options) {
    return std::make_unique<JsonRows>(file, session, map, options.ignoreUnknown);
}

bool isJsonLines(const std::string& file) { return file.ends_with(".jsonl"); }

std::unique_ptr<RowSource> makeRowSource(InputFile& file, Session& session, const FieldMap& map,
                                         const RowOptions& options) {
    return isJsonLines(options.file) ? makeJsonRows(file, session, map, options)
                                     : makeCsvRows(file, session, map, options);
}

}  // namespace tsRtm::cli

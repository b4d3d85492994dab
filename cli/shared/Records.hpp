#pragma once
// Records as the tool shows and writes them: the texts of their fields as they are stored, without padding.
#include "cli/shared/FieldMap.hpp"
#include "cli/shared/FieldRules.hpp"
#include "cli/shared/Json.hpp"
#include "cli/shared/Session.hpp"
#include "tsRtm/database/RecordScan.hpp"

namespace tsRtm::cli {

// Reads one record after the other; moves the current record of the database, not its position in an index.
class RecordReader {
 public:
    explicit RecordReader(Session& session);

    // False where the record is not there any more.
    bool read(int32 number);
    // The record that a scan of the database has come to.
    void take(RecordScan& scan);
    int32 number() const noexcept { return number_; }
    bool deleted() const noexcept { return deleted_; }
    const Text& field(int32 field) const { return fields_[static_cast<std::size_t>(field)]; }

 private:
    void readFields(TextView raw);
    bool readSingly(int32 number);

    Session& session_;
    int32 number_ = 0;
    bool deleted_ = false;
    std::vector<Text> fields_;  // from 1
};

// {"nr": 1, "deleted": false, "fields": {...}} with the given fields.
Json recordJson(const RecordReader& record, const FieldMap& map, const std::vector<int32>& fields);

// "NAME=VALUE" words of the command line, checked. Throws a CliError for the first that does not fit.
struct Assignment {
    int32 field;
    Text text;
};
std::vector<Assignment> assignments(Session& session, const FieldMap& map,
                                    const std::vector<std::string>& words);

}  // namespace tsRtm::cli

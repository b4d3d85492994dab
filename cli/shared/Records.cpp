#include "cli/shared/Records.hpp"

#include <algorithm>

#include "cli/shared/CliError.hpp"

namespace tsRtm::cli {

RecordReader::RecordReader(Session& session)
    : session_(session), fields_(static_cast<std::size_t>(session.control().Felder()) + 1) {}

bool RecordReader::read(int32 number) {
    number_ = number;
    // Only single fields of such a database can be read.
    if (session_.control().HatUnicodeFelder()) return readSingly(number);
    auto& db = session_.db();
    const Text raw = db.GetSatz(number, true);
    if (raw.empty() || db.Error() != 0) return false;
    deleted_ = db.IsDeleted();
    readFields(raw);
    return true;
}

void RecordReader::take(RecordScan& scan) {
    number_ = scan.number();
    deleted_ = scan.deleted();
    for (std::size_t i = 1; i < fields_.size(); ++i) {
        const auto field = static_cast<int32>(i);
        const TextView stored = scan.value(field);
        fields_[i] =
            (session_.control().field(field).Typ() & 7) == typWERT ? trim(stored) : trimRight(stored);
    }
}

void RecordReader::readFields(TextView raw) {
    for (int32 i = 1; i <= session_.control().Felder(); ++i) {
        const TSIO& field = session_.control().field(i);
        Text& into = fields_[static_cast<std::size_t>(i)];
        // The library shows numbers in the form of the locale; what is stored stands in the raw record.
        if ((field.Typ() & 7) == typWERT)
            into = trim(
                raw.substr(std::min<std::size_t>(static_cast<std::size_t>(field.Position()) + 1, raw.size()),
                           static_cast<std::size_t>(field.Laenge())));
        else
            into = trimRight(session_.db().Fields(i));
    }
}

bool RecordReader::readSingly(int32 number) {
    auto& db = session_.db();
    // The fields of one behind the last read as blank.
    if (!db.Record(number)) {
        static_cast<void>(db.Error());
        return false;
    }
    deleted_ = db.GetField(number, 0) == u"*";
    for (int32 i = 1; i <= session_.control().Felder(); ++i)
        fields_[static_cast<std::size_t>(i)] = db.GetField(number, i);
    return db.Error() == 0;
}

Json recordJson(const RecordReader& record, const FieldMap& map, const std::vector<int32>& fields) {
    Json values = Json::object();
    for (const int32 field : fields) values[map.label(field)] = toUtf8(record.field(field));
    return {{"nr", record.number()}, {"deleted", record.deleted()}, {"fields", std::move(values)}};
}

std::vector<Assignment> assignments(Session& session, const FieldMap& map,
                                    const std::vector<std::string>& words) {
    FieldRules rules(session.control());
    std::vector<Assignment> out;
    for (const auto& word : words) {
        const auto equals = word.find('=');
        if (equals == std::string::npos) throw CliError("'" + word + "' is not of the form NAME=VALUE");
        const int32 field = map.need(word.substr(0, equals));
        if (std::any_of(out.begin(), out.end(), [&](const auto& earlier) { return earlier.field == field; }))
            throw CliError(map.label(field) + " is given twice");
        auto text = rules.accept(field, fromUtf8(word.substr(equals + 1)), map.label(field));
        if (!text) throw CliError(rules.reason());
        out.push_back({field, std::move(*text)});
    }
    return out;
}

}  // namespace tsRtm::cli

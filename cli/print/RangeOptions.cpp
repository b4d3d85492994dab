#include "cli/print/RangeOptions.hpp"

#include "cli/shared/Command.hpp"
#include "cli/shared/SharedOptions.hpp"

namespace tsRtm::cli {

void addRange(Command command, RangeOptions& options) {
    addIndex(command, options);
    command.option("--from", options.from, "Begin at the first key that is not below").typeName("KEY");
    command.option("--until", options.to, "End behind the last key that is not above or begins with this one")
        .typeName("KEY");
    addLimit(command, options.limit);
    addDeleted(command, options);
}

void eachOf(Session& session, const FieldMap& map, const RangeOptions& options, RecordReader& record,
            const std::function<void()>& visit) {
    int32 taken = 0;
    walk(session, rangeOf(session, map, options), options.descending, [&](int32 number) {
        if (!record.read(number) || (record.deleted() && !options.deleted)) return true;
        visit();
        return options.limit == 0 || ++taken < options.limit;
    });
}

}  // namespace tsRtm::cli

#pragma once
#include <memory>

namespace tsRtm {

class clsTSRecord;

// Selects records: plugged in by who asks for a part of a set.
class iRecordChecker {
 public:
    virtual ~iRecordChecker() = default;
    // Whether the record is taken.
    virtual bool Okay(const std::shared_ptr<clsTSRecord>& R) = 0;
};

}  // namespace tsRtm

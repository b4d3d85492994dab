#pragma once
// What selects records.
namespace tsRtm {

class clsTSRecord;

class iRecordChecker {
 public:
    virtual ~iRecordChecker() = default;
    // Whether the record is taken.
    virtual bool Okay(clsTSRecord& R) = 0;
};

}  // namespace tsRtm

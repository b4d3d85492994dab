#pragma once
// What grades a value.
#include <memory>

#include "tsRtm/validation/ValidTypes.hpp"
#include "tsRtm/validation/iValidControl.hpp"

namespace tsRtm {

// Implemented by the built-in checkers and by any class of an application.
class iValidChecker {
 public:
    virtual ~iValidChecker() = default;
    // Releases what the checker holds; it is not asked any more.
    virtual void Dispose() = 0;
    // Grades a value, which is the text of a control where there is one.
    virtual eValidResult Check(const std::shared_ptr<iValidControl>& Ctrl, TextView Wert) = 0;
    // What is wrong, in short; and the longer explanation. Meant for a value that has just failed.
    virtual Text ErrorMsg() const = 0;
    virtual Text Msg() const = 0;
};

// What can be set on each built-in checker. An empty text means that it uses its own.
class iValidStd {
 public:
    virtual ~iValidStd() = default;
    virtual int32 Options() const = 0;
    virtual void Options(int32 value) = 0;
    virtual Text ErrorMsg() const = 0;
    virtual void ErrorMsg(TextView value) = 0;
    virtual Text Description() const = 0;
    virtual void Description(TextView value) = 0;
};

}  // namespace tsRtm

#pragma once
// What an operating system answers to a call: success, or one of the error numbers the library knows.
#include <utility>
#include <variant>

#include "tsRtm/types/Numbers.hpp"

namespace tsRtm::platform {

// The system error numbers of the library, the same on every ground; SystemMsg tells their texts. A ground
// maps its own numbers to these in one function. Locked and not found are answers, not damage.
enum class SystemError : int32 {
    none = 0,
    fileNotFound = 2,
    pathNotFound = 3,
    tooManyOpenFiles = 4,
    accessDenied = 5,
    invalidHandle = 6,
    notEnoughMemory = 8,
    notReady = 21,
    writeFault = 29,
    readFault = 30,
    sharingViolation = 32,
    lockViolation = 33,
    notSupported = 50,
    fileExists = 80,
    invalidParameter = 87,
    diskFull = 112,
    invalidName = 123,
    directoryNotEmpty = 145,
    alreadyExists = 183,
    nameTooLong = 206,
    fileTooLarge = 223,
    deviceError = 1117,
    cancelled = 1223,
    writeProtected = 19,
};

constexpr bool failed(SystemError error) noexcept { return error != SystemError::none; }

// A value or the error that took its place.
template <class T>
class [[nodiscard]] Result {
 public:
    Result(T value) : content_(std::in_place_index<0>, std::move(value)) {}
    Result(SystemError error) : content_(std::in_place_index<1>, error) {}

    bool ok() const noexcept { return content_.index() == 0; }
    explicit operator bool() const noexcept { return ok(); }
    // Only where ok().
    T& value() { return std::get<0>(content_); }
    const T& value() const { return std::get<0>(content_); }
    T& operator*() { return value(); }
    const T& operator*() const { return value(); }
    T* operator->() { return &value(); }
    const T* operator->() const { return &value(); }
    // SystemError::none where ok().
    SystemError error() const noexcept {
        const auto* error = std::get_if<1>(&content_);
        return error ? *error : SystemError::none;
    }

 private:
    std::variant<T, SystemError> content_;
};

}  // namespace tsRtm::platform

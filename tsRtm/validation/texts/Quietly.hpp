#pragma once
// Calls into the application's controls and checkers, whose failures validation keeps to itself.
#include <exception>
#include <optional>
#include <type_traits>

namespace tsRtm {

// What the call gives; nothing, or false where it gives nothing anyway, where it fails.
template <class Call>
auto quietly(Call call) {
    using Result = std::invoke_result_t<Call>;
    if constexpr (std::is_void_v<Result>) {
        try {
            call();
            return true;
        } catch (const std::exception&) {
            return false;
        }
    } else {
        try {
            return call();
        } catch (const std::exception&) {
            return Result();
        }
    }
}

}  // namespace tsRtm

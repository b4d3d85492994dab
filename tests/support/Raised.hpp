#pragma once
// What a piece of work raises.
#include <string>

#include "tsRtm/types/Failure.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm::test {

// "number|source|description"; empty where nothing is raised.
template <class Work>
std::string raised(Work work) {
    try {
        work();
    } catch (const Failure& failure) {
        return std::to_string(failure.Number()) + "|" + toUtf8(failure.Source()) + "|" +
               toUtf8(failure.Description());
    }
    return {};
}

// The number alone; 0 where nothing is raised.
template <class Work>
int32 raisedNumber(Work work) {
    const std::string told = raised(work);
    return told.empty() ? 0 : std::stoi(told);
}

}  // namespace tsRtm::test

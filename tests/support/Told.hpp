#pragma once
// Several answers as one line of text, to hold them against what is expected at one look.
//
//     EXPECT_TOLD("2|yes|a,b|-", list.Count(), list.Dirty(), names, list.find(u"c"));
#include <gtest/gtest.h>

#include <initializer_list>
#include <sstream>
#include <string>
#include <tuple>
#include <type_traits>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::test {

// Values apart by "|", in the order they stand in: texts in UTF-8, numbers and enumerators in figures, "yes"
// and "no", "-" for what is missing, "error 5" for a result that is one; elements apart by ",", parts of a
// tuple by ":".
struct Told {
    // Told as soon as it is there: what comes behind it may change what a view or a reference shows.
    struct One {
        template <class Value>
        One(const Value& value) : text(one(value)) {}
        std::string text;
    };
    Told(std::initializer_list<One> values) {
        for (const auto& value : values) out += (&value == values.begin() ? "" : "|") + value.text;
    }
    template <class... Values>
    explicit Told(const Values&... values) : Told(std::initializer_list<One>{values...}) {}

    template <class Value>
    static std::string one(const Value& value) {
        if constexpr (std::is_convertible_v<const Value&, TextView>) {
            return toUtf8(TextView(value));
        } else if constexpr (std::is_convertible_v<const Value&, BytesView>) {
            return std::string(BytesView(value));
        } else if constexpr (std::is_same_v<Value, bool>) {
            return value ? "yes" : "no";
        } else if constexpr (std::is_enum_v<Value>) {
            return std::to_string(static_cast<int64>(value));
        } else if constexpr (std::is_arithmetic_v<Value>) {
            std::ostringstream text;
            text.precision(15);
            text << +value;
            return text.str();
        } else if constexpr (requires { value.error(); }) {
            return value.ok() ? one(*value) : "error " + one(value.error());
        } else if constexpr (requires { value.has_value(); }) {
            return value ? one(*value) : "-";
        } else if constexpr (requires { value.begin(); }) {
            std::string text;
            for (const auto& element : value) text += (&element == &*value.begin() ? "" : ",") + one(element);
            return text;
        } else {
            std::string text;
            std::apply([&](const auto&... part) { ((text += (text.empty() ? "" : ":") + one(part)), ...); },
                       value);
            return text;
        }
    }

    std::string out;
};

// Whether a text holds these pieces, wherever they stand; the text is shown where one lacks.
template <class Whole, class... Pieces>
testing::AssertionResult holds(const Whole& whole, const Pieces&... pieces) {
    const std::string text = Told::one(whole);
    std::string lacking;
    const auto look = [&](const std::string& piece) {
        if (text.find(piece) == std::string::npos) lacking += "\n\"" + piece + "\"";
    };
    (look(Told::one(pieces)), ...);
    if (lacking.empty()) return testing::AssertionSuccess();
    return testing::AssertionFailure() << lacking << "\nlacks in \"" << text << "\"\n";
}

}  // namespace tsRtm::test

#define EXPECT_TOLD(expected, ...) EXPECT_EQ((::tsRtm::test::Told{__VA_ARGS__}.out), expected)
#define EXPECT_HOLDS(...) EXPECT_TRUE(::tsRtm::test::holds(__VA_ARGS__))

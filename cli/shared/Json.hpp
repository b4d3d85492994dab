#pragma once
// A value of JSON, made by commands and read from files. Only its own source includes the library behind it,
// which is dear to compile.
#include <concepts>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "tsRtm/types/Numbers.hpp"

namespace tsRtm::cli {

// A text is no JSON, or a value is not of the kind that was asked for.
class JsonError : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

// Objects keep the order of their members. Texts are UTF-8.
class Json {
 public:
    struct Member;

    Json() noexcept;  // null
    template <std::same_as<bool> T>
    Json(T truth);
    template <std::integral T>
    requires(!std::same_as<T, bool>) Json(T number);
    Json(float64 number);
    Json(const char* text);
    Json(std::string text);
    Json(const std::vector<std::string>& texts);
    Json(std::initializer_list<Member> members);
    Json(const Json&);
    Json(Json&&) noexcept;
    Json& operator=(const Json&);
    Json& operator=(Json&&) noexcept;
    ~Json();
    static Json array();
    static Json object();
    // Throws a JsonError, also for values that lie too deep in each other.
    static Json parse(std::string_view text);

    Json& push_back(Json element);
    // The member of this name, added where it is missing. Makes an object of null.
    Json& operator[](const std::string& name);

    bool isNull() const noexcept { return std::holds_alternative<std::monostate>(value_); }
    bool isObject() const noexcept;
    // Null where an object has no such member.
    const Json* find(std::string_view name) const;
    const Json& at(std::string_view name) const&;
    std::size_t size() const { return elements().size(); }
    const std::vector<Json>& elements() const& { return get<std::vector<Json>>(); }
    const std::vector<Member>& members() const&;
    const std::string& text() const& { return get<std::string>(); }
    // A loop would outlive a value that nobody holds.
    void at(std::string_view) && = delete;
    void elements() && = delete;
    void members() && = delete;
    void text() && = delete;
    int64 whole() const { return get<int64>(); }
    bool truth() const { return get<bool>(); }

 private:
    friend std::string jsonText(const Json& json);
    template <class T>
    const T& get() const;
    void write(std::string& out) const;

    std::variant<std::monostate, bool, int64, float64, std::string, std::vector<Json>, std::vector<Member>>
        value_;
};

struct Json::Member {
    std::string name;
    Json value;
};

template <std::same_as<bool> T>
Json::Json(T truth) : value_(truth) {}
template <std::integral T>
requires(!std::same_as<T, bool>) Json::Json(T number) : value_(static_cast<int64>(number)) {}

// On one line; malformed characters become U+FFFD.
std::string jsonText(const Json& json);

}  // namespace tsRtm::cli

#include "cli/shared/Json.hpp"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace tsRtm::cli {
namespace {

constexpr std::size_t kDeepest = 100;

// Builds a value as the parser meets its parts; a false ends the parser. The names are the parser's.
class Builder {
 public:
    Json root;

    bool null() { return put({}); }
    bool boolean(bool truth) { return put(truth); }
    bool number_integer(std::int64_t number) { return put(number); }
    bool number_unsigned(std::uint64_t number) {
        return number <= INT64_MAX ? put(number) : put(static_cast<float64>(number));
    }
    bool number_float(float64 number, const std::string&) { return put(number); }
    bool string(std::string& text) { return put(std::move(text)); }
    bool binary(nlohmann::json::binary_t&) { return false; }
    bool start_object(std::size_t) { return open(Json::object()); }
    bool start_array(std::size_t) { return open(Json::array()); }
    bool end_object() { return close(); }
    bool end_array() { return close(); }
    bool key(std::string& name) {
        name_ = std::move(name);
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception&) { return false; }

 private:
    Json& place(Json value) {
        if (open_.empty()) return root = std::move(value);
        if (open_.back()->isObject()) return (*open_.back())[name_] = std::move(value);
        return open_.back()->push_back(std::move(value));
    }
    bool put(Json value) {
        place(std::move(value));
        return true;
    }
    bool open(Json value) {
        if (open_.size() == kDeepest) return false;
        open_.push_back(&place(std::move(value)));
        return true;
    }
    bool close() {
        open_.pop_back();
        return true;
    }

    std::vector<Json*> open_;  // from the outermost one
    std::string name_;
};

std::string scalarText(const nlohmann::json& scalar) {
    return scalar.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace

Json::Json(const std::vector<std::string>& texts) : value_(std::vector<Json>(texts.begin(), texts.end())) {}
Json::Json(std::initializer_list<Member> members) : value_(std::vector<Member>(members)) {}

Json Json::array() {
    Json json;
    json.value_ = std::vector<Json>();
    return json;
}

Json Json::object() {
    Json json;
    json.value_ = std::vector<Member>();
    return json;
}

Json Json::parse(std::string_view text) {
    Builder builder;
    if (!nlohmann::json::sax_parse(text, &builder)) throw JsonError("no JSON");
    return std::move(builder.root);
}

Json& Json::push_back(Json element) {
    return std::get<std::vector<Json>>(value_).emplace_back(std::move(element));
}

Json& Json::operator[](const std::string& name) {
    if (isNull()) value_ = std::vector<Member>();
    auto& members = std::get<std::vector<Member>>(value_);
    const auto at =
        std::find_if(members.begin(), members.end(), [&](const Member& m) { return m.name == name; });
    return at != members.end() ? at->value : members.emplace_back(Member{name, {}}).value;
}

const Json* Json::find(std::string_view name) const {
    for (const Member& member : members())
        if (member.name == name) return &member.value;
    return nullptr;
}

const Json& Json::at(std::string_view name) const& {
    if (const Json* found = find(name)) return *found;
    throw JsonError("no member " + std::string(name));
}

Json::Json() noexcept = default;
Json::Json(float64 number) : value_(number) {}
Json::Json(const char* text) : value_(std::string(text)) {}
Json::Json(std::string text) : value_(std::move(text)) {}
Json::Json(const Json&) = default;
Json::Json(Json&&) noexcept = default;
Json& Json::operator=(const Json&) = default;
Json& Json::operator=(Json&&) noexcept = default;
Json::~Json() = default;

bool Json::isObject() const noexcept { return std::holds_alternative<std::vector<Member>>(value_); }
const std::vector<Json::Member>& Json::members() const& { return get<std::vector<Member>>(); }

template <class T>
const T& Json::get() const {
    if (const T* value = std::get_if<T>(&value_)) return *value;
    throw JsonError("a value of another kind");
}
template const bool& Json::get() const;
template const int64& Json::get() const;
template const std::string& Json::get() const;
template const std::vector<Json>& Json::get() const;
template const std::vector<Json::Member>& Json::get() const;

void Json::write(std::string& out) const {
    if (const auto* elements = std::get_if<std::vector<Json>>(&value_)) {
        out += '[';
        for (const Json& element : *elements) {
            if (&element != elements->data()) out += ',';
            element.write(out);
        }
        out += ']';
    } else if (const auto* members = std::get_if<std::vector<Member>>(&value_)) {
        out += '{';
        for (const Member& member : *members) {
            if (&member != members->data()) out += ',';
            out += scalarText(member.name) + ':';
            member.value.write(out);
        }
        out += '}';
    } else if (const auto* text = std::get_if<std::string>(&value_)) {
        out += scalarText(*text);
    } else if (const auto* number = std::get_if<float64>(&value_)) {
        out += scalarText(*number);
    } else if (const auto* whole = std::get_if<int64>(&value_)) {
        out += std::to_string(*whole);
    } else if (const auto* truth = std::get_if<bool>(&value_)) {
        out += *truth ? "true" : "false";
    } else {
        out += "null";
    }
}

std::string jsonText(const Json& json) {
    std::string out;
    json.write(out);
    return out;
}

}  // namespace tsRtm::cli

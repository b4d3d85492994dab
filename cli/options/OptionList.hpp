#pragma once
// The settings of the library and of applications, by the names people have for them.
#include <optional>
#include <string>
#include <vector>

#include "tsRtm/frame/clsTSOptions.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/options/OptionRules.hpp"

namespace tsRtm::cli {

inline platform::Settings& store() { return rtmMain::system().settings; }
inline platform::HKeys storesHive(HKeys hive) noexcept {
    return static_cast<platform::HKeys>(static_cast<uint32>(hive));
}

// Which settings are meant.
struct OptionScope {
    std::optional<std::string> app;  // an application's key; "" is the one of applications without an id
    bool machine = false;            // for all users of the machine
};

// A setting of the library itself, in the root.
struct LibraryOption {
    TextView name;
    HKeys hive;
    OptionKind kind;
    TextView unset;  // what holds where nothing is stored
};

// One setting: where it lies, and what is known of it.
struct Option {
    std::string label;  // the name of the property or of the value
    Text name;          // of the value
    HKeys hive;
    Text path;  // of the key, from the hive on
    OptionKind kind = OptionKind::text;
    const OptionRule* rule = nullptr;
    const LibraryOption* library = nullptr;
};

// Takes the application of the scope as that of the process.
class OptionList {
 public:
    explicit OptionList(OptionScope scope);

    // Hive and key that the scope names.
    HKeys hive() const noexcept { return scope_.machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER; }
    Text path() const;
    // Applications and other keys right below the root.
    std::vector<Text> keys() const;
    // All that are known in the scope, then what else is stored there.
    std::vector<Option> all() const;
    // By the name of the property or of the value, in any case; any other name is a text of the scope's key.
    // A CliError where the scope does not have that option.
    Option find(const std::string& name) const;

    // As stored, empty where it is not.
    Text stored(const Option& option) const;
    // What holds: flags "-1" and "0".
    Text value(const Option& option) const;
    // "application", "all applications", "machine" or "default".
    std::string source(const Option& option) const;

    // A person's word in the form that is stored; a CliError where the option does not take it.
    static Text storable(const Option& option, const std::string& word);

 private:
    Option of(const OptionRule& rule) const;
    bool has(const OptionRule& rule) const noexcept;

    OptionScope scope_;
    clsTSOptions options_;
};

}  // namespace tsRtm::cli

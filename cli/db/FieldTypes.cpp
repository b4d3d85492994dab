#include "cli/db/FieldTypes.hpp"

#include <algorithm>
#include <array>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::cli {
namespace {

// Where a type has two rows, typeWord shows the first. Chains are missing: they need a structure file of
// their own.
constexpr std::array kTypes{
    FieldType{"text", "text", tsText, 0, "text"},
    FieldType{"any", "alles", tsAlles, 0, "any characters"},
    FieldType{"alphanumeric", "alphanumerisch", tsAlphanumerisch, 0, "printable characters"},
    FieldType{"digits", "ziffern", tsZiffern, 0, "digits, right-aligned"},
    FieldType{"phone", "ziffern_sonderzeichen", tsZiffern_Sonderzeichen, 0, "digits and signs"},
    FieldType{"number", "numerisch", tsNumerisch, 0, "a number; DECIMALS behind its mark"},
    FieldType{"number", "zahl", tsNumerisch, 0, "the same"},
    FieldType{"special", "sondertypen", tsSondertypen, 0, "special types of an application"},
    FieldType{"date", "datum", tsDate, 8, "a date"},
    FieldType{"today", "tagesdatum", tsTagesdatum, 8, "a date that forms fill in"},
    FieldType{"checkbox", "checkbox", tsCheckBox, 1, "a tick"},
    FieldType{"serial", "autowert", tsAutowert, 8, "a number that the database gives"},
    FieldType{"serialref", "autowertref", tsAutowertRef, 8, "such a number of another record"},
    FieldType{"memo", "memo", tsMemo, 128, "long text beside the records"},
    FieldType{"properties", "eigenschaften", tsProperties, 128, "a memo of keys and values"},
    FieldType{"blob", "blob", tsBlob, 128, "bytes beside the records"},
    FieldType{"hidden", "unsichtbar", tsUnsichtbar, 0, "not shown on forms"},
    FieldType{"noinput", "keine_eingabe", tsKeine_Eingabe, 0, "shown on forms only"},
};

constexpr int32 kAllFlags = 0xFFF;

}  // namespace

std::optional<FieldType> fieldType(const std::string& word) {
    const Text wanted = fromUtf8(word);
    for (const auto& type : kTypes)
        if (equalIgnoringCase(wanted, fromUtf8(type.english)) ||
            equalIgnoringCase(wanted, fromUtf8(type.german)))
            return type;
    if (!IstZiffern(wanted) || wanted.size() > 4) return std::nullopt;
    const int32 number = roundToInt32(Val(wanted));
    if (number > kAllFlags) return std::nullopt;
    return FieldType{"", "", number, 0, ""};
}

std::string typeWord(int32 typ) {
    const auto at =
        std::find_if(kTypes.begin(), kTypes.end(), [&](const FieldType& type) { return type.typ == typ; });
    return at != kTypes.end() ? at->english : std::to_string(typ);
}

std::string fieldTypeHelp() {
    std::string out;
    for (const auto& type : kTypes) {
        std::string words = type.english;
        if (std::string(type.german) != type.english) words += std::string(", ") + type.german;
        words.resize(std::max<std::size_t>(words.size(), 30), ' ');
        out += "  " + words + " " + type.meaning +
               (type.length > 0 ? ", length " + std::to_string(type.length) : "") + "\n";
    }
    return out;
}

}  // namespace tsRtm::cli

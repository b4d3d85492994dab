#include "cli/shared/FieldMap.hpp"

#include <numeric>

#include "cli/shared/CliError.hpp"

namespace tsRtm::cli {

Text plainCaption(const TSIO& field) { return Text(trim(replaceAll(field.Caption(), u"&", u""))); }

FieldMap::FieldMap(const clsControl& control) : control_(control), labels_(1) {
    for (int32 i = 1; i <= control.Felder(); ++i) {
        const Text name = control.field(i).Name();
        const bool own = !name.empty() && words_.emplace(name, i).second;
        labels_.push_back(own ? toUtf8(name) : std::to_string(i));
    }
    for (int32 i = 1; i <= control.Felder(); ++i)
        if (const Text caption = upper(plainCaption(control.field(i))); !caption.empty())
            words_.emplace(caption, i);
}

int32 FieldMap::find(const std::string& word) const {
    const Text text = upper(trim(fromUtf8(word)));
    if (const auto at = words_.find(text); at != words_.end()) return at->second;
    if (!IstZiffern(text) || text.size() > 5) return 0;
    const int32 number = roundToInt32(Val(text));
    return number <= count() ? number : 0;
}

int32 FieldMap::need(const std::string& word) const {
    if (const int32 field = find(word); field != 0) return field;
    std::string known;
    for (int32 i = 1; i <= count(); ++i) known += (i > 1 ? ", " : "") + label(i);
    throw CliError("no field '" + word + "'; there are: " + known);
}

int32 FieldMap::index(const std::string& word) const {
    if (word == "0") return 0;
    const int32 field = need(word);
    if (const int32 number = control_.IndexNr(field); number != 0) return number;
    std::string known;
    for (int32 i = 1; i <= control_.Indizes(); ++i)
        if (control_.Index(i) > 0) known += (known.empty() ? "" : ", ") + label(control_.Index(i));
    throw CliError("no index begins with the field '" + word + "'; " +
                   (known.empty() ? "this database has none" : "there are: " + known));
}

std::vector<int32> FieldMap::select(const std::vector<std::string>& words) const {
    std::vector<int32> fields;
    fields.reserve(words.size());
    for (const auto& word : words) fields.push_back(need(word));
    if (fields.empty()) {
        fields.resize(static_cast<std::size_t>(count()));
        std::iota(fields.begin(), fields.end(), 1);
    }
    return fields;
}

}  // namespace tsRtm::cli

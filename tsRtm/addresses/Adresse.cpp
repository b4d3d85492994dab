#include "tsRtm/addresses/Adresse.hpp"

#include "tsRtm/addresses/lines/PostalLine.hpp"
#include "tsRtm/frame/clsTSOptions.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {
namespace {

// Behind a sign, if there is anything.
void add(Text& line, TextView sign, const Text& part) {
    if (!part.empty()) line.append(sign).append(part);
}

}  // namespace

void Adresse::set(Text& field, TextView value) {
    field = value;
    valid_ = false;
}

void Adresse::Vorname(TextView value) { set(vorname_, trimRight(value)); }
void Adresse::Name1(TextView value) { set(name1_, trimRight(value)); }
void Adresse::Name2(TextView value) { set(name2_, trimRight(value)); }
void Adresse::Strasse(TextView value) { set(strasse_, trimRight(value)); }

Text Adresse::Land() const { return land_.empty() ? postalLine::split(plzOrt_).country : land_; }

Text Adresse::Property(TextView Key) const {
    const auto found = properties_.find(Key);
    return found == properties_.end() ? Text() : found->second;
}

void Adresse::Property(TextView Key, TextView value) {
    if (!Key.empty()) properties_[Text(Key)] = value;
}

Text Adresse::VollName() const { return vorname_.empty() ? name1_ : vorname_ + u" " + name1_; }

Text Adresse::NameKomplett(bool OhneKomma) const {
    Text name = name1_;
    add(name, OhneKomma ? u" " : u", ", name2_);
    return name;
}

Text Adresse::OrtsName() const { return postalLine::place(plzOrt_); }

Text Adresse::Adr1Zeile() const {
    if (name1_.empty() && name2_.empty() && strasse_.empty() && plzOrt_.empty()) return {};
    Text line = name1_;
    add(line, u" ", name2_);
    for (const auto* part : {&zusatz_, &strasse_, &plzOrt_}) add(line, u", ", *part);
    return line;
}

Text Adresse::Bankverbindung() const {
    if (bank_.empty() && blz_.empty() && konto_.empty()) return {};
    return bank_ + u" Konto " + konto_ + u" " + blz_;
}

void Adresse::addNamesAndStreet(std::vector<Text>& lines) const {
    for (const auto* part : {&name2_, &zusatz_, &zusatz2_, &strasse_})
        if (!part->empty()) lines.push_back(*part);
}

const std::vector<Text>& Adresse::block() {
    if (valid_) return lines_;
    valid_ = true;
    lines_.clear();
    if (name1_.empty()) return lines_;
    auto& salutation = rtmMain::state().adresseMitAnrede;
    if (!salutation) clsTSOptions().AdresseMitAnrede();
    if (*salutation && !adrAnrede_.empty()) lines_.push_back(adrAnrede_);
    lines_.push_back(VollName());
    addNamesAndStreet(lines_);
    const Text country = Land();
    if (!plzOrt_.empty()) {
        const Text line = postalLine::withoutSign(plzOrt_);
        lines_.push_back(country.empty() ? line : upper(line));
    }
    if (!country.empty()) lines_.push_back(country);
    return lines_;
}

int32 Adresse::Zeilen() { return static_cast<int32>(block().size()); }

Text Adresse::DruckZeile(int32 Index) {
    return Index < 1 || Index > Zeilen() ? Text() : lines_[static_cast<std::size_t>(Index) - 1];
}

Text Adresse::AdressBlock() {
    Text text;
    for (const auto& line : block()) text.append(text.empty() ? u"" : u"\r\n").append(line);
    return text;
}

}  // namespace tsRtm

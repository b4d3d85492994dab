#pragma once
// The user's locale, as ICU knows it.
#include <memory>
#include <string>

#include "tsRtm/platform/LocaleValues.hpp"

namespace tsRtm::platform::posix {

// The name of the locale that the environment asks for: LC_ALL, else LANG, without code page and variant
// ("de_AT"). German of Germany where that is unset, "C" or "POSIX".
std::string environmentLocale();

// Values are taken at the first question and kept until become().
class PosixLocale final : public LocaleValues {
 public:
    // A name such as "de_DE" or "de"; a missing country is the likely one of the language.
    explicit PosixLocale(std::string name);
    ~PosixLocale() override;
    // From now on the locale of this name; false where it was that already.
    bool become(std::string name);

    int32 lcid() override;  // 4096 for a locale without a number
    int32 langId() override { return lcid() & 0xFFFF; }
    int32 codePage() override { return 1252; }
    Text item(LocaleItem item) override;
    Text weekdayName(int32 weekday) override;
    Text monthName(int32 month) override;

 private:
    struct Values;
    const Values& values();

    std::string name_;
    std::unique_ptr<const Values> values_;
};

}  // namespace tsRtm::platform::posix

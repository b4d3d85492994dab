#include "tests/support/TestGround.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

#include "tests/support/FailingFiles.hpp"
#include "tests/support/MemoryFiles.hpp"

namespace tsRtm::test {

using platform::LocaleItem;
using platform::SystemError;

namespace {

// The key below `key` on the way to `path`, nothing where `path` does not lie below.
std::optional<Text> childOf(TextView key, TextView path) {
    if (!key.empty()) {
        const bool below = path.size() > key.size() + 1 && path[key.size()] == u'\\' &&
                           equalIgnoringCase(path.substr(0, key.size()), key);
        if (!below) return std::nullopt;
        path.remove_prefix(key.size() + 1);
    }
    return Text(path.substr(0, path.find(u'\\')));
}

Text withoutOuterMarks(TextView key) {
    while (key.starts_with(u'\\')) key.remove_prefix(1);
    while (key.ends_with(u'\\')) key.remove_suffix(1);
    return Text(key);
}

}  // namespace

TestLocale::TestLocale()
    : items{{LocaleItem::country, u"49"},       {LocaleItem::countryName, u"Deutschland"},
            {LocaleItem::dateMark, u"."},       {LocaleItem::timeMark, u":"},
            {LocaleItem::currencySymbol, u"€"}, {LocaleItem::currencyDigits, u"2"},
            {LocaleItem::currencyForm, u"3"},   {LocaleItem::decimalMark, u","},
            {LocaleItem::thousandsMark, u"."},  {LocaleItem::dateForm, u"1"},
            {LocaleItem::timeForm, u"1"},       {LocaleItem::calendarType, u"1"},
            {LocaleItem::firstDayOfWeek, u"0"}, {LocaleItem::firstWeekOfYear, u"2"}},
      weekdays{u"Montag", u"Dienstag", u"Mittwoch", u"Donnerstag", u"Freitag", u"Samstag", u"Sonntag"},
      months{u"Januar", u"Februar", u"März",      u"April",   u"Mai",      u"Juni",
             u"Juli",   u"August",  u"September", u"Oktober", u"November", u"Dezember"} {}

std::optional<Text> TestSettings::get(platform::HKeys hive, TextView key, TextView name) {
    const auto* value = find(hive, key, name);
    std::optional<Text> found;
    if (value && !damaged) found = *value;
    if (const auto then = std::exchange(onGet, nullptr)) then();
    return found;
}

platform::SystemError TestRandom::fill(std::span<std::byte> into) {
    if (failed(failing)) return failing;
    for (auto& byte : into) {
        const uint8 next = bytes.empty() ? ++counter_ : bytes.front();
        if (!bytes.empty()) bytes.pop_front();
        byte = std::byte{next};
    }
    return SystemError::none;
}

Text* TestSettings::find(platform::HKeys hive, TextView key, TextView name) {
    auto& keysOfHive = hives_[hive];
    const auto values = keysOfHive.find(withoutOuterMarks(key));
    if (values == keysOfHive.end()) return nullptr;
    const auto value = values->second.find(Text(name));
    return value == values->second.end() ? nullptr : &value->second;
}

SystemError TestSettings::set(platform::HKeys hive, TextView key, TextView name, TextView value) {
    if (damaged || readOnly) return SystemError::accessDenied;
    hives_[hive][withoutOuterMarks(key)][Text(name)] = value;
    return SystemError::none;
}

SystemError TestSettings::replace(platform::HKeys hive, TextView key, TextView name, TextView expected,
                                  TextView value) {
    if (damaged || readOnly) return SystemError::accessDenied;
    if (auto* stored = find(hive, key, name); stored && *stored == expected) *stored = value;
    return SystemError::none;
}

SystemError TestSettings::remove(platform::HKeys hive, TextView key, TextView name) {
    if (damaged || readOnly) return SystemError::accessDenied;
    const auto values = hives_[hive].find(withoutOuterMarks(key));
    if (values == hives_[hive].end()) return SystemError::none;
    values->second.erase(Text(name));
    if (values->second.empty()) hives_[hive].erase(values);
    return SystemError::none;
}

SystemError TestSettings::removeKey(platform::HKeys hive, TextView key) {
    const Text path = withoutOuterMarks(key);
    if (path.empty()) return SystemError::invalidParameter;
    if (damaged || readOnly) return SystemError::accessDenied;
    std::erase_if(hives_[hive], [&](const auto& entry) {
        return equalIgnoringCase(entry.first, path) || childOf(path, entry.first);
    });
    return SystemError::none;
}

std::vector<Text> TestSettings::names(platform::HKeys hive, TextView key) {
    std::vector<Text> found;
    const auto values = hives_[hive].find(withoutOuterMarks(key));
    if (damaged || values == hives_[hive].end()) return found;
    for (const auto& [name, value] : values->second) found.push_back(name);
    return found;
}

std::vector<Text> TestSettings::keys(platform::HKeys hive, TextView key) {
    std::vector<Text> found;
    if (damaged) return found;
    for (const auto& [path, values] : hives_[hive]) {
        const auto child = childOf(withoutOuterMarks(key), path);
        if (child && (found.empty() || !equalIgnoringCase(found.back(), *child))) found.push_back(*child);
    }
    return found;
}

bool TestSettings::mayAccess(platform::HKeys, TextView, bool write) {
    return !damaged && !(write && readOnly);
}

SystemError TestSettings::check(platform::HKeys) {
    return damaged ? SystemError::readFault : SystemError::none;
}

int32 ScriptedUi::choose(const platform::ChoiceList& list) {
    listsShown.push_back(list.caption);
    if (choices.empty()) return 0;
    const auto choice = choices.front();
    choices.pop_front();
    return choice(list);
}

int32 ScriptedUi::nextAnswer() {
    if (!answers.empty()) {
        const int32 answer = answers.front();
        answers.pop_front();
        return answer;
    }
    if (defaultAnswer) return *defaultAnswer;
    const auto what = "a message box without a scripted answer: " +
                      toUtf8(boxes.back().headline + u"|" + boxes.back().body);
    ADD_FAILURE() << what;
    throw std::logic_error(what);  // ends the loop that would ask again for ever
}

int32 ScriptedUi::show(const platform::MessageBox& box) {
    static_cast<platform::MessageBox&>(boxes.emplace_back()) = box;
    return nextAnswer();
}

std::optional<platform::DialogAnswer> ScriptedUi::showTaskDialog(const platform::TaskDialog& dialog,
                                                                 const platform::DialogListener& tell) {
    using platform::DialogNotice;
    boxes.push_back(dialog);
    if (dialogFails) return std::nullopt;
    platform::DialogAnswer answer{0, dialog.defaultOption, dialog.checked};
    std::vector<Played> all{{DialogNotice::constructed, window, {}}, {DialogNotice::created, 0, {}}};
    all.insert(all.end(), play.begin(), play.end());
    play.clear();
    for (const auto& [notice, value, link] : all) {
        if (notice == DialogNotice::optionClick) answer.option = value;
        if (notice == DialogNotice::verify) answer.checked = value != 0;
        answer.button = tell(notice, value, link);
        if (answer.button != 0) break;
    }
    if (answer.button == 0) {
        constexpr int32 ticked = 2048;
        const int32 scripted = nextAnswer();
        answer.button = scripted & ~ticked;
        answer.checked = answer.checked || (scripted & ticked) != 0;
    }
    tell(DialogNotice::buttonClick, answer.button, {});
    tell(DialogNotice::destroyed, 0, {});
    return answer;
}

// There is nothing and nothing can be made.
platform::FileSystem& StartedLibrary::none() {
    static MemoryFiles nothing;
    static FailingFiles files(nothing);
    files.failAt(1, SystemError::fileNotFound, FailingFiles::Times::fromThenOn);
    return files;
}

}  // namespace tsRtm::test

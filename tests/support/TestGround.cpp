#include "tests/support/TestGround.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

namespace tsRtm::test {

using platform::LocaleItem;
using platform::SystemError;

namespace {

constexpr float64 nanosecondsPerDay = 86400e9;
constexpr TextView rootKey = u"Software\\Tessarol";

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

Date TestClock::now() {
    const auto passed = static_cast<float64>((elapsed_ - setAt_).count());
    return Date(set_.serial() + passed / nanosecondsPerDay);
}

void TestClock::sleep(std::chrono::nanoseconds duration) {
    ++sleeps;
    elapsed_ += duration;
    if (onSleep) onSleep();
}

void TestClock::set(Date moment) {
    set_ = moment;
    setAt_ = elapsed_;
}

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

TestLocale TestLocale::english() {
    TestLocale locale;
    locale.language = 1033;
    locale.items[LocaleItem::country] = u"1";
    locale.items[LocaleItem::countryName] = u"United States";
    locale.items[LocaleItem::dateMark] = u"/";
    locale.items[LocaleItem::currencySymbol] = u"$";
    locale.items[LocaleItem::currencyForm] = u"0";
    locale.items[LocaleItem::decimalMark] = u".";
    locale.items[LocaleItem::thousandsMark] = u",";
    locale.items[LocaleItem::dateForm] = u"0";
    locale.items[LocaleItem::timeForm] = u"0";
    locale.items[LocaleItem::firstDayOfWeek] = u"6";
    locale.items[LocaleItem::firstWeekOfYear] = u"0";
    locale.weekdays = {u"Monday", u"Tuesday", u"Wednesday", u"Thursday", u"Friday", u"Saturday", u"Sunday"};
    locale.months = {u"January", u"February", u"March",     u"April",   u"May",      u"June",
                     u"July",    u"August",   u"September", u"October", u"November", u"December"};
    return locale;
}

TestLocale TestLocale::french() {
    TestLocale locale;
    locale.language = 1036;
    locale.items[LocaleItem::country] = u"33";
    locale.items[LocaleItem::countryName] = u"France";
    locale.items[LocaleItem::dateMark] = u"/";
    locale.items[LocaleItem::thousandsMark] = u"\u00A0";
    locale.weekdays = {u"lundi", u"mardi", u"mercredi", u"jeudi", u"vendredi", u"samedi", u"dimanche"};
    locale.months = {u"janvier", u"février", u"mars",      u"avril",   u"mai",      u"juin",
                     u"juillet", u"août",    u"septembre", u"octobre", u"novembre", u"décembre"};
    return locale;
}

Text TestLocale::item(LocaleItem which) {
    const auto found = items.find(which);
    return found == items.end() ? Text{} : found->second;
}

Text TestLocale::weekdayName(int32 weekday) {
    return weekday < 0 || weekday > 6 ? Text{} : weekdays[static_cast<std::size_t>(weekday)];
}

Text TestLocale::monthName(int32 month) {
    return month < 1 || month > 12 ? Text{} : months[static_cast<std::size_t>(month - 1)];
}

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

void TestSettings::user(TextView name, TextView value) {
    static_cast<void>(set(platform::HKeys::currentUser, rootKey, name, value));
}

void TestSettings::machine(TextView name, TextView value) {
    static_cast<void>(set(platform::HKeys::localMachine, rootKey, name, value));
}

platform::VolumeInfo TestSystem::volumeInfo(TextView root) {
    volumesAsked.emplace_back(root);
    return volume;
}

Text TestSystem::folder(platform::FolderId id, bool create) {
    if (const auto found = folders.find(id); found != folders.end()) return found->second;
    const auto made = foldersWhenMade.find(id);
    return create && made != foldersWhenMade.end() ? made->second : Text{};
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

void ScriptedUi::showMessageWindow(TextView message) {
    windowTexts.emplace_back(message);
    windowOpen = true;
}

void ScriptedUi::processEvents() {
    ++eventRounds;
    if (onEvents) onEvents();
}

Text ScriptedUi::systemCaption(int32 number) {
    captionsAsked.push_back(number);
    const auto found = captions.find(number);
    return found == captions.end() ? Text{} : found->second;
}

Text ScriptedUi::keyName(int32 virtualKey) {
    const auto found = keyNames.find(virtualKey);
    return found == keyNames.end() ? Text{} : found->second;
}

void ScriptedUi::clickAbort() {
    if (onAbort) onAbort();
}

platform::Result<std::unique_ptr<platform::File>> NoFiles::open(TextView, platform::OpenRequest) {
    return SystemError::fileNotFound;
}
platform::Result<platform::FileStatus> NoFiles::status(TextView) { return SystemError::fileNotFound; }
SystemError NoFiles::remove(TextView) { return SystemError::fileNotFound; }
SystemError NoFiles::rename(TextView, TextView, bool) { return SystemError::fileNotFound; }
SystemError NoFiles::makeFolder(TextView) { return SystemError::accessDenied; }
SystemError NoFiles::exchange(TextView, TextView) { return SystemError::notSupported; }
SystemError NoFiles::copyAccess(TextView, TextView) { return SystemError::notSupported; }
SystemError NoFiles::flushFolder(TextView) { return SystemError::pathNotFound; }
SystemError NoFiles::unhide(TextView) { return SystemError::notSupported; }
platform::Result<std::vector<platform::FolderEntry>> NoFiles::list(TextView) {
    return SystemError::pathNotFound;
}
platform::DriveKind NoFiles::driveKind(TextView) { return platform::DriveKind::unknown; }
SystemError NoFiles::recycle(TextView) { return SystemError::fileNotFound; }

platform::FileSystem& StartedLibrary::none() {
    static NoFiles files;
    return files;
}

}  // namespace tsRtm::test

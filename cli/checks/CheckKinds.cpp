#include "cli/checks/CheckKinds.hpp"

#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Session.hpp"
#include "tsRtm/frame/state/Plugged.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/validation/clsValidBanking.hpp"
#include "tsRtm/validation/clsValidDate.hpp"
#include "tsRtm/validation/clsValidEAdr.hpp"
#include "tsRtm/validation/clsValidValue.hpp"

namespace tsRtm::cli {
namespace {

const std::map<std::string, int32> kDays{{"all", datAllDays},
                                         {"mon-fri", datMoBisFr},
                                         {"mon-sat", datMoBisSa},
                                         {"weekend", datSaUndSo},
                                         {"workday", datWerktag},
                                         {"weekend-holiday", datNichtWerktag},
                                         {"sunday-holiday", datSonnUndFeiertag},
                                         {"no-sunday-holiday", datNichtSUF}};

template <class Checker>
std::unique_ptr<Checker> made(const CheckOptions& options, int32 mode) {
    auto checker = std::make_unique<Checker>();
    checker->Options(mode | (options.error ? voError : 0) | (options.required ? voRequired : 0));
    return checker;
}

template <int32 mode>
std::unique_ptr<iValidChecker> makeBanking(const CheckOptions& options) {
    return made<clsValidBanking>(options, mode);
}

template <int32 mode>
std::unique_ptr<iValidChecker> makeAddress(const CheckOptions& options) {
    return made<clsValidEAdr>(options, mode);
}

// "31.02.24" with a day or month that is none: the library cuts it to the month's end and takes it.
bool hasImpossibleDay(TextView date) {
    const auto first = date.find(u'.');
    const auto second = first == TextView::npos ? first : date.find(u'.', first + 1);
    if (second == TextView::npos) return false;
    const clsDatum calendar;
    const auto number = [](TextView text) { return roundToInt32(Val(text)); };
    const int32 day = number(date.substr(0, first));
    const int32 month = number(date.substr(first + 1, second - first - 1));
    int32 cutDay = 0, cutMonth = 0, year = 0;
    calendar.CtoD(date, cutDay, cutMonth, year);
    return month < 1 || month > 12 || day < 1 || day > calendar.DaysInMonth(month, year);
}

Text needLimit(const std::string& text) {
    Text limit = fromUtf8(text);
    const bool relative = limit.starts_with(u'D');
    if (!limit.empty() && !relative && (!clsDatum().DateOK(limit) || hasImpossibleDay(limit)))
        throw CliError("'" + text + "' is no date; dates are TTMMJJJJ, or D-30 and D+7 for days from today");
    return limit;
}

std::unique_ptr<iValidChecker> makeDate(const CheckOptions& options) {
    auto checker = made<clsValidDate>(options, options.days | (options.critical ? datDayCritical : 0));
    checker->Minimum(needLimit(options.least));
    checker->Maximum(needLimit(options.most));
    return checker;
}

std::unique_ptr<iValidChecker> makeValue(const CheckOptions& options) {
    auto checker = made<clsValidValue>(options, voRange);
    if (!options.least.empty()) checker->Minimum(clsValidValue::NumberOf(fromUtf8(options.least)));
    if (!options.most.empty()) checker->Maximum(clsValidValue::NumberOf(fromUtf8(options.most)));
    return checker;
}

constexpr const char* kNoRegister =
    "Whether there is such a German bank is checked where there is a register: that of --banks, else the "
    "one\n"
    "that comes with the programs.";

constexpr CheckKind kKinds[] = {
    {"iban", "An IBAN, as it is written on forms: without blanks, in capitals", makeBanking<btIBAN>, true,
     false, false, kNoRegister},
    {"bic", "A BIC of 8 or 11 characters", makeBanking<btBIC>, true, false, false, kNoRegister},
    {"blz", "A German bank code of 8 digits", makeBanking<btBLZDE>, true, false, false, kNoRegister},
    {"konto", "A German account number of up to 10 digits", makeBanking<btKontoDE>, true, false, false,
     nullptr},
    {"date", "A date of 6 or 8 digits, the day first", makeDate, false, true, true,
     "Holidays are those of the user's state; without one, of any.\n"
     "Example:\n  tsrtm check date 24122026 --days workday --min D+1"},
    {"email", "An address of e-mail", makeAddress<eaEMail>, false, false, false, nullptr},
    {"egvp", "An address of the court mailboxes, with its check digits", makeAddress<eaEGVP>, false, false,
     false, nullptr},
    {"value", "A number within limits", makeValue, false, true, false,
     "Example:\n  tsrtm check value 12,50 --min 1 --max 100"},
};

// Without the blanks, and in capitals.
Text tidied(TextView value) {
    Text out;
    for (const char16_t c : value)
        if (c != u' ') out += upper(c);
    return out;
}

}  // namespace

std::span<const CheckKind> checkKinds() { return kKinds; }

void addDays(Command command, CheckOptions& options) {
    command
        .choice(
            "--days", options.days,
            "all (the default), mon-fri, mon-sat, weekend, workday, no-sunday-holiday; weekend-holiday and "
            "sunday-holiday: a holiday on such a day",
            kDays, Letters::exact)
        .typeName("KIND");
    command.flag("--critical", options.critical, "A day of the wrong kind is an error");
}

const char* gradeName(eValidResult grade) noexcept {
    constexpr const char* kNames[] = {"ok", "info", "question", "warning", "error"};
    return kNames[grade];
}

Grader::Grader(const CheckOptions& options) : options_(options) {
    auto& locale = rtmMain::state().locale;
    locale.dateForm = 1;
    locale.sepDate = u".";
    checker_ = options.kind->make(options);
    if (!options.kind->banking) return;
    banks_ = options.banks.empty() ? std::make_shared<clsBanken>()
                                   : std::make_shared<clsBanken>(databaseFolder(options.banks));
    if (!options.banks.empty() && !banks_->IsOpen())
        throw CliError("no bank register '" + options.banks + "'");
    rtmMain::plugged().bankRegister = banks_;
}

Graded Grader::grade(TextView value) {
    Graded graded{Text(value), checker_->Check(nullptr, value), {}, {}, {}, {}};
    if (graded.grade == validOK) {
        // An account is none of a bank.
        if (banks_ && options_.kind->make != makeBanking<btKontoDE> && banks_->IsOpen())
            graded.bank = banks_->Name(value.starts_with(u"DE") ? value.substr(4, 8) : value);
        if (!options_.kind->days || !hasImpossibleDay(value)) return graded;
        graded.grade = validError;
        graded.note = "no such day; the library itself takes the last one of the month";
        return graded;
    }
    graded.message = checker_->ErrorMsg();
    graded.explanation = checker_->Msg();
    if (const Text tidy = tidied(value);
        options_.kind->banking && tidy != value && checker_->Check(nullptr, tidy) == validOK)
        graded.note = "passes without blanks and in capitals: " + toUtf8(tidy);
    return graded;
}

}  // namespace tsRtm::cli

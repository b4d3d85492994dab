#include "cli/dates/HolidayOptions.hpp"

#include <algorithm>
#include <array>
#include <iostream>

#include "cli/dates/DateExpression.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "cli/shared/Zone.hpp"
#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/frame/Bundeslaender.hpp"
#include "tsRtm/frame/options/Registry.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::cli {
namespace {

constexpr int32 kAllLaws = 99999999;

struct State {
    int32 number;
    TextView word, code, name;
};

// clang-format off
constexpr std::array kStates{
    State{BADENW,         u"BADENW",         u"BW", u"Baden-Württemberg"},
    State{BAYERN,         u"BAYERN",         u"BY", u"Bayern"},
    State{BERLIN,         u"BERLIN",         u"BE", u"Berlin"},
    State{BREMEN,         u"BREMEN",         u"HB", u"Bremen"},
    State{HAMBURG,        u"HAMBURG",        u"HH", u"Hamburg"},
    State{HESSEN,         u"HESSEN",         u"HE", u"Hessen"},
    State{NIEDERSACHSEN,  u"NIEDERSACHSEN",  u"NI", u"Niedersachsen"},
    State{NRW,            u"NRW",            u"NW", u"Nordrhein-Westfalen"},
    State{RHEINLANDPFALZ, u"RHEINLANDPFALZ", u"RP", u"Rheinland-Pfalz"},
    State{SAARLAND,       u"SAARLAND",       u"SL", u"Saarland"},
    State{SCHLESWIG,      u"SCHLESWIG",      u"SH", u"Schleswig-Holstein"},
    State{BRANDENBURG,    u"BRANDENBURG",    u"BB", u"Brandenburg"},
    State{MECKPOMM,       u"MECKPOMM",       u"MV", u"Mecklenburg-Vorpommern"},
    State{SACHSEN,        u"SACHSEN",        u"SN", u"Sachsen"},
    State{SACHSENANHALT,  u"SACHSENANHALT",  u"ST", u"Sachsen-Anhalt"},
    State{THUERINGEN,     u"THUERINGEN",     u"TH", u"Thüringen"},
};

struct HolidayRemark {
    TextView name;
    int32 state;
    const char* text;
};
constexpr std::array kRemarks{
    HolidayRemark{u"Friedensfest",        BAYERN, "by law only in Augsburg"},
    HolidayRemark{u"Mariä Himmelfahrt",   BAYERN, "by law only where most people are Catholics"},
};
// clang-format on

const State* stateOf(TextView text) {
    const auto* found = std::find_if(kStates.begin(), kStates.end(), [&](const State& state) {
        return equalIgnoringCase(text, state.word) || equalIgnoringCase(text, state.code) ||
               equalIgnoringCase(text, state.name) || text == toText(state.number);
    });
    return found == kStates.end() ? nullptr : found;
}

void chooseLand(const std::optional<std::string>& land) {
    const Text stored = land ? Text() : registry::read(HKEY_CURRENT_USER, registry::kRoot, u"Bundesland");
    if (!land && stored.empty()) {
        std::cerr << "tsrtm: note: no --land: what is a holiday in any state counts as one\n";
        rtmMain::state().bundesland = 0;
        return;
    }
    const auto* state = stateOf(land ? fromUtf8(*land) : stored);
    if (!state) {
        std::string words;
        for (const auto& row : kStates) words += (words.empty() ? "" : ", ") + toUtf8(row.word);
        throw CliError("no state '" + (land ? *land : toUtf8(stored)) + "'; there are " + words);
    }
    rtmMain::state().bundesland = state->number;
}

}  // namespace

const char* const kHolidayHelp =
    "The days are those of the law of today, with --law DATE those of the law as it stood then; the table "
    "itself is of\n"
    "2020, and what came later is marked with its law. What only municipalities have is not known: in "
    "Bavaria\n"
    "Friedensfest and Mariä Himmelfahrt count everywhere, Fronleichnam counts nowhere in Saxony and "
    "Thuringia.\n"
    "24.12. and 31.12. are working days. After 2199 no day that hangs on Easter is known.\n"
    "STATE is a word like NRW, BAYERN or MECKPOMM, a code like NW, or the name. For good:\n"
    "  tsrtm options set Bundesland NRW";

void addHolidayOptions(Command command, HolidayOptions& options) {
    command.option("--land", options.land, "The federal state; without it the one that is stored")
        .typeName("STATE");
    command.option("--law", options.law, "The law as it stood on this day; that of today without it")
        .typeName("DATE");
    command.option("--zone", options.zone, "The zone of summer time; without it Europe/Berlin")
        .typeName("ZONE");
    addJson(command, options.json);
}

clsFeierTage openHolidays(const HolidayOptions& options) {
    chooseLand(options.land);
    if (options.zone) chooseZone(*options.zone);
    clsFeierTage days;
    days.Rechtsstand(kAllLaws);
    if (options.law) {
        const auto date = readDates(*options.law);
        if (date.until) throw CliError("--law takes one date");
        days.Rechtsstand(roundToInt32(Val(clsDatum().DateSort(date.date))));
    }
    return days;
}

std::string chosenLand() {
    const auto* state = stateOf(toText(rtmMain::state().bundesland));
    return state ? toUtf8(state->word) : "";
}

std::string remarkOn(TextView name) {
    for (const auto& remark : kRemarks)
        if (remark.name == name && remark.state == rtmMain::state().bundesland) return remark.text;
    return {};
}

}  // namespace tsRtm::cli

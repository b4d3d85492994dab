#pragma once
// The named days and holidays of Germany as rules, one a line: name | rule | kind | first year | last year |
// states.
//
// rule    a fixed day TTMM, or a letter for a day that moves and an offset in days:
//           O Easter Sunday        A first Sunday of Advent     M Mothers' Day       E harvest festival
//           S start of summer time X end of it, both by zone    W end of it until 1995
//           J start of a season: its number follows, no offset
// kind    0 a named day, no holiday; 1 a holiday everywhere; 2 a holiday in the states that follow, two
// digits each years   both within; -32000 and 32000 for always
//
// The order matters: of two holidays on one day the first decides. A change of law is one more row with its
// years, and one that came after 2020 is a row of Amendments.hpp. The years go as far back as programs count
// on it, whatever history says of a day.
#include <array>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::holidays {

// clang-format off
inline constexpr std::array kRuleTexts = {
    TextView(u"Dreikönige|601|2|801|32000|010215"),
    TextView(u"Valentinstag|1402|0|269|32000"),
    TextView(u"Rosenmontag|O-48|0|325|2199"),
    TextView(u"Fastnacht|O-47|0|325|2199"),
    TextView(u"Aschermittwoch|O-46|0|325|2199"),
    TextView(u"Palmsonntag|O-7|0|325|2199"),
    TextView(u"Gründonnerstag|O-3|0|325|2199"),
    TextView(u"Karfreitag|O-2|1|325|2199"),
    TextView(u"Karsamstag|O-1|0|325|2199"),
    TextView(u"Ostersonntag|O|1|325|2199"),
    TextView(u"Ostermontag|O+1|1|325|2199"),
    TextView(u"Weißer Sonntag|O+7|0|325|2199"),
    TextView(u"Maifeier|105|1|1933|32000"),
    TextView(u"Europatag|505|0|1950|32000"),
    TextView(u"Muttertag|M|0|1933|32000"),
    TextView(u"Himmelfahrt|O+39|1|301|2199"),
    TextView(u"Pfingstsonntag|O+49|1|0|2199"),
    TextView(u"Pfingstmontag|O+50|1|0|2199"),
    TextView(u"Fronleichnam|O+60|2|1264|2199|010206080910"),
    TextView(u"Tag der deutschen Einheit|1706|1|1964|1990"),
    TextView(u"Mariä Himmelfahrt|1508|2|601|32000|0210"),
    TextView(u"Tag der deutschen Einheit|0310|1|1990|32000"),
    TextView(u"Erntedank|E|0|1934|32000"),
    TextView(u"Weltspartag|3010|0|1950|32000"),
    TextView(u"Reformationstag|3110|2|1517|2016|1213141516"),
    TextView(u"Allerheiligen|111|2|835|32000|0102080910"),
    TextView(u"Allerseelen|211|0|998|32000"),
    TextView(u"Maueröffnung|911|0|1989|32000"),
    TextView(u"Martinstag|1111|0|397|32000"),
    TextView(u"Volkstrauertag|A-14|0|1952|32000"),
    TextView(u"Buß- und Bettag|A-11|1|1893|1994"),
    TextView(u"Buß- und Bettag|A-11|2|1995|32000|14"),
    TextView(u"Totensonntag|A-7|0|0|32000"),
    TextView(u"1. Advent|A|1|524|32000"),
    TextView(u"2. Advent|A+7|1|524|32000"),
    TextView(u"3. Advent|A+14|1|524|32000"),
    TextView(u"4. Advent|A+21|1|524|32000"),
    TextView(u"Nikolaus|612|0|301|32000"),
    TextView(u"Heiligabend|2412|0|301|32000"),
    TextView(u"1. Weihnachtstag|2512|1|301|32000"),
    TextView(u"2. Weihnachtstag|2612|1|301|32000"),
    TextView(u"Silvester|3112|0|-32000|32000"),
    TextView(u"Frühlingsanfang|J0|0|0|32000"),
    TextView(u"Sommeranfang|J1|0|0|32000"),
    TextView(u"Herbstanfang|J2|0|0|32000"),
    TextView(u"Winteranfang|J3|0|0|32000"),
    TextView(u"Beginn Sommerzeit|S|0|1981|32000"),
    TextView(u"Ende Sommerzeit|W|0|1980|1995"),
    TextView(u"Ende Sommerzeit|X|0|1996|32000"),
    TextView(u"Neujahr|101|1|1582| 32000"),
    TextView(u"Neujahr|2503|1|-32000|1581"),
    TextView(u"meteorologischer Frühlingsanfang|103|0|0|32000"),
    TextView(u"meteorologischer Sommeranfang|106|0|0|32000"),
    TextView(u"meteorologischer Herbstanfang|109|0|0|32000"),
    TextView(u"meteorologischer Winteranfang|112|0|0|32000"),
    TextView(u"Friedensfest|808|2|1650|32000|02"),
    TextView(u"Reformationstag|3110|1|2017|2017"),
    TextView(u"Reformationstag|3110|2|2018|32000|040507111213141516"),
    TextView(u"internationaler Frauentag|0803|2|2019|32000|03"),
    TextView(u"Weltkindertag|2009|2|2019|32000|16"),
    TextView(u"75 Jahre Befreiung|0805|2|2020|2020|03"),
};
// clang-format on

}  // namespace tsRtm::holidays

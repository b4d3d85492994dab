#pragma once
// The words of AddressRows. Surnames stand by falling frequency. No word leaves Latin-1.
#include <string_view>

namespace tsRtm::bench::words {

inline constexpr std::string_view kSurnames[] = {
    "Müller",      "Schmidt",      "Schneider",   "Fischer",   "Meyer",      "Weber",      "Schulz",
    "Wagner",      "Becker",       "Hoffmann",    "Schäfer",   "Koch",       "Bauer",      "Richter",
    "Klein",       "Wolf",         "Schröder",    "Neumann",   "Schwarz",    "Zimmermann", "Braun",
    "Krüger",      "Hofmann",      "Hartmann",    "Lange",     "Schmitt",    "Werner",     "Krause",
    "Meier",       "Lehmann",      "Schmid",      "Schulze",   "Maier",      "Köhler",     "Herrmann",
    "König",       "Walter",       "Mayer",       "Huber",     "Kaiser",     "Fuchs",      "Peters",
    "Möller",      "Weiß",         "Weiss",       "Jung",      "Hahn",       "Keller",     "Günther",
    "Vogel",       "Roth",         "Beck",        "Lorenz",    "Böhm",       "Winter",     "Krämer",
    "Jäger",       "Groß",         "Gross",       "Haas",      "Kühn",       "Kuhn",       "Strauß",
    "Strauss",     "Preuß",        "Preuss",      "Voß",       "Voss",       "Heß",        "Hess",
    "Götz",        "Goetz",        "Löwe",        "Loewe",     "Bär",        "Baer",       "Käsmann",
    "Äckerle",     "Österreicher", "Übelacker",   "Abendroth", "Ahlers",     "Bachhuber",  "Birnbaum",
    "Claussen",    "Clausen",      "Dahlmann",    "Drechsler", "Eggers",     "Endres",     "Faßbender",
    "Fassbender",  "Gerdes",       "Gerstner",    "Hagedorn",  "Hinrichs",   "Imhof",      "Jessen",
    "Kampmann",    "Kleinschmidt", "Landgraf",    "Lindemann", "Mahler",     "Mertens",    "Niemann",
    "Oelschläger", "Ölschläger",   "Petersen",    "Quast",     "Rademacher", "Reißmann",   "Reissmann",
    "Sachs",       "Sachse",       "Tillmann",    "Tiedemann", "Uhl",        "Uhlmann",    "Vollmer",
    "Wachter",     "Wächter",      "Zöllner",     "Zoellner",  "André",      "Andre",      "Renée",
    "Fernández",   "Muñoz",        "Åberg",       "Sørensen",  "Çetin",      "Desirée",    "D'Alessio",
    "O'Neill",     "von Hagen",    "von der Aue", "van Dyck",  "zu Felde",   "de Boer",    "ten Brink"};

inline constexpr std::string_view kForenames[] = {
    "Thomas",   "Michael", "Andreas", "Peter",   "Stefan",   "Stephan",   "Christian", "Klaus",
    "Claus",    "Jürgen",  "Günter",  "Günther", "Uwe",      "Wolfgang",  "Frank",     "Bernd",
    "Björn",    "Jörg",    "Götz",    "Sören",   "Karl",     "Carl",      "Heinz",     "Hans",
    "Dieter",   "Rainer",  "Reiner",  "Ralf",    "Ralph",    "Matthias",  "Mathias",   "Jens",
    "Lutz",     "Kai",     "Kay",     "Malte",   "Ole",      "Paul",      "Emil",      "Anton",
    "Sabine",   "Susanne", "Petra",   "Monika",  "Karin",    "Carin",     "Ursula",    "Renate",
    "Brigitte", "Birgit",  "Andrea",  "Claudia", "Stefanie", "Stephanie", "Katharina", "Catharina",
    "Käthe",    "Bärbel",  "Zoë",     "Chloé",   "René",     "Noël",      "Inès",      "Anna",
    "Hannah",   "Hanna",   "Lea",     "Leah",    "Sophie",   "Sofie",     "Marie",     "Emma",
    "Ida",      "Greta",   "Frieda",  "Frida",   "Jutta",    "Heike",     "Anke",      "Elke"};

inline constexpr std::string_view kStreets[] = {"Hauptstraße",
                                                "Bahnhofstraße",
                                                "Gartenweg",
                                                "Schulstraße",
                                                "Lindenallee",
                                                "Mühlenweg",
                                                "Am Rathaus",
                                                "Kirchgasse",
                                                "Äußere Brücker Straße",
                                                "Große Bleiche",
                                                "Königsplatz",
                                                "Rosenweg",
                                                "Schloßgasse",
                                                "Schlossgasse",
                                                "Ziegelhütte",
                                                "An der Alten Post",
                                                "Bürgermeister-Smidt-Straße",
                                                "Feldrain",
                                                "Unter den Eichen",
                                                "Zum Öhrberg"};

struct Place {
    std::string_view name;
    std::uint32_t firstCode;  // postal code
    std::uint32_t codes;      // how many follow
    std::uint32_t weight;
};
inline constexpr Place kPlaces[] = {{"Berlin", 10115, 3900, 30},
                                    {"Hamburg", 20095, 2600, 16},
                                    {"München", 80331, 1600, 13},
                                    {"Köln", 50667, 480, 10},
                                    {"Frankfurt am Main", 60306, 600, 7},
                                    {"Stuttgart", 70173, 450, 6},
                                    {"Düsseldorf", 40210, 400, 6},
                                    {"Leipzig", 4103, 240, 6},
                                    {"Dresden", 1067, 250, 5},
                                    {"Nürnberg", 90402, 90, 5},
                                    {"Lübeck", 23552, 18, 3},
                                    {"Würzburg", 97070, 15, 2},
                                    {"Gießen", 35390, 9, 2},
                                    {"Göttingen", 37073, 13, 2},
                                    {"Villingen-Schwenningen", 78048, 9, 1},
                                    {"Bad Zwischenahn", 26160, 1, 1},
                                    {"Übersee", 83236, 1, 1},
                                    {"Öhringen", 74613, 1, 1}};

}  // namespace tsRtm::bench::words

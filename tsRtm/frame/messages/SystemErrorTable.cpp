// The system error numbers that every ground answers with, and some that clients ask for.
#include <algorithm>

#include "tsRtm/frame/messages/TextTables.hpp"

namespace tsRtm {

namespace {

// clang-format off
constexpr ErrorRow systemErrors[] = {
    {1, u"Unzulässige Funktion"},
    {2, u"Die Datei wurde nicht gefunden"},
    {3, u"Der Pfad wurde nicht gefunden"},
    {4, u"Zu viele geöffnete Dateien"},
    {5, u"Der Zugriff ist verweigert"},
    {6, u"Das Dateikennzeichen ist ungültig"},
    {8, u"Der Arbeitsspeicher reicht nicht aus"},
    {13, u"Die Daten sind ungültig"},
    {15, u"Das Laufwerk wurde nicht gefunden"},
    {17, u"Ziel und Quelle liegen auf verschiedenen Laufwerken"},
    {18, u"Keine weiteren Dateien"},
    {19, u"Der Datenträger ist schreibgeschützt"},
    {21, u"Das Gerät ist nicht bereit"},
    {23, u"Prüfsummenfehler in den Daten"},
    {29, u"Auf das Gerät kann nicht geschrieben werden"},
    {30, u"Vom Gerät kann nicht gelesen werden"},
    {32, u"Die Datei wird von einem anderen Programm benutzt"},
    {33, u"Ein Teil der Datei ist von einem anderen Programm gesperrt"},
    {38, u"Das Ende der Datei ist erreicht"},
    {50, u"Das wird hier nicht unterstützt"},
    {53, u"Der Netzwerkpfad wurde nicht gefunden"},
    {64, u"Die Verbindung zum Netzwerk besteht nicht mehr"},
    {80, u"Die Datei ist bereits vorhanden"},
    {87, u"Ein Argument ist falsch"},
    {109, u"Die Gegenstelle hat die Verbindung beendet"},
    {112, u"Auf dem Datenträger ist kein Platz mehr"},
    {123, u"Der Name enthält unzulässige Zeichen"},
    {145, u"Der Ordner ist nicht leer"},
    {183, u"Der Name ist bereits vergeben"},
    {206, u"Der Name ist zu lang"},
    {223, u"Die Datei ist zu groß"},
    {1117, u"Ein-/Ausgabefehler am Gerät"},
    {1223, u"Der Vorgang wurde vom Benutzer abgebrochen"},
    {1314, u"Das dafür nötige Recht fehlt"},
};
// clang-format on

}  // namespace

TextView systemErrorText(int32 number) noexcept {
    const auto* row = std::ranges::find(systemErrors, number, &ErrorRow::number);
    return row == std::end(systemErrors) ? TextView{} : row->text;
}

}  // namespace tsRtm

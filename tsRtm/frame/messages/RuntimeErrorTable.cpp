// The run-time error numbers by their general meaning.
#include <algorithm>

#include "tsRtm/frame/messages/TextTables.hpp"

namespace tsRtm {

namespace {

// clang-format off
constexpr ErrorRow runtimeErrors[] = {
    {3, u"Rücksprung ohne Aufruf"},
    {5, u"Unzulässiger Aufruf oder unzulässiges Argument"},
    {6, u"Überlauf"},
    {7, u"Der Arbeitsspeicher reicht nicht aus"},
    {9, u"Index liegt außerhalb des zulässigen Bereichs"},
    {10, u"Das Feld hat eine feste Größe oder ist gesperrt"},
    {11, u"Division durch Null"},
    {13, u"Der Typ passt nicht"},
    {14, u"Kein Platz mehr für Texte"},
    {16, u"Der Ausdruck ist zu umfangreich"},
    {17, u"Der Vorgang kann nicht ausgeführt werden"},
    {18, u"Unterbrechung durch den Benutzer"},
    {20, u"Fortsetzung ohne vorangegangenen Fehler"},
    {24, u"Das Gerät antwortet nicht rechtzeitig"},
    {25, u"Störung am Gerät"},
    {26, u"Das Gerät ist nicht eingeschaltet"},
    {27, u"Kein Papier im Drucker"},
    {28, u"Kein Platz mehr auf dem Stapel"},
    {35, u"Die Prozedur ist nicht vorhanden"},
    {47, u"Zu viele Programmbibliotheken"},
    {48, u"Programmbibliothek kann nicht geladen werden"},
    {49, u"Aufruf passt nicht zur Programmbibliothek"},
    {51, u"Interner Fehler"},
    {52, u"Dateiname oder Dateinummer ist falsch"},
    {53, u"Datei nicht gefunden"},
    {54, u"Zugriffsart passt nicht zur Datei"},
    {55, u"Datei ist bereits geöffnet"},
    {57, u"Ein-/Ausgabefehler am Gerät"},
    {58, u"Datei ist bereits vorhanden"},
    {59, u"Satzlänge ist falsch"},
    {61, u"Datenträger ist voll"},
    {62, u"Lesen hinter dem Dateiende"},
    {63, u"Satznummer ist falsch"},
    {64, u"Dateiname ist falsch"},
    {67, u"Zu viele Dateien"},
    {68, u"Gerät ist nicht verfügbar"},
    {70, u"Zugriff verweigert"},
    {71, u"Datenträger ist nicht bereit"},
    {74, u"Umbenennen über Laufwerke hinweg ist nicht möglich"},
    {75, u"Kein Zugriff auf Pfad oder Datei"},
    {76, u"Pfad nicht gefunden"},
    {91, u"Das benötigte Objekt fehlt"},
    {321, u"Das Dateiformat wird nicht unterstützt"},
    {360, u"Das Objekt ist bereits geladen"},
    {365, u"Das Objekt kann hier nicht entladen werden"},
    {380, u"Der Eigenschaftswert ist ungültig"},
    {381, u"Der Index der Eigenschaft ist ungültig"},
    {385, u"Die Eigenschaft verlangt einen Index"},
    {422, u"Die Eigenschaft gibt es nicht"},
    {424, u"Hier wird ein Objekt verlangt"},
    {425, u"Das Objekt ist hier nicht zulässig"},
    {429, u"Das Objekt kann nicht erzeugt werden"},
    {445, u"Das Objekt unterstützt diese Aktion nicht"},
    {461, u"Das Element gibt es nicht"},
};
// clang-format on

}  // namespace

TextView runtimeErrorText(int32 number) noexcept {
    if (number == 0) return {};
    const auto* row = std::ranges::find(runtimeErrors, number, &ErrorRow::number);
    return row == std::end(runtimeErrors) ? TextView(u"Fehler der Anwendung oder eines ihrer Objekte")
                                          : row->text;
}

}  // namespace tsRtm

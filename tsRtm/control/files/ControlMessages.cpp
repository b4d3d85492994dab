#include "tsRtm/control/files/ControlMessages.hpp"

#include "tsRtm/fields/ControlContent.hpp"
#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"

namespace tsRtm {
namespace {

void show(FilesTopic& files, const Text& text, TextView title) {
    files.messages().TSMsgBox(text, dlgExclamation, title);
}

void showConfigurationFault(FilesTopic& files, const Text& text) {
    show(files, text, u"Konfigurationsfehler");
}

Text joined(std::initializer_list<TextView> pieces) {
    Text text;
    for (const auto piece : pieces) text += piece;
    return text;
}

}  // namespace

void showMissingKette(FilesTopic& files, TextView dir, int32 number) {
    show(
        files,
        joined(
            {u"In der Datenbank \"", dir, u"\" fehlt die Datei \"KetteCtl.", threeDigits(number), u"\".",
             u"\r\n\r\nBitte setzen Sie sich mit der Hotline in Verbindung, da Sie nicht auf alle Daten der ",
             u"Datenbank zugreifen können."}),
        u"clsControl.Oeffne");
}

void showDoubleName(FilesTopic& files, TextView name, TextView dir, int32 fieldNumber) {
    showConfigurationFault(
        files, joined({u"Doppelter Name in ", name, u" von ", dir, u" bei Feld ", toText(fieldNumber)}));
}

void showWrongIndex(FilesTopic& files, TextView file, TextView dir) {
    showConfigurationFault(files, joined({u"Falscher Index in ", file, u" von ", dir}));
}

void showDoubleIndexes(FilesTopic& files, TextView file, TextView dir) {
    showConfigurationFault(files, joined({u"Doppelte Indizes in ", file, u" von ", dir}));
}

}  // namespace tsRtm

// Starts the library as it was installed and lets it say something.
#include <iostream>
#include <tsRtm/tsRtm.hpp>

int main() {
    tsRtm::clsRtm rtm;
    const tsRtm::Text message = rtm.ErrorMsg(53);
    std::cout << tsRtm::toUtf8(message) << '\n';
    // Without the key table of the installation the text would stay as it is.
    tsRtm::Text scrambled = u"x";
    rtm.Schluessel(scrambled, 255);
    const tsRtm::clsEnumTS enumerations;
    static_cast<void>(enumerations);
    return tsRtm::clsProgItem().ID == 0 && message == u"Fehler 53: Datei nicht gefunden" && scrambled != u"x"
               ? 0
               : 1;
}

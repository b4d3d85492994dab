// Starts the library as it was installed and lets it say something.
#include <iostream>
#include <tsRtm/tsRtm.hpp>

int main() {
    tsRtm::clsRtm rtm;
    const tsRtm::Text message = rtm.ErrorMsg(53);
    std::cout << tsRtm::toUtf8(message) << '\n';
    return message == u"Fehler 53: Datei nicht gefunden" ? 0 : 1;
}

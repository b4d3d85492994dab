// Hash values, base 64, random numbers, and the scrambling of stored texts.
//
//     crypt_show FILE
#include <iostream>

#include "tsRtm/tsRtm.hpp"

using namespace tsRtm;

namespace {

void show(const char* what, TextView answer) { std::cout << what << "  " << toUtf8(answer) << '\n'; }

int run(const Text& file) {
    clsRtm rtm;
    const clsTSCrypt crypt;

    // A hash value is bytes; TextToHex makes digits of them.
    show("SHA-256 of a text ", crypt.TextToHex(crypt.GetHash(u"Tessarol", CALG_SHA256)));
    const Text ofFile = crypt.GetHashFromFile(file, CALG_SHA256);
    if (ofFile.empty()) {
        std::cerr << "cannot read " << toUtf8(file) << '\n';
        return 1;
    }
    show("SHA-256 of a file ", crypt.TextToHex(ofFile));

    // Base 64 in one line without "=", as lists write it, and back.
    const Text encoded = crypt.Base64(u"Grüße aus Köln", CRYPT_STRING_BASE64 | CRYPT_STRING_SHORT);
    show("base 64           ", encoded);
    show("and back          ", crypt.FromBase64(encoded));

    // A dump for the eye.
    std::cout << toUtf8(
        crypt.Base64(u"Any bytes may be shown.", CRYPT_STRING_HEXASCIIADDR | CRYPT_STRING_NOCR));

    // Scrambling hides a stored text from a glance; the same call takes it back. The start value goes with
    // it.
    Text text = u"Kontonummer 532013000";
    const int32 start = crypt.Zufall(1, 255);
    rtm.Schluessel(text, start);
    show("scrambled         ", crypt.TextToHex(text));
    rtm.Schluessel(text, start);
    show("and back          ", text);
    return text == u"Kontonummer 532013000" ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: crypt_show FILE\n";
        return 2;
    }
    return run(fromUtf8(argv[1]));
}

// A letter for a window envelope: composed once, written as PDF, and as a picture of its page.
#include <QGuiApplication>
#include <iostream>

#include "desktop/Desktop.hpp"
#include "tsRtm/tsRtm.hpp"

using namespace tsRtm;

using platform::mmToTwips;

namespace {

Adresse receiver() {
    Adresse address;
    address.AdrAnrede(u"Frau");
    address.Vorname(u"Erika");
    address.Name1(u"Mustermann");
    address.Zusatz(u"Hinterhaus");
    address.Strasse(u"Lange Straße 7");
    address.PLZOrt(u"52062 Aachen");
    return address;
}

void compose(Druck& job) {
    Adresse sender;
    sender.Name1(u"Kanzlei Beispiel");
    sender.Strasse(u"Markt 1");
    sender.PLZOrt(u"50667 Köln");

    job.FaltMarken();
    // The window's upper left corner, in millimetres from that of the paper.
    receiver().Drucken(&job, 47, 20, 12, {}, {}, &sender);
    job.mm(90, 190, u"Köln, 12. März 2027", 11, tsRechtbuendig);
    job.mm(104, 25, u"Ihr Zeichen 4711", 11, tsFett);

    const Text body =
        u"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\fs22\\pard\\sa120 Sehr geehrte Frau Mustermann,\\par "
        u"die Beträge der letzten Monate:\\par"
        u"\\trowd\\clbrdrt\\brdrs\\cellx3000\\cellx5000\\pard\\intbl Januar\\cell\\qr 120,00 "
        u"\\u8364?\\cell\\row"
        u"\\trowd\\clbrdrt\\brdrs\\cellx3000\\cellx5000\\pard\\intbl Februar\\cell\\qr 80,50 "
        u"\\u8364?\\cell\\row"
        u"\\pard\\sb240\\sa120 Mit freundlichen Grüßen\\par\\i Kanzlei Beispiel\\i0\\par}";
    int32 height = mmToTwips(150);
    job.PrintRTFTextNeu(body, mmToTwips(25), mmToTwips(110), mmToTwips(165), height);
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    desktop::Desktop desk;
    MessagesTopic messages;
    Druck job(messages);
    job.Device(u"PDF");
    job.DocPath(u".");
    job.JobName(u"letter");
    job.Init(72, 1, 1, u"A4");
    compose(job);
    job.Ende();
    if (job.Abbruch()) return 1;
    std::cout << toUtf8(job.DocFile()) << '\n';
    // The page is still there, and can be played once more.
    return platform::failed(desk.savePicture(*job.Page(1), u"letter.png", 100)) ? 1 : 0;
}

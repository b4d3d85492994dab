// A list over several pages, with a head and a number on each and a sum at the end.
#include <QGuiApplication>
#include <iostream>

#include "desktop/Desktop.hpp"
#include "tsRtm/tsRtm.hpp"

using namespace tsRtm;

namespace {

constexpr float64 kTop = 30, kBottom = 280, kRow = 5.5;  // millimetres
constexpr int32 kRows = 120;

void head(Druck& job) {
    job.mm(15, 20, u"Offene Posten", 14, tsFett);
    job.mm(15, 190, u"Seite " + toText(job.PageCount()), 9, tsRechtbuendig);
    job.mm(23, 20, u"Nummer", 10, tsFett);
    job.mm(23, 45, u"Kunde", 10, tsFett);
    job.mm(23, 190, u"Betrag", 10, tsFett + tsRechtbuendig);
    job.LinieMM(25, 20, 25, 190, false, bsNone, 10);
}

Text amount(int32 cents) {
    const Text digits = toText(1000 + cents % 100);
    return toText(cents / 100) + u"," + digits.substr(digits.size() - 2);
}

void compose(Druck& job) {
    int32 sum = 0;
    float64 row = kTop;
    head(job);
    for (int32 number = 1; number <= kRows; ++number, row += kRow) {
        if (row > kBottom) {
            job.Ausgabe();
            head(job);
            row = kTop;
        }
        const int32 cents = number * 1371 % 90000;
        job.mm(row, 20, toText(10000 + number), 10, 0);
        job.mm(row, 45, u"Kunde Nummer " + toText(number), 10, 0);
        job.mm(row, 190, amount(cents), 10, tsRechtbuendig);
        sum += cents;
    }
    job.LinieMM(row - kRow + 1.5, 20, row - kRow + 1.5, 190, false, bsNone, 10);
    job.mm(row + 1, 190, amount(sum), 10, tsFett + tsRechtbuendig);
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    const desktop::Desktop desk;
    MessagesTopic messages;
    Druck job(messages);
    job.Device(u"PDF");
    job.DocPath(u".");
    job.JobName(u"list");
    job.Init(72, 1, 1, u"A4");
    compose(job);
    job.Ende();
    std::cout << toUtf8(job.DocFile()) << ", " << job.PageCount() << " pages\n";
    return job.Abbruch() || job.PageCount() < 3 ? 1 : 0;
}

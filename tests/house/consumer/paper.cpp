// Composes a page with the installed desktop.
#include <QGuiApplication>
#include <cstdio>
#include <desktop/Desktop.hpp>
#include <desktop/FormChecks.hpp>
#include <desktop/StatusControl.hpp>
#include <tsRtm/tsRtm.hpp>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    tsRtm::desktop::Desktop desktop;
    const tsRtm::desktop::FormChecks checks;
    tsRtm::MessagesTopic messages;
    tsRtm::Druck job(messages);
    job.Init(72, 1, 1, u"A4");
    std::printf("%d twips\n", job.TextWidth(u"Musterwort"));
    return job.TextWidth(u"Musterwort") > 1000 && checks.status() == tsRtm::validOK ? 0 : 1;
}

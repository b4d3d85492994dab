#pragma once
// What tests of windows share: pictures of them, and how they are told apart.
#include <QApplication>
#include <QDir>
#include <QWidget>

namespace tsRtm::test {

// Leaves a picture of the window in the folder that TSRTM_PICTURES names, if it names one.
inline void keepPicture(QWidget& window, const char* name) {
    const QString folder = qEnvironmentVariable("TSRTM_PICTURES");
    if (folder.isEmpty()) return;
    const QDir place(folder + u'/' + QGuiApplication::platformName());
    place.mkpath(QStringLiteral("."));
    QApplication::processEvents();
    window.grab().save(place.filePath(QString::fromUtf8(name) + QStringLiteral(".png")));
}

}  // namespace tsRtm::test

#pragma once
// What tests of windows share: they stand in front, and pictures of them are kept.
#include <QApplication>
#include <QDir>
#include <QWidget>
#include <QtTest/QTest>

namespace tsRtm::test {

// Waits until keys reach the window. On a screen without window manager it has to ask for that itself, and
// again where it was not there yet; where the screen tells first that it is active, the keys come after that.
inline bool inFront(QWidget& window) {
    return QTest::qWaitFor([&] {
        if (!window.isActiveWindow()) window.activateWindow();
        return QApplication::activeWindow() == &window;
    });
}

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

// Of the program with the desktop.
#include <QApplication>

#include "cli/print/Paper.hpp"
#include "cli/shared/CliError.hpp"
#include "desktop/Desktop.hpp"

namespace tsRtm::cli {
namespace {

class OnDesktop final : public Paper {
 public:
    explicit OnDesktop(bool windows) {
        // Qt's remarks are none for the tool's users.
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        if (!windows) qputenv("QT_QPA_PLATFORM", "offscreen");
        if (windows)
            application_ = std::make_unique<QApplication>(count_, words_);
        else
            application_ = std::make_unique<QGuiApplication>(count_, words_);
        desktop_ = std::make_unique<desktop::Desktop>();
    }

    platform::SystemError savePicture(const platform::PageSource& page, TextView name,
                                      int32 dotsPerInch) override {
        return desktop_->savePicture(page, name, dotsPerInch);
    }

 private:
    char name_[6] = "tsrtm";
    char* words_[2] = {name_, nullptr};
    int count_ = 1;
    std::unique_ptr<QGuiApplication> application_;
    std::unique_ptr<desktop::Desktop> desktop_;
};

}  // namespace

std::unique_ptr<Paper> attachPaper(bool windows) {
    const auto has = [](const char* name) { return !qEnvironmentVariableIsEmpty(name); };
    // Without a screen the desktop would end the program by itself.
    if (windows && !has("DISPLAY") && !has("WAYLAND_DISPLAY") && !has("QT_QPA_PLATFORM"))
        throw CliError("there is no screen for a preview");
    return std::make_unique<OnDesktop>(windows);
}

}  // namespace tsRtm::cli

#include "desktop/Desktop.hpp"

#include <QApplication>
#include <QBuffer>
#include <optional>

#include "desktop/dialogs/DeskInterface.hpp"
#include "desktop/dialogs/GermanTexts.hpp"
#include "desktop/paper/FontMeasure.hpp"
#include "desktop/paper/PdfWriting.hpp"
#include "desktop/paper/RichText.hpp"
#include "desktop/paper/StoredFile.hpp"
#include "desktop/preview/PageView.hpp"
#include "desktop/preview/PreviewWindows.hpp"
#include "desktop/printers/CupsPrinters.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/rtmMain.hpp"
#include "tsRtm/frame/runtime/Lifetime.hpp"

namespace tsRtm::desktop {
namespace {

bool hasWidgets() { return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr; }

// The ground as it is, but for who is asked and told.
class Desk {
 public:
    explicit Desk(platform::Platform& ground)
        : former_(ground), interface_(ground.ui), platform_{ground.files,        ground.clock,
                                                            ground.locale,       ground.settings,
                                                            ground.settingsCare, ground.system,
                                                            ground.user,         ground.screen,
                                                            interface_,          interface_,
                                                            interface_,          ground.texts,
                                                            ground.random,       ground.zones} {
        interface_.onNotice = ground.ui.onNotice;
        interface_.onAbort = ground.ui.onAbort;
        rtmMain::standOn(&platform_);
    }
    ~Desk() {
        former_.ui.onNotice = interface_.onNotice;
        rtmMain::standOn(&former_);
    }
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

 private:
    GermanTexts texts_;
    platform::Platform& former_;
    DeskInterface interface_;
    platform::Platform platform_;
};

}  // namespace

struct Desktop::Parts {
    FontMeasure measure;
    RichText texts;
    PdfWriting pdf;
    CupsPrinters printers;
    PreviewWindows previews;
    platform::Paper paper{measure, texts, pdf, &printers, hasWidgets() ? &previews : nullptr};
    std::optional<Desk> desk;
};

Desktop::Desktop() : parts_(std::make_unique<Parts>()) {
    rtmMain::ensureStarted();
    if (hasWidgets()) parts_->desk.emplace(rtmMain::system());
    rtmMain::usePaper(&parts_->paper);
}

Desktop::~Desktop() { rtmMain::usePaper(nullptr); }

platform::SystemError Desktop::savePicture(const platform::PageSource& page, TextView name,
                                           int32 dotsPerInch) {
    constexpr double inchesPerMetre = 39.37007874;
    const auto facts = page.page();
    const auto pixels = [&](int32 twips) { return static_cast<int>(int64{twips} * dotsPerInch / 1440); };
    QImage image = imageOf(&page, {pixels(facts.width), pixels(facts.height)});
    image.setDotsPerMeterX(qRound(dotsPerInch * inchesPerMetre));
    image.setDotsPerMeterY(image.dotsPerMeterX());
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    if (!image.save(&bytes, "PNG")) return platform::SystemError::notEnoughMemory;
    return storeFile(name, bytes.data(), true);
}

}  // namespace tsRtm::desktop

#pragma once
#include <QPointer>
#include <QWidget>

#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/validation/iValidControl.hpp"

namespace tsRtm::desktop {

// Between pixels of windows and the twips of validation.
inline int32 twipsX(int pixels) { return pixels * rtmMain::state().screen.twipsPerPixelX; }
inline int32 twipsY(int pixels) { return pixels * rtmMain::state().screen.twipsPerPixelY; }
inline int pixelsX(int32 twips) { return twips / rtmMain::state().screen.twipsPerPixelX; }
inline int pixelsY(int32 twips) { return twips / rtmMain::state().screen.twipsPerPixelY; }

// The pictures beside one field, of which there is one at most. What its tool tip says is told with the
// field, too, to those who cannot see it or have no mouse.
class StatusPictures final : public iControlList {
 public:
    explicit StatusPictures(QWidget& field) : field_(&field) {}
    std::shared_ptr<iStatusPicture> AddPicture(TextView Key, int32 Width, int32 Height,
                                               const std::shared_ptr<Object>& Container) override;
    void Remove(TextView Key) override;

 private:
    QPointer<QWidget> field_, picture_;
};

}  // namespace tsRtm::desktop

#include "desktop/dialogs/Captions.hpp"

#include "desktop/paper/Qt.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/platform/DialogBoxes.hpp"

namespace tsRtm::desktop {

QString caption(eStringIDs which) { return qt(MessagesTopic().StandardText(which)); }

QString captionOfAnswer(int32 answer) {
    constexpr std::pair<int32, eStringIDs> captions[] = {
        {1, sidOK},  {2, sidCancel}, {3, sidAbort},  {4, sidRetry},     {5, sidIgnore},
        {6, sidYes}, {7, sidNo},     {10, sidAgain}, {11, sidContinue},
    };
    for (const auto& [number, which] : captions)
        if (number == answer) return caption(which);
    return qt(platform::usualCaption(answer));
}

}  // namespace tsRtm::desktop

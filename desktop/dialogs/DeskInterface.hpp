#pragma once
#include <memory>

#include "tsRtm/platform/Choices.hpp"
#include "tsRtm/platform/Dialogs.hpp"
#include "tsRtm/platform/UserInterface.hpp"

class QWidget;
class QLabel;

namespace tsRtm::desktop {

// The person at a desktop: dialogs, the message window, events that wait. What the system tells is heard by
// the ground's own interface, which outlives this one.
class DeskInterface final : public platform::UserInterface,
                            public platform::Dialogs,
                            public platform::Choices {
 public:
    explicit DeskInterface(platform::UserInterface& ground);
    ~DeskInterface() override;

    void showMessageWindow(TextView message) override;
    void hideMessageWindow() override;
    // Stands in the message line of the application, which asks for it itself.
    void status(TextView) override {}
    void processEvents() override;
    void beep() override;
    bool hearsNotices() override { return ground_.hearsNotices(); }

    bool attended() override { return true; }
    int32 show(const platform::MessageBox& box) override;
    std::optional<platform::DialogAnswer> showTaskDialog(const platform::TaskDialog& dialog,
                                                         const platform::DialogListener& tell) override;
    std::optional<Text> ask(TextView prompt, TextView title, TextView preset) override;
    int32 choose(const platform::ChoiceList& list) override;
    void openLink(TextView address) override;
    int32 comCtlVersion() override { return 610; }

 private:
    platform::UserInterface& ground_;
    std::unique_ptr<QWidget> window_;
    QLabel* text_ = nullptr;
};

}  // namespace tsRtm::desktop

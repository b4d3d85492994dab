#pragma once
// A form of a toolkit that is none: controls whose properties are fields, and pictures that record what
// happens to them.
#include <map>

#include "tsRtm/types/Failure.hpp"
#include "tsRtm/validation/iBankRegister.hpp"
#include "tsRtm/validation/iValidChecker.hpp"
#include "tsRtm/validation/iValidControl.hpp"

namespace tsRtm::test {

class TestControl final : public iValidControl {
 public:
    explicit TestControl(tsRtm::Text named) : name(std::move(named)) {}

    tsRtm::Text Name() const override { return name; }
    std::optional<int32> Index() const override { return index; }
    eControlKind Kind() const override { return kind; }
    tsRtm::Text TypeName() const override { return typeName; }
    std::optional<tsRtm::Text> Text() const override {
        if (refuses) raise(438, u"TestControl", u"");
        return text;
    }
    ControlPlace Place() const override { return place; }
    std::shared_ptr<Object> Container() const override { return container; }
    std::optional<bool> Visible() const override { return visible; }
    std::optional<bool> Enabled() const override { return enabled; }
    std::optional<bool> Locked() const override { return locked; }
    std::optional<int32> MaxLength() const override { return maxLength; }
    std::optional<int32> Decimals() const override { return decimals; }
    void SetFocus() override { ++focused; }
    Subscription OnChange(const std::function<void()>& listener) override {
        return changed.connect(listener);
    }

    // As a user does it: the event comes with the text.
    void type(TextView value) {
        text = value;
        changed();
    }

    tsRtm::Text name;
    std::optional<int32> index;
    eControlKind kind = ckTextBox;
    tsRtm::Text typeName;
    std::optional<tsRtm::Text> text = tsRtm::Text();
    bool refuses = false;  // its text cannot be read
    ControlPlace place{1000, 500, 2000, 300};
    std::shared_ptr<Object> container;
    std::optional<bool> visible, enabled, locked;
    std::optional<int32> maxLength, decimals;
    int32 focused = 0;
    Event<> changed;
};

class TestPicture final : public iStatusPicture {
 public:
    int32 Width() const override { return width; }
    int32 Height() const override { return height; }
    void Move(int32 toLeft, int32 toTop) override {
        left = toLeft;
        top = toTop;
    }
    void Visible(bool value) override { visible = value; }
    void ToolTipText(TextView value) override { toolTip = value; }
    void Load(int32 value) override { resource = value; }
    Subscription OnClick(const std::function<void()>& listener) override { return clicked.connect(listener); }

    int32 width = 0, height = 0, left = 0, top = 0, resource = 0;
    bool visible = false;
    Text toolTip;
    std::shared_ptr<Object> container;
    Event<> clicked;
};

class TestControls final : public iControlList {
 public:
    std::shared_ptr<iStatusPicture> AddPicture(TextView Key, int32 Width, int32 Height,
                                               const std::shared_ptr<Object>& Container) override {
        if (refuses || pictures.contains(Text(Key))) raise(457, u"TestControls", u"");
        auto picture = std::make_shared<TestPicture>();
        picture->width = Width;
        picture->height = Height;
        picture->container = Container;
        return pictures[Text(Key)] = picture;
    }
    void Remove(TextView Key) override {
        if (insideEvent) raise(365, u"TestControls", u"");
        pictures.erase(Text(Key));
    }

    std::map<Text, std::shared_ptr<TestPicture>> pictures;
    bool insideEvent = false;
    bool refuses = false;  // takes no picture
};

class TestForm final : public iValidForm {
 public:
    std::shared_ptr<iControlList> Controls() const override { return controls; }
    std::shared_ptr<TestControls> controls = std::make_shared<TestControls>();
};

// Grades what it is told to, and counts how it is used.
struct OwnChecker final : iValidChecker {
    void Dispose() override { ++disposed; }
    eValidResult Check(const std::shared_ptr<iValidControl>&, TextView value) override {
        ++checked;
        if (throws) raise(5, u"OwnChecker", u"");
        seen = value;
        if (const auto call = onCheck) call();  // which may take itself away
        return grade;
    }
    Text ErrorMsg() const override { return u"kurz " + seen; }
    Text Msg() const override { return longText; }

    eValidResult grade = validOK;
    Text seen, longText;
    bool throws = false;
    int32 checked = 0, disposed = 0;
    std::function<void()> onCheck;
};

// Knows the banks it is told.
class TestBanks final : public iBankRegister {
 public:
    bool IsOpen() override { return open; }
    Text Name(TextView BLZorBIC) override {
        asked.emplace_back(BLZorBIC);
        return known.contains(Text(BLZorBIC)) ? u"Bank" : u"";
    }
    bool HasRecord(TextView BICorBLZ) override { return !Name(BICorBLZ).empty(); }

    bool open = true;
    std::map<Text, bool> known;
    std::vector<Text> asked;
};

}  // namespace tsRtm::test

// Validators on the controls of a form: what is heard, what is shown, and what a form asks for at its end.
#include <set>

#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tests/support/ValidationForm.hpp"
#include "tsRtm/types/DialogConstants.hpp"
#include "tsRtm/validation/clsValidBanking.hpp"
#include "tsRtm/validation/clsValidDate.hpp"
#include "tsRtm/validation/clsValidLike.hpp"
#include "tsRtm/validation/clsValidValue.hpp"
#include "tsRtm/validation/clsValidationHelper.hpp"

namespace tsRtm::test {
namespace {

class Validator : public ::testing::Test {
 protected:
    std::shared_ptr<TestPicture> picture(TextView key) const {
        const auto found = form->controls->pictures.find(Text(key));
        return found == form->controls->pictures.end() ? nullptr : found->second;
    }

    StartedLibrary library;
    std::shared_ptr<TestForm> form = std::make_shared<TestForm>();
    std::shared_ptr<TestControl> amount = std::make_shared<TestControl>(u"txtBetrag");
    clsValidationHelper checks;
};

TEST_F(Validator, EachChangeIsGradedAndShown) {
    amount->container = std::make_shared<TestForm>();
    const auto validator = checks.Add(form, amount, Numeric, voRequired, {}, {}, u"/Min:5");
    ASSERT_TRUE(validator);
    EXPECT_EQ(validator->Status(), validWarning);
    const auto shown = picture(u"ValtxtBetrag");
    ASSERT_TRUE(shown);
    EXPECT_TOLD("Es ist eine Eingabe notwendig|16004|240", shown->toolTip, shown->resource,
                shown->width);  // 16 pixels
    EXPECT_EQ(shown->container, amount->container);
    amount->type(u"3");
    EXPECT_EQ(shown->toolTip, u"Nur Werte von 5") << "the same grade, another message";
    amount->type(u"7");
    EXPECT_EQ(validator->Status(), validOK);
    EXPECT_FALSE(picture(u"ValtxtBetrag"));
    form->controls->insideEvent = true;
    amount->type(u"3");
    const auto again = picture(u"ValtxtBetrag");
    amount->type(u"7");  // it may not go now
    EXPECT_FALSE(again->visible);
    amount->type(u"4");
    EXPECT_TRUE(again->visible);
    EXPECT_EQ(picture(u"ValtxtBetrag"), again);
    amount->refuses = true;
    amount->type(u"8");
    EXPECT_EQ(again->toolTip, u"Es ist eine Eingabe notwendig") << "what cannot be read is empty";
}

TEST_F(Validator, ThePictureStandsWhereItIsTold) {
    const auto validator = checks.Add(form, amount, Numeric, voRequired);
    const auto shown = picture(u"ValtxtBetrag");
    const std::tuple<eValidatorAlignment, int32, int32> cases[] = {
        {TopLeft, 700, 500},      {TopRight, 3060, 500},  {MiddleLeft, 700, 530},
        {MiddleRight, 3060, 530}, {BottomLeft, 700, 560}, {BottomRight, 3060, 560}};
    EXPECT_EQ(shown->left, 3060);
    for (const auto& [alignment, left, top] : cases) {
        validator->Alignment(alignment);
        checks.Resize();
        EXPECT_EQ(std::pair(shown->left, shown->top), std::pair(left, top)) << alignment;
    }
    EXPECT_TRUE(shown->visible);
    for (auto* property : {&amount->visible, &amount->enabled, &amount->locked}) {
        *property = property == &amount->locked;
        validator->Refresh();
        EXPECT_FALSE(shown->visible);
        property->reset();
    }
    EXPECT_EQ(checks.Add(form, std::make_shared<TestControl>(u"txtDatum"), Datum)->Padding(), 240);
}

TEST_F(Validator, AClickExplains) {
    auto own = std::make_shared<OwnChecker>();
    checks.Add(form, amount, Numeric, 0, {}, {}, {}, own);
    library.ground.ui.defaultAnswer = 1;
    std::set<BytesView> pictures;
    const std::tuple<eValidResult, int32, int32> cases[] = {{validInfo, 16005, dlgInformation},
                                                            {validQuestion, 16003, dlgQuestion},
                                                            {validWarning, 16004, dlgExclamation},
                                                            {validError, 16002, dlgCritical}};
    for (const auto& [grade, resource, icon] : cases) {
        own->grade = grade;
        own->longText = grade == validInfo ? u"" : u"lang @ breit";
        amount->type(u"x");
        EXPECT_EQ(picture(u"ValtxtBetrag")->resource, resource);
        pictures.insert(StatusPictureSvg(resource));
        picture(u"ValtxtBetrag")->clicked();
        const auto& box = library.ground.ui.boxes.back();
        EXPECT_EQ(std::pair(box.title + u"|" + box.body, box.buttons),
                  std::pair(Text(u"Validator|") + (grade == validInfo ? u"kurz x" : u"lang @ breit"), icon));
    }
    EXPECT_EQ(amount->focused, 4);
    EXPECT_TRUE(pictures.size() == 4 && !pictures.contains({})) << "each grade has its own";
}

TEST_F(Validator, OnlySomeControlsAreHeard) {
    const auto heard = [&](eControlKind kind, TextView typeName, std::optional<int32> index) {
        auto control = std::make_shared<TestControl>(u"Feld");
        std::tie(control->kind, control->typeName, control->index) = std::tuple(kind, Text(typeName), index);
        auto own = std::make_shared<OwnChecker>();
        checks.Add(form, control, Numeric, 0, {}, {}, {}, own);
        control->type(u"neu");
        const bool byItself = own->seen == u"neu";
        checks.Check(control);
        EXPECT_EQ(own->seen, u"neu");
        return byItself;
    };
    using Row = std::tuple<eControlKind, TextView, std::optional<int32>, bool>;
    for (const auto& [kind, typeName, index, byItself] :
         {Row{ckTextBox, u"", {}, true}, Row{ckComboBox, u"", {}, true}, Row{ckOther, u"", {}, false},
          Row{ckOther, u"RichTextBox", {}, true}, Row{ckTextBox, u"", 0, false},
          Row{ckTextBox, u"", -1, true}})
        EXPECT_EQ(heard(kind, typeName, index), byItself) << kind << toUtf8(typeName);
}

TEST_F(Validator, TheFormAsksForTheWorstGrade) {
    auto iban = std::make_shared<TestControl>(u"txtIBAN"), other = std::make_shared<TestControl>(u"txtIBAN");
    other->index = 3;
    checks.Add(form, amount, Numeric);
    checks.Add(form, iban, IBAN, voError);
    checks.Add(form, other, IBAN);
    EXPECT_EQ(checks.Status(), validOK);
    iban->type(u"falsch");
    EXPECT_TOLD("4|0|4|0|0", checks.Status(), checks.Status(amount), checks.Status(iban),
                checks.Status(other), checks.Status(std::make_shared<TestControl>(u"unbekannt")));
    checks.Clear();
    EXPECT_TRUE(form->controls->pictures.empty());
    EXPECT_EQ(checks.Status(), validOK);
    iban->type(u"falsch");
    EXPECT_TRUE(form->controls->pictures.empty()) << "nothing is heard any more";
}

TEST_F(Validator, ASecondOneTakesThePlaceOfTheFirst) {
    auto first = std::make_shared<OwnChecker>(), second = std::make_shared<OwnChecker>();
    first->grade = second->grade = validError;
    checks.Add(form, amount, Numeric, 0, {}, {}, {}, first);
    EXPECT_FALSE(checks.Add(form, amount, static_cast<eValidatorType>(15)));
    EXPECT_FALSE(checks.Add(nullptr, amount, Numeric));
    EXPECT_FALSE(checks.Add(form, nullptr, Numeric));
    EXPECT_EQ(first->disposed, 0);
    EXPECT_TRUE(checks.Add(form->controls, amount, Numeric, 0, {}, {}, {}, second));
    EXPECT_TOLD("1|kurz ", first->disposed, picture(u"ValtxtBetrag")->toolTip);
    amount->type(u"neu");
    EXPECT_TOLD("|neu", first->seen, second->seen);
}

TEST_F(Validator, NothingThatThrowsReachesTheForm) {
    auto own = std::make_shared<OwnChecker>();
    own->throws = true;
    form->controls->refuses = true;
    const auto validator = checks.Add(form, amount, Numeric, 0, {}, {}, {}, own);
    EXPECT_EQ(validator->Status(), validError);
    own->throws = false;
    own->grade = validWarning;
    own->onCheck = [this] { checks.Clear(); };  // in the middle of its own check
    amount->type(u"x");
    EXPECT_EQ(own->disposed, 1);
    EXPECT_EQ(checks.Status(), validOK);
}

TEST_F(Validator, TypesBringTheirModesAndTexts) {
    const std::tuple<eValidatorType, int32, TextView, TextView, TextView, TextView> cases[] = {
        {IsLike, 0, u"/Pattern:^[0-9]+$", u"12", u"x",
         u"Die Eingabe entspricht nicht der Vorgabe für dieses Feld."},
        {PLZundOrt, 0, u"", u"12345 Ort", u"12345", u"Keine gültige Ortsangabe"},
        {PLZundOrt, 0, u"", u"D-12345 Ort", u"", u""},
        {PLZundOrt, 0, u"", u"ABC 123 Ort", u"", u""},
        {Datum, 0, u"/Min:D-7 /Max:D+7", u"15062024", u"01062024",
         u"Das Datum liegt außerhalb des zugelassenen Bereichs"},
        {Datum, 0, u"/Max:D+7", u"15062024", u"01072024",
         u"Das Datum liegt außerhalb des zugelassenen Bereichs"},
        {BLZ, 0, u"", u"37040044", u"DEUTDEFF", u"Sie haben keine gültige Bankleitzahl eingegeben."},
        {BLZBIC, 0, u"", u"DEUTDEFF", u"DEUT", u"Sie haben keinen gültigen BIC eingegeben."},
        {IBAN, 0, u"", u"DE68210501700012345678", u"1", u"Sie haben keine gültige IBAN eingegeben."},
        {Konto, 0, u"", u"1234567890", u"x", u"Sie haben keine gültige Kontonummer eingegeben."},
        {KontoOrIBAN, 0, u"", u"1", u"12345678901",
         u"Sie haben keine gültige Kontonummer bzw. IBAN eingegeben."},
        {BIC, 0, u"", u"DEUTDEFFXXX", u"1", u"Sie haben keinen gültigen BIC eingegeben."},
        {LikeEMail, 3, u"", u"a@bc.de", u"govello-1-1", u"Keine gültige eMail-Adresse"},
        {LikeEGVP, 0, u"", u"govello-1-1", u"a@bc.de", u"Keine gültige EGVP-Adresse"},
        {LikeEMailOrEGVP, 0, u"", u"govello-1-1", u"x", u"Keine gültige E-Mail- oder EGVP-Adresse"},
        {DTAUSText, 0, u"", u"A", u"AB", u"Eingabe enthält ungültige Zeichen"},  // one character only
    };
    for (const auto& [type, options, params, good, bad, message] : cases) {
        const auto validator = checks.Add(form, amount, type, options, {}, {}, params);
        ASSERT_TRUE(validator) << type;
        amount->type(bad);
        EXPECT_EQ(validator->Status(), bad.empty() ? validOK : validWarning) << type;
        if (!bad.empty()) {
            EXPECT_EQ(toUtf8(validator->Checker()->ErrorMsg()), toUtf8(message)) << type;
        }
        amount->type(good);
        EXPECT_EQ(validator->Status(), validOK) << type;
    }
    const auto open = std::dynamic_pointer_cast<clsValidValue>(
        checks.Add(form, amount, Numeric, 0, u"E", u"D", u"/Min /Max:1,5")->Checker());
    EXPECT_TOLD("0|1.5|E|D", open->Minimum(), open->Maximum(), open->ErrorMsg(), open->Msg());
    const auto date = std::dynamic_pointer_cast<clsValidDate>(
        checks.Add(form, amount, Datum, 0, {}, {}, u"/Min:")->Checker());
    EXPECT_EQ(date->Minimum(), u"");
}

}  // namespace
}  // namespace tsRtm::test

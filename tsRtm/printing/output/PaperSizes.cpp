#include "tsRtm/printing/output/PaperSizes.hpp"

#include <cstdlib>

#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/printing/pages/Scale.hpp"

namespace tsRtm {
namespace {

using platform::PaperForm;
using platform::SystemError;

constexpr TextView kTitle = u"Formularverwaltung";

int32 find(platform::PaperForms& forms, const PaperForm& wanted, int32 tolerance) {
    int32 number = 0;
    for (const auto& form : forms.all()) {
        ++number;
        if (std::abs(form.width - wanted.width) <= tolerance &&
            std::abs(form.height - wanted.height) <= tolerance)
            return number;
    }
    return 0;
}

Text refusal(SystemError error, TextView device, const Text& name, MessagesTopic& messages) {
    if (error == SystemError::accessDenied)
        return u"Sie haben nicht die nötigen Rechte um ein neues Formular für den Drucker " + Text(device) +
               u" zu definieren.\rMelden Sie sich evtl. als Benutzer mit Administrator-Rechten an.";
    if (error == SystemError::fileExists)
        return u"Das Formular " + name +
               u" existiert schon.\rBitte setzen Sie sich mit der Hotline in Verbindung.";
    const auto number = static_cast<int32>(error);
    return u"Fehler " + toText(number) + u": " + messages.SystemMsg(number) +
           u".\rBitte setzen Sie sich mit der Hotline in Verbindung";
}

}  // namespace

int32 formOf(platform::Printer& printer, TextView device, TextView formName, int32 width, int32 height,
             int32 pixelsPerInch, MessagesTopic& messages) {
    const auto thousandths = [](int32 twips) { return roundToInt32(twips * 1000.0 / kTwipsPerMM); };
    const int32 tolerance = roundToInt32(25.4 / std::max(pixelsPerInch, 1) * 500);
    PaperForm form{formName.empty() ? u"TS" : Text(formName), thousandths(width), thousandths(height)};
    auto& forms = printer.forms();
    if (const int32 number = find(forms, form, tolerance)) return number;
    auto error = forms.add(form);
    if (error == SystemError::fileExists) {
        form.name += u" " + toText(form.width / 1000) + u" x " + toText(form.height / 1000) + u" mm";
        error = forms.add(form);
    }
    if (platform::failed(error)) {
        messages.TSMsgBox(refusal(error, device, form.name, messages), dlgExclamation, Variant(kTitle));
        return 0;
    }
    return find(forms, form, tolerance);
}

}  // namespace tsRtm

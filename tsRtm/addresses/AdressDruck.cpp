// An address on paper.
#include "tsRtm/addresses/Adresse.hpp"
#include "tsRtm/addresses/lines/PostalLine.hpp"
#include "tsRtm/frame/OptionsTopic.hpp"
#include "tsRtm/frame/clsTSOptions.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/printing/Druck.hpp"

namespace tsRtm {
namespace {

// The window of the envelope, millimetres.
constexpr float64 kWidth = 85, kHeight = 40, kMargin = 3, kTextWidth = 82, kLastRow = 34;
constexpr float64 kStroke = 3;
constexpr int32 kThin = 10, kThick = 50;  // twips
constexpr int32 kSmall = 7, kHint = 8, kSmallest = 10;

float64 lineHeight(Druck& job, int32 size) {
    job.FontSize(size);
    return job.TextHeight(u"A") / platform::kTwipsPerMM;
}

void drawMarks(Druck& job, float64 top, float64 left, eEckTyp kind) {
    const auto line = [&](float64 y1, float64 x1, float64 y2, float64 x2, int32 thickness) {
        job.LinieMM(y1, x1, y2, x2, false, bsNone, thickness);
    };
    if (kind == eGanzerRahmen) {
        job.LinieMM(top, left, top + kHeight, left + kWidth, true, bsNone, kThin);
        return;
    }
    for (const bool lower : {false, true})
        for (const bool right : {false, true}) {
            const float64 y = top + (lower ? kHeight : 0), x = left + (right ? kWidth : 0);
            const float64 half = kStroke / 2;
            if (kind == eStrichEcken) {
                line(y, x, y, x + (right ? -kStroke : kStroke), kThin);
                line(y, x, y + (lower ? -kStroke : kStroke), x, kThin);
            } else if (kind == eKreuz) {
                line(y, x - half, y, x + half, kThin);
                line(y - half, x, y + half, x, kThin);
            } else if (kind == ePunktEcken) {
                line(y, x, y, x, kThick);
            }
        }
}

bool hintIsWanted(TextView hint) {
    if (hint.empty() || upper(hint) != u"SCHULDNER") return !hint.empty();
    return !OptionsTopic()
                .RegLesen(HKEY_CURRENT_USER, rtmMain::state().appProgID, u"PrintAdrSchuldner")
                .starts_with(u'0');
}

Text joined(const std::vector<Text>& parts, TextView sign) {
    Text text;
    for (const auto& part : parts) text.append(text.empty() ? TextView() : sign).append(part);
    return text;
}

}  // namespace

float64 Adresse::DruckenKompakt(Druck* Drucker, float64 Zeile, float64 Spalte, int32 Attr,
                                int32 SchriftGroesse, float64 MaxBreite, bool MitAktenzeichen) const {
    if (!Drucker) return 0;
    std::vector<Text> parts{VollName()};
    for (const Text& part : {name2_, strasse_, postalLine::split(plzOrt_).rest, Land()})
        if (!part.empty()) parts.push_back(part);
    if (MitAktenzeichen && !az_.empty()) parts.push_back(u"AZ: " + az_);
    const float64 height = lineHeight(*Drucker, SchriftGroesse);
    float64 row = Zeile;
    Drucker->SetzTextMM(joined(parts, u", "), row, Spalte, MaxBreite == 0 ? kWidth : MaxBreite,
                        SchriftGroesse, Attr, height);
    return row - Zeile - height;
}

void Adresse::Drucken(Druck* Drucker, float64 Zeile, float64 Spalte, int32 SchriftGroesse,
                      TextView VorausVfg1, TextView VorausVfg2, const Adresse* Absender, eEckTyp EckenTyp,
                      TextView HinweisLinks) const {
    if (!Drucker) return;
    Druck& job = *Drucker;
    if (EckenTyp > eKeineEcken) drawMarks(job, Zeile, Spalte, EckenTyp);
    float64 row = Zeile + kMargin;
    const float64 column = Spalte + kMargin;
    const float64 smallHeight = lineHeight(job, kSmall);
    const bool advance = !VorausVfg1.empty() || !VorausVfg2.empty();
    if (Absender) {
        job.mm(row, column, Absender->Adr1Zeile(), kSmall, tsUnterstrichen);
        row += smallHeight + 2 + (advance ? smallHeight : 0);
    }
    for (const TextView note : {VorausVfg1, VorausVfg2})
        if (!note.empty()) {
            job.mm(row, column, note, kSmall);
            row += 2.5;
        }
    if (hintIsWanted(HinweisLinks)) {
        job.mm(Zeile + kHeight / 2, Spalte - kMargin, HinweisLinks, kHint, tsFett + tsZentriert, 90);
        job.mm(row, column, u"     ", kHint, 0, 0);
    }

    std::vector<Text> lines{(titel_.empty() ? Text() : titel_ + u" ") + VollName()};
    if (!rtmMain::state().adresseMitAnrede) clsTSOptions().AdresseMitAnrede();
    if (*rtmMain::state().adresseMitAnrede && !adrAnrede_.empty()) lines[0] = adrAnrede_ + u" " + lines[0];
    addNamesAndStreet(lines);
    for (const Text& line : {postalLine::split(plzOrt_).rest, Land()})
        if (!line.empty()) lines.push_back(line);
    const Text block = joined(lines, u"\r");

    for (int32 size = SchriftGroesse;; --size) {
        const float64 height = lineHeight(job, size);
        float64 end = row;
        job.SetzTextMM(block, end, column, kTextWidth, size, 0, height, true, true);
        if (end > Zeile + kLastRow && size > kSmallest) continue;
        job.SetzTextMM(block, row, column, kTextWidth, size, 0, height);
        return;
    }
}

}  // namespace tsRtm

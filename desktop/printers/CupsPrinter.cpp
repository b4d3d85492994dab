#include "desktop/printers/CupsPrinter.hpp"

#include <algorithm>
#include <cmath>

#include "desktop/printers/PaperNumbers.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"

namespace tsRtm::desktop {
namespace {

using platform::PaperForm;
using platform::SystemError;
using Feature = platform::PrinterFeature;

constexpr int32 kOneSided = 1, kShortEdge = 2, kLongEdge = 3;
constexpr int32 kAutomaticBin = 7;
constexpr int32 kOwnBins = 256;  // numbers from here on are the printer's own

struct KnownBin {
    const char* keyword;
    int32 number;
    TextView name;
};
// Of bins with one number the first that the printer has gets it.
constexpr KnownBin kBins[] = {
    {"top", 1, u"Oberes Fach"},         {"tray-1", 1, u"Fach 1"},
    {"main", 1, u"Hauptfach"},          {"bottom", 2, u"Unteres Fach"},
    {"tray-2", 2, u"Fach 2"},           {"middle", 3, u"Mittleres Fach"},
    {"center", 3, u"Mittleres Fach"},   {"tray-3", 3, u"Fach 3"},
    {"manual", 4, u"Manueller Einzug"}, {"by-pass-tray", 4, u"Mehrzweckfach"},
    {"envelope", 5, u"Umschlagfach"},   {"auto", kAutomaticBin, u"Automatische Wahl"},
    {"photo", 9, u"Fotofach"},          {"large-capacity", 11, u"Großraumfach"},
};
const KnownBin* knownBin(std::string_view keyword) {
    const auto* found = std::find_if(std::begin(kBins), std::end(kBins),
                                     [&](const KnownBin& bin) { return keyword == bin.keyword; });
    return found == std::end(kBins) ? nullptr : found;
}

// Grades of quality, below 0: draft, low, medium, high. Above 0: dots an inch.
constexpr int32 kMediumQuality = -3;
const char* gradeOf(int32 quality) noexcept {
    return quality == -4 ? "5" : quality == kMediumQuality ? "4" : quality >= -2 ? "3" : nullptr;
}
std::string resolutionOf(int32 dots) { return std::to_string(dots) + "dpi"; }

const char* sidesOf(int32 duplex) noexcept {
    return duplex == kShortEdge  ? CUPS_SIDES_TWO_SIDED_LANDSCAPE
           : duplex == kLongEdge ? CUPS_SIDES_TWO_SIDED_PORTRAIT
                                 : CUPS_SIDES_ONE_SIDED;
}

constexpr int32 hundredths(int32 thousandths) noexcept { return (thousandths + 5) / 10; }
int32 twips(int32 thousandths) { return static_cast<int32>(std::lround(thousandths * 1440.0 / 25400.0)); }

}  // namespace

CupsPrinter::CupsPrinter(std::unique_ptr<Queue> queue) : queue_(std::move(queue)) {
    readBins();
    readForms();
    now_ = standard();
}

void CupsPrinter::readBins() {
    int32 place = 0;
    for (auto& keyword : queue_->values("media-source")) {
        const auto* known = knownBin(keyword);
        const bool free = known && !bin(known->number);
        bins_.push_back({free ? known->number : kOwnBins + place, std::move(keyword)});
        ++place;
    }
}

void CupsPrinter::readForms() {
    papers_ = queue_->papers();
    forms_ = usualForms();
    for (const auto& paper : papers_) {
        const auto same = [&](const PaperForm& form) {
            return paper.holds(hundredths(form.width), hundredths(form.height));
        };
        if (!paper.fixed() || std::any_of(forms_.begin(), forms_.end(), same)) continue;
        const auto* media = pwgMediaForSize(paper.leastWidth, paper.leastHeight);
        const Text name = media ? fromUtf8(media->ppd ? media->ppd : media->pwg) : Text();
        forms_.push_back({name, paper.leastWidth * 10, paper.leastHeight * 10});
    }
}

CupsPrinter::Settings CupsPrinter::standard() const {
    Settings settings;
    const auto sides = queue_->standard("sides");
    for (const int32 duplex : {kShortEdge, kLongEdge})
        if (sides == sidesOf(duplex)) settings.duplex = duplex;
    const auto source = queue_->standardBin();
    for (const auto& bin : bins_)
        if (bin.keyword == source) settings.bin = bin.number;
    if (settings.bin == 0 && !bins_.empty())
        settings.bin = bin(kAutomaticBin) ? kAutomaticBin : bins_.front().number;
    settings.quality = queue_->supports("print-quality") ? kMediumQuality : 0;
    const auto paper = queue_->standardPaper();
    for (std::size_t i = 0; i < forms_.size() && settings.form == 0; ++i)
        if (paper.holds(hundredths(forms_[i].width), hundredths(forms_[i].height)))
            settings.form = static_cast<int32>(i) + 1;
    return settings;
}

const CupsPrinter::Bin* CupsPrinter::bin(int32 number) const {
    const auto found =
        std::find_if(bins_.begin(), bins_.end(), [&](const Bin& bin) { return bin.number == number; });
    return found == bins_.end() ? nullptr : &*found;
}

bool CupsPrinter::has(const PaperForm& form) const {
    return form.width > 0 && std::any_of(papers_.begin(), papers_.end(), [&](const PaperRange& paper) {
               return paper.holds(hundredths(form.width), hundredths(form.height));
           });
}

int32 CupsPrinter::value(Feature feature) {
    const auto& form = forms_[static_cast<std::size_t>(std::max(now_.form, 1)) - 1];
    switch (feature) {
        case Feature::copies:
            return queue_->supports("copies") ? now_.copies : 0;
        case Feature::paperBin:
            return now_.bin;
        case Feature::duplex:
            return queue_->supports("sides") ? now_.duplex : 0;
        case Feature::quality:
            return now_.quality;
        case Feature::paperSize:
            return now_.form;
        case Feature::width:
            return twips(form.width);
        case Feature::height:
            return twips(form.height);
        case Feature::orientation:
            return now_.orientation;
    }
    return 0;
}

bool CupsPrinter::qualityKnown(int32 value) const {
    if (value > 0) return queue_->supports("printer-resolution", resolutionOf(value).c_str());
    const char* grade = gradeOf(value);
    return grade && queue_->supports("print-quality", grade);
}

bool CupsPrinter::set(Feature feature, int32 value) {
    const auto take = [value](int32& place, bool known) {
        if (known) place = value;
        return known;
    };
    switch (feature) {
        case Feature::copies:
            return take(now_.copies, value > 0 && queue_->supports("copies", std::to_string(value).c_str()));
        case Feature::paperBin:
            return take(now_.bin, bin(value) != nullptr);
        case Feature::duplex:
            return take(now_.duplex, value >= kOneSided && value <= kLongEdge &&
                                         queue_->supports("sides", sidesOf(value)));
        case Feature::quality:
            return take(now_.quality, qualityKnown(value));
        case Feature::orientation:
            return take(now_.orientation, value == 1 || value == 2);
        case Feature::paperSize: {
            if (value < 1 || static_cast<std::size_t>(value) > forms_.size()) return false;
            const auto& form = forms_[static_cast<std::size_t>(value) - 1];
            // A page keeps its size on a printer without such paper, which makes it fit.
            take(now_.form, form.width > 0);
            return has(form);
        }
        case Feature::width:
        case Feature::height:
            break;  // by a form
    }
    return false;
}

platform::PageDevice* CupsPrinter::page(TextView document) {
    if (parts_.empty() && !queue_->answers()) return nullptr;
    document_ = document;
    auto settings = now_;
    settings.orientation = 0;  // each page stands in its own way
    if (parts_.empty() || !(parts_.back().settings == settings)) {
        platform::PdfSettings properties;
        properties.title = document_;
        parts_.push_back({settings, std::make_unique<PdfPages>(properties)});
    }
    int32 width = value(Feature::width), height = value(Feature::height);
    if (now_.orientation == 2) std::swap(width, height);
    return &parts_.back().pages->page(width, height);
}

std::vector<Option> CupsPrinter::options(const Settings& settings) const {
    std::vector<Option> all;
    if (queue_->supports("copies")) all.push_back({"copies", std::to_string(settings.copies)});
    if (queue_->supports("sides")) all.push_back({"sides", sidesOf(settings.duplex)});
    if (settings.quality > 0)
        all.push_back({"printer-resolution", resolutionOf(settings.quality)});
    else if (settings.quality < 0)
        all.push_back({"print-quality", gradeOf(settings.quality)});
    std::string paper;
    const auto& form = forms_[static_cast<std::size_t>(std::max(settings.form, 1)) - 1];
    if (has(form))
        paper += "media-size={x-dimension=" + std::to_string(hundredths(form.width)) +
                 " y-dimension=" + std::to_string(hundredths(form.height)) + "}";
    if (const auto* chosen = bin(settings.bin))
        paper += (paper.empty() ? "media-source=" : " media-source=") + chosen->keyword;
    if (!paper.empty()) all.push_back({"media-col", "{" + paper + "}"});
    return all;
}

SystemError CupsPrinter::endDocument() {
    const auto parts = std::exchange(parts_, {});
    now_ = standard();
    try {
        for (const auto& part : parts) {
            const auto error = queue_->print(toUtf8(document_), options(part.settings), part.pages->finish());
            if (platform::failed(error)) return error;
        }
    } catch (const std::exception& failure) {
        rtmMain::DebugLog(u"PDF: " + fromUtf8(failure.what()));
        return SystemError::writeFault;
    }
    return SystemError::none;
}

void CupsPrinter::killDocument() {
    parts_.clear();
    now_ = standard();
}

std::vector<platform::PaperBin> CupsPrinter::bins() {
    std::vector<platform::PaperBin> all;
    for (const auto& bin : bins_) {
        const auto* known = knownBin(bin.keyword);
        all.push_back(
            {bin.number, known ? Text(known->name) : fromUtf8(queue_->caption("media-source", bin.keyword))});
    }
    return all;
}

SystemError CupsPrinter::add(const PaperForm& form) {
    if (form.width <= 0 || form.height <= 0) return SystemError::invalidParameter;
    for (const auto& known : forms_)
        if (known.name == form.name) return SystemError::fileExists;
    forms_.push_back(form);
    return SystemError::none;
}

}  // namespace tsRtm::desktop

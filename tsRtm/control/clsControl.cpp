#include "tsRtm/control/clsControl.hpp"

#include <algorithm>

#include "tsRtm/control/clsMasken.hpp"
#include "tsRtm/control/files/ControlMessages.hpp"
#include "tsRtm/control/files/ControlReader.hpp"
#include "tsRtm/control/files/ControlWriter.hpp"
#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

// A structure file of the greatest number of fields has room for titles of a thousand characters each.
constexpr uint64 kMaxFileSize = 16 * 1024 * 1024;

bool endsIgnoringCase(TextView text, TextView end) noexcept {
    return text.size() >= end.size() && equalIgnoringCase(text.substr(text.size() - end.size()), end);
}

int32 at(const std::vector<int32>& numbers, int32 position) noexcept {
    const bool inside = position >= 1 && position <= static_cast<int32>(numbers.size());
    return inside ? numbers[static_cast<std::size_t>(position - 1)] : 0;
}

}  // namespace

clsControl::~clsControl() = default;

bool clsControl::Oeffne(TextView Datei) {
    bool nichtAnsi = false;
    return Oeffne(Datei, nichtAnsi);
}

bool clsControl::Oeffne(TextView Datei, bool& NichtAnsi) {
    try {
        return read(Datei, NichtAnsi);
    } catch (const std::exception&) {
        return false;
    }
}

void clsControl::locate(TextView file) {
    const auto delimiter = file.find_last_of(u"/\\");
    const auto nameAt = delimiter == TextView::npos ? 0 : delimiter + 1;
    dir_ = file.substr(0, delimiter == TextView::npos ? 0 : delimiter);
    const auto name = file.substr(nameAt);
    const auto dot = std::min(name.find_last_of(u'.'), name.size());
    name_ = name.substr(0, dot);
    extension_ = name.substr(dot);
    if (endsIgnoringCase(file, u".MASKE"))
        typ_ = ControlTyp_Maske;
    else if (typ_ == ControlTyp_Maske)
        typ_ = ControlTyp_DB;
}

bool clsControl::read(TextView file, bool& nichtAnsi) {
    locate(file);
    content_ = {};
    content_.nichtAnsi = nichtAnsi;
    looksUnicode_.reset();
    resetNames();
    children_.clear();
    masken_.reset();

    auto status = rtmMain::system().files.status(file);
    if (!status || status->folder || status->size > kMaxFileSize) return false;
    int32 encoding = 1252;
    Date changed;
    const auto text = files_.GetContentAPI(file, encoding, changed);

    const auto fileText = fileName();
    const auto parent = parent_.lock();
    ControlSurroundings around{
        files_, typ_, dir_, fileText, [this](TextView name) { return FeldNummer(name); }, nullptr};
    if (parent) around.dbFeld = [&parent](TextView name) { return parent->FeldNummer(name); };
    const bool whole = readControl(text, encoding, around, content_);
    nichtAnsi = content_.nichtAnsi;
    return whole;
}

void clsControl::Save() {
    const auto bytes = encodeControl(content_, typ_);
    switch (typ_) {
        case ControlTyp_Kette:
            return replaceControlFile(dir_, name_ + u"." + threeDigits(anker_), bytes);
        case ControlTyp_Maske:
            return replaceControlFile(dir_, name_ + u".maske", bytes);
        default:
            replaceControlFile(dir_, name_ + u".tsd", bytes);
    }
    // A leftover of older applications, stale from now on.
    static_cast<void>(rtmMain::system().files.remove(rtmMain::JoinPath({dir_, u"Params.tsd"})));
}

Bytes clsControl::TextAs(bool Unicode) const {
    ControlContent content = content_;
    content.nichtAnsi = false;
    content.unicode = Unicode;
    for (auto& field : content.felder) {
        if (Unicode || fromAnsi(toAnsi(field->Titel())) == field->Titel()) continue;
        field = std::make_shared<TSIO>(*field);
        field->Titel(fromAnsi(toAnsi(field->Titel())));
    }
    return encodeControl(content, typ_);
}

Text clsControl::fileName() const { return name_ + extension_; }

Text clsControl::DBName() const {
    return dir_.substr(0, dir_.size() - std::min<std::size_t>(dir_.size(), 4));
}

int32 clsControl::PointerLaenge() const noexcept {
    if (vorLaenge_ < 4) return 0;
    return vorLaenge_ <= 7 ? vorLaenge_ : vorLaenge_ / 2;
}

std::shared_ptr<TSIO> clsControl::Feld(int32 Index) const {
    if (Index < 1 || Index > Felder())
        raise(9, u"clsControl.Feld", u"Das Feld " + toText(Index) + u" gibt es nicht.");
    return content_.felder[static_cast<std::size_t>(Index - 1)];
}

// --- Indexes

int32 clsControl::Index(int32 IndexNr, int32 IndexFeld) const noexcept {
    if (IndexNr < 1 || IndexNr > Indizes() || IndexFeld < 1 || IndexFeld > 3) return 0;
    return content_.indizes[static_cast<std::size_t>(IndexNr - 1)][static_cast<std::size_t>(IndexFeld - 1)];
}

int32 clsControl::IndexNr(const Variant& FeldNummer) const {
    int32 field = 0;
    if (const auto* number = FeldNummer.number())
        field = *number;
    else if (const auto* name = FeldNummer.text())
        field = IstZiffern(*name) ? roundToInt32(Val(*name)) : this->FeldNummer(*name);
    for (int32 number = 1; number <= Indizes(); ++number)
        if (Index(number) == field) return number;
    return 0;
}

bool clsControl::IndexHinzu(int32 Primaer, int32 Sekundaer, int32 Tertiaer) {
    const auto fits = [this](int32 number, int32 least) { return number >= least && number <= Felder(); };
    if (!fits(Primaer, 1) || !fits(Sekundaer, 0) || !fits(Tertiaer, 0)) return false;
    content_.indizes.push_back({Primaer, Sekundaer, Tertiaer});
    return true;
}

bool clsControl::IndexWeg(int32 IndexNr) {
    if (IndexNr < 1 || IndexNr > Indizes()) return false;
    content_.indizes.erase(content_.indizes.begin() + (IndexNr - 1));
    return true;
}

// --- Names

void clsControl::resetNames() const noexcept {
    names_.clear();
    namesBuilt_ = false;
}

int32 clsControl::FeldNummer(TextView Feldname) const {
    if (!namesBuilt_) {
        namesBuilt_ = true;
        for (int32 number = 1; number <= Felder(); ++number) {
            const auto name = field(number).Name();
            if (name.empty() || names_.try_emplace(name, number).second) continue;
            if (typ_ != ControlTyp_Maske) showDoubleName(files_, name_, dir_, number);
        }
    }
    const auto found = names_.find(upper(Feldname));
    return found == names_.end() ? -1 : found->second;
}

// --- Memos, chains, masks

std::shared_ptr<clsMemo> clsControl::Memo(int32 FeldNummer) const {
    const auto found = std::find_if(content_.memos.begin(), content_.memos.end(),
                                    [&](const clsMemo& memo) { return memo.Feld() == FeldNummer; });
    return found == content_.memos.end() ? nullptr : std::make_shared<clsMemo>(*found);
}

int32 clsControl::KetteFeld(int32 KetteNr) const noexcept { return at(content_.ketten, KetteNr); }

int32 clsControl::MemoFeld(int32 MemoNr) const noexcept {
    const bool inside = MemoNr >= 1 && MemoNr <= AnzahlMemos();
    return inside ? content_.memos[static_cast<std::size_t>(MemoNr - 1)].Feld() : 0;
}

int32 clsControl::BlobFeld(int32 BlobNr) const noexcept { return at(content_.blobs, BlobNr); }

std::shared_ptr<clsControl> clsControl::Kette(int32 FeldNummer) {
    if (std::find(content_.ketten.begin(), content_.ketten.end(), FeldNummer) == content_.ketten.end())
        return nullptr;
    if (const auto known = children_.find(FeldNummer); known != children_.end()) return known->second;
    auto child = std::make_shared<clsControl>(files_);
    child->typ_ = ControlTyp_Kette;
    child->parent_ = weak_from_this();
    child->anker_ = ketteNummer(typ_, FeldNummer, field(FeldNummer));
    child->vorLaenge_ = field(FeldNummer).Laenge();
    // Texts as in the database, unless the chain's own head says otherwise.
    bool nichtAnsi = content_.nichtAnsi;
    const bool whole = child->Oeffne(rtmMain::JoinPath({dir_, ketteCtlName(child->anker_)}), nichtAnsi);
    if (!whole || child->Felder() < 1) return nullptr;
    children_.emplace(FeldNummer, child);
    return child;
}

std::shared_ptr<clsMasken> clsControl::Masken() {
    if (!masken_) masken_ = std::make_shared<clsMasken>(files_, dir_, weak_from_this());
    return masken_;
}

std::shared_ptr<clsControl> clsControl::Maske(const Variant& Item) { return Masken()->Maske(Item); }

}  // namespace tsRtm

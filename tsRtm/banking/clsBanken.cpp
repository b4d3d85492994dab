#include "tsRtm/banking/clsBanken.hpp"

#include <algorithm>

#include "tsRtm/banking/checks/CheckDigits.hpp"
#include "tsRtm/database/clsTSIndex.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/types/Digits.hpp"

namespace tsRtm {
namespace {

constexpr TextView kDatabase = u"Banken";
constexpr std::size_t kCodeLength = 8, kAccountLength = 10;
constexpr std::size_t kShortBic = 8, kLongBic = 11;
// How long a register may stand replaced before that is noticed.
constexpr std::chrono::milliseconds kTrusted{500};

// The digits of an account as they stand in an IBAN. Banks of these kinds carry a two-digit sub-account
// behind the account, which people leave out.
Text accountDigits(TextView code, TextView account) {
    Text digits;
    std::copy_if(account.begin(), account.end(), std::back_inserter(digits), isDigit);
    const char16_t kind = code[3];
    if ((kind == u'4' || kind == u'7' || kind == u'8') && digits.size() < kCodeLength) digits += u"00";
    digits.insert(0, kAccountLength, u'0');
    return digits.substr(digits.size() - kAccountLength);
}

Text inGroups(TextView text) {
    Text out;
    for (std::size_t at = 0; at < text.size(); at += 4) (out += at > 0 ? u" " : u"") += text.substr(at, 4);
    return out;
}

}  // namespace

clsBanken::clsBanken() : clsBanken(TextView()) {}

clsBanken::clsBanken(TextView DBName)
    : messages_(std::make_unique<MessagesTopic>()),
      files_(std::make_unique<FilesTopic>(*messages_)),
      databases_(*files_),
      name_(DBName) {}

clsBanken::~clsBanken() = default;

void clsBanken::CloseDB() {
    byCode_.reset();
    byBic_.reset();
    db_.reset();
    names_ = {};
}

std::shared_ptr<clsTSDB> clsBanken::DB() {
    const auto now = rtmMain::system().clock.elapsed();
    if (db_ && now - looked_ < kTrusted) return db_;
    if (db_ && !db_->InPlace()) CloseDB();
    if (db_) {
        const auto stand = db_->Stand();
        names_.quiet = stand == names_.stand;
        names_.known = names_.known && names_.quiet;
        names_.stand = stand;
    } else if (name_.empty()) {
        db_ = databases_.OpenReference(rtmMain::state().runtimeDataDir, kDatabase);
        if (!db_) db_ = databases_.OpenReference(DatabasesTopic::SupportDBPath(), kDatabase);
    } else {
        const Text folder = FilesTopic::PathName(name_);
        db_ = databases_.OpenReference(folder.empty() ? u"." : folder, FilesTopic::FileName(name_));
    }
    looked_ = now;
    return db_;
}

std::shared_ptr<clsTSRecord> clsBanken::Record(TextView BICorBLZ) {
    const auto db = DB();
    const bool code = IstZiffern(BICorBLZ);
    if (!db || (!code && BICorBLZ.size() != kShortBic && BICorBLZ.size() != kLongBic)) return nullptr;
    const int32 field = code ? fBANKEN_BLZ : fBANKEN_BIC;
    // Cursors of our own: whoever holds DB stands where he stood.
    auto& order = code ? byCode_ : byBic_;
    if (!order || !order->DB()) order = db->Records()->Index(field);
    if (!order) return nullptr;
    for (auto record = order->MoveTo(BICorBLZ); record && record->Fields(field).starts_with(BICorBLZ);
         record = order->MoveNext())
        if (!record->Deleted()) return record;
    return nullptr;
}

Text clsBanken::field(TextView key, int32 number) {
    const auto record = Record(key);
    return record ? record->Fields(number) : Text();
}

Text clsBanken::BIC(TextView BLZ) {
    // An IBAN, or what looks like one.
    if (BLZ.starts_with(u"DE")) BLZ = BLZ.substr(std::min<std::size_t>(4, BLZ.size()), kCodeLength);
    return field(BLZ, fBANKEN_BIC);
}

Text clsBanken::Name(TextView BLZorBIC) {
    const auto db = DB();
    if (!db || !IstZiffern(BLZorBIC) || BLZorBIC.size() > kCodeLength) return field(BLZorBIC, fBANKEN_NAME);
    if (!names_.known && names_.quiet) learnNames();
    if (!names_.known || names_.at != db->ChangeNumber()) return field(BLZorBIC, fBANKEN_NAME);
    const Text* name = knownName(BLZorBIC);
    return name ? *name : Text();
}

// The first code that begins with these digits.
const Text* clsBanken::knownName(TextView code) {
    uint32 from = 0, count = 1;
    for (const char16_t digit : code) from = from * 10 + (digit - u'0');
    for (std::size_t missing = code.size(); missing < kCodeLength; ++missing) {
        from *= 10;
        count *= 10;
    }
    const auto at = std::lower_bound(names_.entries.begin(), names_.entries.end(), from,
                                     [](const auto& entry, uint32 wanted) { return entry.code < wanted; });
    return at != names_.entries.end() && at->code - from < count ? &at->name : nullptr;
}

// Not where somebody writes meanwhile, and not where a code is none: then it is tried again after the next
// look.
void clsBanken::learnNames() {
    names_.quiet = false;
    names_.entries.clear();
    names_.at = db_->ChangeNumber();
    for (int32 number = 1, count = db_->AnzahlDSaetze(); number <= count; ++number) {
        if (db_->GetField(number, 0) == u"*") continue;
        const Text code = db_->GetField(number, fBANKEN_BLZ);
        if (code.size() != kCodeLength || !IstZiffern(code)) return;
        names_.entries.push_back({static_cast<uint32>(Val(code)), db_->GetField(number, fBANKEN_NAME)});
    }
    std::stable_sort(names_.entries.begin(), names_.entries.end(),
                     [](const auto& a, const auto& b) { return a.code < b.code; });
    names_.known = db_->ChangeNumber() == names_.at && db_->Stand() == names_.stand;
}

Text clsBanken::PLZOrt(TextView BLZorBIC) {
    const auto record = Record(BLZorBIC);
    if (!record) return {};
    return Text(trimLeft(record->Fields(fBANKEN_PLZ) + u" " + record->Fields(fBANKEN_ORT)));
}

Text clsBanken::IBAN(TextView BLZ, TextView Konto, bool PrintFormat) {
    if (BLZ.size() != kCodeLength || Konto.empty()) return {};
    Text iban = u"DE00" + Text(BLZ) + accountDigits(BLZ, Konto);
    iban.replace(2, 2, checkDigits::twoDigits(checkDigits::of(iban).number));
    return PrintFormat ? inGroups(iban) : iban;
}

std::shared_ptr<clsTSRecord> clsBanken::SelectRecord(int32 IndexFeld, TextView StartPos) {
    const auto db = DB();
    if (!db) return nullptr;
    const int32 before = db->IndexNr(Variant(db->ActiveIndex()));
    db->SetIndex(db->IndexNr(Variant(IndexFeld)));
    auto chosen = databases_.DBSelectAt(*db, u"Auswahl Bank", StartPos);
    db->SetIndex(before);
    return chosen;
}

}  // namespace tsRtm

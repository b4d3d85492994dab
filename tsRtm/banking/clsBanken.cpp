#include "tsRtm/banking/clsBanken.hpp"

#include <algorithm>

#include "tsRtm/banking/checks/CheckDigits.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {
namespace {

constexpr TextView kName = u"Banken";
constexpr std::size_t kCode = 8, kAccount = 10;
constexpr std::size_t kShortBic = 8, kLongBic = 11;
// How long a register may stand replaced before that is noticed.
constexpr std::chrono::milliseconds kTrusted{500};

bool isDigit(char16_t c) noexcept { return c >= u'0' && c <= u'9'; }

// The digits of an account as they stand in an IBAN. Banks of these kinds carry a two-digit sub-account
// behind the account, which people leave out.
Text accountDigits(TextView code, TextView account) {
    Text digits;
    std::copy_if(account.begin(), account.end(), std::back_inserter(digits), isDigit);
    const char16_t kind = code[3];
    if ((kind == u'4' || kind == u'7' || kind == u'8') && digits.size() < kCode) digits += u"00";
    digits.insert(0, kAccount, u'0');
    return digits.substr(digits.size() - kAccount);
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
    db_.reset();
    names_.known = false;
}

std::shared_ptr<clsTSDB> clsBanken::DB() {
    const auto now = rtmMain::system().clock.elapsed();
    if (db_ && now - looked_ < kTrusted) return db_;
    if (db_ && !db_->InPlace()) CloseDB();
    // What changes no key changes no number either.
    if (names_.known && names_.stand != db_->Stand()) names_.known = false;
    if (!db_ && name_.empty()) {
        db_ = databases_.OpenReference(rtmMain::state().runtimeDataDir, kName);
        if (!db_) db_ = databases_.OpenReference(DatabasesTopic::SupportDBPath(), kName);
    } else if (!db_) {
        const Text folder = FilesTopic::PathName(name_);
        db_ = databases_.OpenReference(folder.empty() ? u"." : folder, FilesTopic::FileName(name_));
    }
    looked_ = now;
    return db_;
}

// The number of the record, 0 where there is none.
int32 clsBanken::find(TextView key) {
    const auto db = DB();
    if (!db) return 0;
    const bool code = IstZiffern(key);
    if (!code && key.size() != kShortBic && key.size() != kLongBic) return 0;
    const int32 field = code ? fBANKEN_BLZ : fBANKEN_BIC;
    const int32 index = db->IndexNr(Variant(field));
    if (index < 1) return 0;
    db->SetIndex(index);
    for (db->Gehezu(key); !db->EOFile() && db->FieldView(field).starts_with(key); db->MoveNext())
        if (!db->IsDeleted()) return db->AktSatzNr();
    return 0;
}

std::shared_ptr<clsTSRecord> clsBanken::Record(TextView BICorBLZ) {
    const int32 number = find(BICorBLZ);
    return number > 0 ? db_->Record(number) : nullptr;
}

// Of the record on which the search stands.
Text clsBanken::field(TextView key, int32 number) { return find(key) > 0 ? db_->Fields(number) : Text(); }

Text clsBanken::BIC(TextView BLZ) {
    // An IBAN, or what looks like one.
    if (BLZ.starts_with(u"DE")) BLZ = BLZ.substr(std::min<std::size_t>(4, BLZ.size()), kCode);
    return field(BLZ, fBANKEN_BIC);
}

Text clsBanken::Name(TextView BLZorBIC) {
    if (!IstZiffern(BLZorBIC) || BLZorBIC.size() > kCode) return field(BLZorBIC, fBANKEN_NAME);
    if (!DB()) return {};
    if (!names_.known || names_.at != db_->ChangeNumber()) learnNames();
    if (!names_.known) return field(BLZorBIC, fBANKEN_NAME);
    const Text* name = knownName(BLZorBIC);
    return name ? *name : Text();
}

// The first code that begins with these digits.
const Text* clsBanken::knownName(TextView code) {
    uint32 from = 0, count = 1;
    for (const char16_t digit : code) from = from * 10 + (digit - u'0');
    for (std::size_t missing = code.size(); missing < kCode; ++missing) {
        from *= 10;
        count *= 10;
    }
    const auto at = std::lower_bound(names_.entries.begin(), names_.entries.end(), from,
                                     [](const auto& entry, uint32 wanted) { return entry.code < wanted; });
    return at != names_.entries.end() && at->code - from < count ? &at->name : nullptr;
}

// Not kept where somebody writes meanwhile, and not where a code is none.
void clsBanken::learnNames() {
    names_.known = false;
    names_.entries.clear();
    names_.at = db_->ChangeNumber();
    names_.stand = db_->Stand();
    for (int32 number = 1, count = db_->AnzahlDSaetze(); number <= count; ++number) {
        if (db_->GetField(number, 0) == u"*") continue;
        const Text code = db_->GetField(number, fBANKEN_BLZ);
        if (code.size() != kCode || !IstZiffern(code)) return;
        names_.entries.push_back({static_cast<uint32>(Val(code)), db_->GetField(number, fBANKEN_NAME)});
    }
    std::stable_sort(names_.entries.begin(), names_.entries.end(),
                     [](const auto& a, const auto& b) { return a.code < b.code; });
    names_.known = db_->ChangeNumber() == names_.at && db_->Stand() == names_.stand;
}

Text clsBanken::PLZOrt(TextView BLZorBIC) {
    if (find(BLZorBIC) < 1) return {};
    return Text(trimLeft(db_->Fields(fBANKEN_PLZ) + u" " + db_->Fields(fBANKEN_ORT)));
}

Text clsBanken::IBAN(TextView BLZ, TextView Konto, bool PrintFormat) {
    if (BLZ.size() != kCode || Konto.empty()) return {};
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

#include "cli/shared/Session.hpp"

#include "cli/shared/CliError.hpp"
#include "cli/shared/ErrorText.hpp"
#include "cli/shared/Terminal.hpp"
#include "cli/shared/TextFiles.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::cli {
namespace {

constexpr TextView kEnd = u".DBD";
constexpr int32 kNoControl = 52;
constexpr int32 kCannotLock = 70;

}  // namespace

Text databaseFolder(const std::string& name) {
    Text folder = fromUtf8(name);
    while (folder.size() > 1 && folder.ends_with(u'/')) folder.pop_back();
    return upper(folder).ends_with(kEnd) ? folder : folder.append(kEnd);
}

std::string failureText(const Failure& failure) {
    return printable(failure.Description()) + " (" + std::to_string(failure.Number()) + ")";
}

Session::Session(const std::string& name, Use use)
    : control_(rtm_), name_(name), folder_(databaseFolder(name)) {
    const Text control = FilesTopic::MakePath({Variant(folder_), Variant(u"Control.tsd")});
    if (!FilesTopic::Exist(control))
        throw CliError("no database '" + name + "': " + toUtf8(folder_) +
                       " holds no Control.tsd; make one with: tsrtm db create");
    open(control, use);
    // What it tells stays as it is while the database is open. The object of the open database lets the look
    // of the data overrule what this file says. A plain count in its head means the DOS code page.
    bool dos = true;
    if (!control_.Oeffne(control, dos)) refuseControl();
    // Of indexes that would share a file the database knows the first one alone.
    for (int32 i = 1; i <= control_.Indizes();)
        if (i <= db_->AnzahlIndizes() && db_->IndexFeld(i) == control_.Index(i))
            ++i;
        else
            control_.IndexWeg(i);
}

void Session::refuseControl() const {
    throw CliError("cannot read the structure of '" + name_ + "': Control.tsd is damaged or of a newer form");
}

void Session::open(const Text& control, Use use) {
    db_ = rtm_.OpenTSDB(folder_, use == Use::read, use == Use::alone);
    if (!db_) {
        const int32 error = rtmMain::state().F;
        const InputFile readable(toUtf8(control));  // says so where it is not
        if (error == kNoControl) refuseControl();
        if (error == kCannotLock && use == Use::alone)
            throw CliError("cannot open '" + name_ +
                           "' alone: somebody else has it open, or you may not write there");
        if (error == kCannotLock && use == Use::read)
            throw CliError(
                "cannot open '" + name_ +
                "': Data.tsd is missing or you may not read it, or somebody holds the database alone");
        throw CliError("cannot open '" + name_ + "': " + databaseErrorText(error));
    }
    if (use != Use::read && db_->IsReadOnly())
        throw CliError("cannot open '" + name_ +
                       (use == Use::alone
                            ? "' alone: somebody else has it open, or you may not write there"
                            : "' for writing: somebody holds it alone, or you may not write there"));
    if (db_->IsReadOnly()) refuseEmptyView();
}

// While somebody reorganises a database its readers get an empty view; in a listing that would look like lost
// data.
void Session::refuseEmptyView() {
    if (db_->AnzahlDSaetze() > 0) return;
    const auto status =
        rtmMain::system().files.status(FilesTopic::MakePath({Variant(folder_), Variant(u"Data.tsd")}));
    if (status && status->size > 0)
        throw CliError("cannot read '" + name_ + "': somebody holds the database alone just now; try again");
}

void Session::needRecord(int32 number) {
    const int32 records = count();
    if (number < 1 || number > records)
        throw CliError("no record " + std::to_string(number) + " in '" + name_ + "': it has " +
                       (records == 0 ? "none" : "1 to " + std::to_string(records)));
}

void Session::check(const std::string& what) {
    if (const int32 error = db_->Error(); error != 0) fail(what, error);
}

void Session::fail(const std::string& what, int32 number) {
    throw CliError(what + ": " + databaseErrorText(number));
}

}  // namespace tsRtm::cli

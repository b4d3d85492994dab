#include "tsRtm/database/clsTSDB.hpp"

#include <algorithm>

#include "tsRtm/control/clsMasken.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/database/engine/DatabaseEngine.hpp"
#include "tsRtm/database/upkeep/FileExchange.hpp"
#include "tsRtm/database/upkeep/IndexCheck.hpp"
#include "tsRtm/database/upkeep/LostFiles.hpp"
#include "tsRtm/database/upkeep/UncleanEnd.hpp"
#include "tsRtm/frame/clsStreamReader.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/platform/LockProbe.hpp"

namespace tsRtm {
namespace {

constexpr TextView kExtension = u".DBD";
constexpr int32 kViewHeadItems = 6;

}  // namespace

clsTSDB::clsTSDB(FilesTopic& Files) : engine_(std::make_unique<DatabaseEngine>(Files)) {
    auto& e = *engine_;
    e.writer.indexChanged = [this](int32 field) { indexChanged(field); };
    e.d.indexes.rebuilt = [this](int32 field) { indexRebuilt(field); };
    e.d.watch.heal = [&e] { return e.d.indexes.healLeftBehind(); };
    e.d.watch.findChanges = [&e] { e.d.openChanges(); };
    e.d.locks.givenUp = [this] { return closing_; };
}

clsTSDB::~clsTSDB() {
    working_ = 0;
    Schliesse();
}

void clsTSDB::Schliesse() noexcept {
    if (working_ > 0) {
        closing_ = true;
        return;
    }
    closing_ = false;
    const auto endAll = [this] {
        try {
            KillAllObjects();
        } catch (...) {  // a listener's failure does not keep the files open
        }
    };
    endAll();
    engine_->d.close();
    engine_->c.aktIndex = 0;
    engine_->opened = false;
    // What listeners have asked for meanwhile would name records of what is opened next.
    endAll();
}

int32 clsTSDB::Oeffne(TextView Pfad, bool ReadOnly, bool SingleUse) {
    auto& e = *engine_;
    auto& folder = e.d.folder;
    if (e.opened) {
        e.fail(DatabaseError::alreadyOpen);
        raise(55, u"TSDB", u"Datenbank ist schon initialisiert");
    }
    folder.name = Text(Pfad);
    if (!upper(Pfad).ends_with(kExtension)) folder.name += kExtension;
    folder.readOnly = ReadOnly;
    folder.shared = !SingleUse;
    folder.durable = rtmMain::state().durable;
    e.fehler = 0;
    befunde_.clear();
    const Working working(*this);
    try {
        openInner();
    } catch (const Failure& failure) {
        e.fail(failure);
    }
    if (closing_ && e.fehler == 0) e.fail(DatabaseError::locked);
    if (e.fehler != 0) {
        e.d.close();
        return e.fehler;
    }
    e.opened = true;
    e.c.logPos = 1;
    return 0;
}

void clsTSDB::openInner() {
    auto& e = *engine_;
    auto& d = e.d;
    if (!openStructure()) return;
    e.c = Cursor();
    e.c.felder = RecordBuffer(d.layout);
    e.spareBuffer.reset();
    e.viewLaenge.clear();
    for (int32 i = 1; i <= d.control->Felder(); ++i) e.viewLaenge.push_back(d.control->field(i).Laenge());
    e.writer.prepare();
    OpenView(u"Standard");
    if (!openFiles()) return;
    openSerial();
    settle();
    if (!e.d.serial) return;
    e.d.serial.initialise([this] { return greatestSerial(); });
    e.fehler = 0;
}

// Count.tsd, which keeps out whoever reorganises, and then what Control.tsd tells.
bool clsTSDB::openStructure() {
    auto& e = *engine_;
    auto& d = e.d;
    const bool readOnly = d.folder.readOnly;
    // Cut within its head a control names no field, and any write would be of a wrong length.
    const auto usable = [&d] { return d.readStructure() && d.control->Felder() >= 1; };
    for (bool again = false;;) {
        if (!finishExchange(d.folder)) return e.fail(DatabaseError::locked);
        recoverControl(d.folder);
        // Nothing is made where there is no database.
        if (FilesTopic::Exist(d.folder.path(u"Count.tsd")) || usable()) openCount();
        if (usable()) return true;
        // Without Count.tsd an exchange may have come and gone meanwhile.
        const bool held = d.opened.count != 0;
        if (!exchangeBegun(d.folder) && (held || std::exchange(again, true)))
            return e.fail(DatabaseError::noControl);
        d.close();
        d.folder.readOnly = readOnly;
    }
}

// Without the right to write, for reading; waits for who reorganises.
void clsTSDB::openCount() {
    auto& d = engine_->d;
    auto& folder = d.folder;
    const auto open = [&] { d.opened.count = folder.open(u"Count.tsd", folder.shared); };
    const bool onShare =
        folder.shared && rtmMain::system().files.driveKind(folder.name) == platform::DriveKind::remote;
    // Nothing is made for a reader.
    folder.filesWritable = !folder.readOnly || (onShare && FilesTopic::Exist(folder.path(u"Count.tsd")));
    open();
    if (d.opened.count != 0 || !folder.filesWritable) return;
    folder.readOnly = true;
    folder.filesWritable = false;
    open();
}

// Stand.tsd and Data.tsd beside Count.tsd. False where the opening ends there, successfully or not.
bool clsTSDB::openFiles() {
    auto& e = *engine_;
    auto& d = e.d;
    auto& folder = d.folder;
    if (d.opened.count == 0) {
        // Being reorganised, or on a medium that cannot be written: a reader gets an empty view.
        rtmMain::DebugLog(folder.name + u": kein Zugriff auf Count.tsd, leere Ansicht");
        return false;
    }
    d.count = CountFile(folder.files.file(d.opened.count));
    d.guard.opened(d.count.file());
    if (folder.shared && !folder.readOnly && refusesLocks()) return e.fail(DatabaseError::locked);
    const auto dataFile = recoverData(d);
    if (folder.readOnly && !FilesTopic::Exist(folder.path(u"Data.tsd"))) folder.filesWritable = false;
    if (dataFile == DataFile::lost) return e.fail(DatabaseError::locked);
    if (dataFile == DataFile::recovered) d.count.mark();
    // Who writes without it would go unnoticed by those who read.
    if (!d.openChanges() && folder.shared && folder.filesWritable) {
        rtmMain::DebugLog(folder.name + u": kein Zugriff auf " + Text(ChangeCount::kFileName));
        return e.fail(DatabaseError::locked);
    }
    return d.openData() || e.fail(DatabaseError::locked);
}

namespace {

// Before anything else is mended: what was acknowledged is there again.
void replayLog(OpenDatabase& d) {
    d.indexes.completeRecord();
    if (const int32 mended = d.log.replay(d.store.bytes()); mended > 0)
        rtmMain::DebugLog(d.folder.name + u": " + toText(mended) + u" Sektoren wiederhergestellt");
    d.refreshCount();
}

}  // namespace

// What a death left is mended before anybody reads. Who holds the database lock is at work, and does it
// himself.
void clsTSDB::settle() {
    auto& d = engine_->d;
    if (d.folder.readOnly) return;
    const DatabaseHold hold(d.locks, DatabaseLocks::Wait::silently);
    if (!hold) {
        rtmMain::DebugLog(d.folder.name + u": jemand arbeitet, die Indizes gelten, wie sie sind");
        return;
    }
    try {
        // Whoever comes first makes them, and nobody writes over what another one made.
        d.count.initialise();
        if (d.changes) d.changes.initialise();
        d.refreshCount();
        const bool unclean = d.sign.leftUncleanly();
        if (unclean) {
            rtmMain::DebugLog(d.folder.name + u" wurde nicht ordentlich geschlossen");
            replayLog(d);
            // First of all, since numbers are given out without this lock.
            if (d.serial) d.serial.atLeast(greatestSerial());
            befunde_ = settleRecords(d);
        } else if (FilesTopic::Exist(d.folder.path(UpdateLog::kFileName)) && d.sign.alone()) {
            d.log.forget();
        }
        if (d.marks.leftBehind())
            d.indexes.healLeftBehind();
        else if (unclean)
            settleIndexes(d);
        const bool mends = unclean && !d.marks.leftBehind();
        // Behind the healing, which completes a record with the pointers that it was to have.
        if (mends) settleSideFiles(d, befunde_);
        for (auto& line : unfinishedWork(d.folder)) befunde_.push_back(std::move(line));
        for (const auto& line : befunde_) rtmMain::DebugLog(line);
        if (mends) d.sign.settled();
    } catch (const Failure& failure) {
        recordFailure(failure);
        d.sign.unsettled();
    }
}

bool clsTSDB::refusesLocks() {
    auto& d = engine_->d;
    const auto error = platform::probeLocks(rtmMain::system().files, d.count.file());
    if (error != platform::SystemError::notSupported) return false;
    d.folder.messages().TSMsgBox(
        u"Die Datenbank \"" + d.folder.name +
            u"\" liegt auf einem Datenträger, auf dem Dateisperren nicht wirken.@Mehrere Benutzer würden "
            u"einander die Daten überschreiben. Die Datenbank wird nicht geöffnet.",
        dlgCritical, u"clsTSDB.Oeffne");
    return true;
}

bool clsTSDB::OpenView(TextView ViewFile) {
    auto& d = engine_->d;
    auto& widths = engine_->viewLaenge;
    clsStreamReader reader;
    if (!d.control || !reader.Init(d.folder.files, d.folder.path(Text(ViewFile) + u".viw"))) return false;
    // The first six items belong to the list's window: they are read over.
    try {
        for (int32 i = 0; i < kViewHeadItems && !reader.EndOfStream(); ++i) reader.ReadItem();
        // The last field's width is not in the file.
        for (std::size_t i = 0; i + 1 < widths.size() && !reader.EndOfStream(); ++i)
            widths[i] = roundToInt32(Val(reader.ReadItem()));
    } catch (const Failure&) {
        return false;
    }
    return true;
}

std::shared_ptr<clsControl> clsTSDB::Control() const { return engine_->d.control; }
std::shared_ptr<clsMasken> clsTSDB::Masken() const {
    const auto& control = engine_->d.control;
    return control ? control->Masken() : nullptr;
}
Text clsTSDB::Pfad() const { return upper(engine_->d.folder.name); }
Text clsTSDB::DBName() const { return FilesTopic::BaseName(engine_->d.folder.name); }
bool clsTSDB::IsAnsi() const { return engine_->d.control && engine_->d.control->IstAnsi(); }
bool clsTSDB::IsReadOnly() const { return engine_->d.folder.readOnly; }
bool clsTSDB::IsShared() const { return engine_->d.folder.shared; }
bool clsTSDB::IsBig() const { return engine_->d.indexes.big(); }
bool clsTSDB::IsEmptyView() const { return engine_->opened && !engine_->d.store; }
bool clsTSDB::InPlace() const {
    const auto& count = engine_->d.count;
    const auto there = count ? count.file().inPlace() : platform::Result<bool>(false);
    return there && *there;
}
uint64 clsTSDB::ChangeNumber() { return engine_->d.changes ? engine_->d.changes.value() : 0; }
Datenstand clsTSDB::Stand() {
    auto& d = engine_->d;
    if (!d.store) return {};
    engine_->recordingFileFailures([&] { d.refreshWhenChanged(); });
    const auto status = rtmMain::system().files.status(d.folder.path(u"Data.tsd"));
    return {ChangeNumber(), status ? status->size : 0, status ? status->changed.serial() : 0};
}
bool clsTSDB::Sensible() const { return engine_->d.folder.sensible; }
void clsTSDB::Sensible(bool value) { engine_->d.folder.sensible = value; }
bool clsTSDB::Dauerhaft() const { return engine_->d.folder.durable; }
void clsTSDB::Dauerhaft(bool value) { engine_->d.folder.durable = value; }
int32 clsTSDB::Error() { return std::exchange(engine_->fehler, 0); }

int32 clsTSDB::AnzahlDSaetze() {
    engine_->d.refreshWhenDue();
    return engine_->d.records();
}

int32 clsTSDB::MaxData() const { return engine_->d.maxRecords(); }

bool clsTSDB::IsFull() {
    if (AnzahlDSaetze() < MaxData()) return false;
    engine_->d.folder.messages().TSMsgBox(
        u"Diese Datenbank ist voll, es können keine weiteren Daten gespeichert werden.\r\nDie Datenbank ist "
        u"für " +
        toText(MaxData()) +
        u" Datensätze konfiguriert. Bitte markieren Sie nicht benötigte\r\nDatensätze als gelöscht und "
        u"führen Sie eine "
        u"Reorganisation durch.");
    return true;
}

int32 clsTSDB::AnzahlIndizes() const { return engine_->d.indexes.count(); }
int32 clsTSDB::AnzahlKetten() const { return engine_->d.control ? engine_->d.control->AnzahlKetten() : 0; }
int32 clsTSDB::AnzahlMemos() const { return engine_->d.control ? engine_->d.control->AnzahlMemos() : 0; }
int32 clsTSDB::CtrlEintraege() const { return engine_->d.layout.fields(); }

const std::vector<Text>& clsTSDB::Befunde() const { return befunde_; }

}  // namespace tsRtm

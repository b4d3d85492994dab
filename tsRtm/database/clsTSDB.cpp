#include "tsRtm/database/clsTSDB.hpp"

#include <algorithm>

#include "tsRtm/database/DatabaseParts.hpp"
#include "tsRtm/database/IndexFiles.hpp"
#include "tsRtm/database/Reorganisation.hpp"
#include "tsRtm/database/UpdatePath.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/fields/clsMasken.hpp"
#include "tsRtm/frame/files/clsStreamReader.hpp"
#include "tsRtm/frame/rtmMain.hpp"
#include "tsRtm/platform/LockProbe.hpp"

namespace tsRtm {
namespace {

constexpr TextView kExtension = u".DBD";
constexpr int32 kBigFrom = 32768;
constexpr int32 kModusReadWrite = 4;
constexpr int32 kModusReadOnly = 5;
constexpr int32 kViewHeadItems = 6;
constexpr uint64 kSniffFrom = 2;

}  // namespace

clsTSDB::clsTSDB(FilesTopic& Files) : parts_(std::make_unique<DatabaseParts>(Files, *this)) {}

clsTSDB::~clsTSDB() { Schliesse(); }

void clsTSDB::Schliesse() noexcept {
    try {
        KillAllObjects();
    } catch (...) {  // a listener's failure does not keep the files open
    }
    closeFiles();
}

int32 clsTSDB::Oeffne(TextView Pfad, bool ReadOnly, bool SingleUse) {
    auto& d = *parts_;
    if (d.opened) {
        d.fehler = 55;
        raise(55, u"TSDB", u"Datenbank ist schon initialisiert");
    }
    d.folder = Text(Pfad);
    if (!upper(Pfad).ends_with(kExtension)) d.folder += kExtension;
    d.readOnly = ReadOnly;
    d.modus = ReadOnly ? kModusReadOnly : kModusReadWrite;
    d.shared = !SingleUse;
    d.fehler = 0;
    try {
        openInner();
    } catch (const Failure& failure) {
        recordFailure(d, failure);
    }
    if (d.fehler != 0) {
        closeFiles();
        return d.fehler;
    }
    d.opened = true;
    d.refreshCount();
    d.logPos = 1;
    if (!healAfterCrash(d) && !d.readOnly) rtmMain::DebugLog(u"Bis dahin gelten die Indizes, wie sie sind");
    d.fehler = 0;
    return 0;
}

int32 clsTSDB::openInner() {
    auto& d = *parts_;
    d.control = std::make_shared<clsControl>(d.files);
    bool dos = true;
    if (!d.control->Oeffne(d.path(u"Control.tsd"), dos)) {
        d.fail(52);
        return d.fehler;
    }
    d.layout = RecordLayout(*d.control, d.control->IstUnicode(), dos);
    d.felder = RecordBuffer(d.layout);
    d.spareBuffer.reset();
    d.viewLaenge.clear();
    for (int32 i = 1; i <= d.control->Felder(); ++i) d.viewLaenge.push_back(d.control->field(i).Laenge());
    // Nothing on disk says so: a change of MaxRecords across this number needs new index files.
    d.big = d.control->MaxRecords() >= kBigFrom;
    for (const auto& entry : d.control->indexes())
        d.indexes.push_back(std::make_unique<IndexSlot>(IndexKeys(d.layout, {entry[0], entry[1], entry[2]})));
    OpenView(u"Standard");
    if (openFiles()) openSerial();
    return d.fehler;
}

// Count.tsd and Data.tsd. False where the opening ends there, successfully or not.
bool clsTSDB::openFiles() {
    auto& d = *parts_;
    const auto open = [&] {
        d.files.DB_Open(d.path(u"Count.tsd"), d.countNumber, d.modus, d.shared, 0, kOpenSilently);
    };
    open();
    if (d.countNumber == 0 && !d.readOnly) {
        d.readOnly = true;
        d.modus = kModusReadOnly;
        open();
    }
    if (d.countNumber == 0) {
        // Being reorganised, or on a medium that cannot be written: a reader gets an empty view.
        rtmMain::DebugLog(d.folder + u": kein Zugriff auf Count.tsd, leere Ansicht");
        return false;
    }
    d.count = CountFile(d.files.file(d.countNumber));
    if (d.shared && !d.readOnly && refusesLocks()) return d.fail(70);
    if (!d.readOnly) d.count.initialise();
    d.dataHandle = d.files.OpenBinaryAPI(d.path(u"Data.tsd"), d.readOnly, d.shared);
    if (d.dataHandle == 0) return d.fail(70);
    d.store = RecordStore(d.files.handleFile(d.dataHandle), d.layout);
    d.refreshCount();
    sniffUnicode();
    return true;
}

bool clsTSDB::refusesLocks() {
    auto& d = *parts_;
    const auto error = platform::probeLocks(rtmMain::system().files, d.count.file());
    if (error != platform::SystemError::notSupported) return false;
    d.messages().TSMsgBox(
        u"Die Datenbank \"" + d.folder +
            u"\" liegt auf einem Datenträger, auf dem Dateisperren nicht wirken.@Mehrere Benutzer würden "
            u"einander die Daten überschreiben. Die Datenbank wird nicht geöffnet.",
        dlgCritical, u"clsTSDB.Oeffne");
    return true;
}

// A data file in UTF-16 gives itself away by its high bytes. The flag reaches only those who ask the control:
// how the records are read was settled before, by the control file.
void clsTSDB::sniffUnicode() {
    auto& d = *parts_;
    if (d.store.bytes().knownSize() < 6) return;
    char bytes[4] = {};
    d.store.bytes().read(kSniffFrom, bytes);
    d.control->IstUnicode(static_cast<uint8>(bytes[1]) < 10 || static_cast<uint8>(bytes[3]) < 10);
}

void clsTSDB::openSerial() {
    auto& d = *parts_;
    const int32 field = d.control->AutowertFeld();
    if (field == 0 || d.modus == kModusReadOnly) return;
    d.files.DB_Open(d.path(u"Autowert.tsd"), d.serialNumberFile, d.modus, d.shared, 0, kOpenSilently);
    if (d.serialNumberFile == 0) return;
    d.serial = SerialNumber(d.files.file(d.serialNumberFile), d.messages());
    if (!d.serial.empty()) return;
    // The counter is made from the last record.
    d.refreshCount();
    const int32 count = d.records();
    const int32 last = count > 0 ? roundToInt32(Val(GetField(count, field))) : 0;
    d.serial.store(last < 1 ? count : last);
    d.fehler = 0;
}

bool clsTSDB::OpenView(TextView ViewFile) {
    auto& d = *parts_;
    clsStreamReader reader;
    if (!d.control || !reader.Init(d.files, d.path(Text(ViewFile) + u".viw"))) return false;
    // The first six items belong to the list's window: they are read over.
    try {
        for (int32 i = 0; i < kViewHeadItems && !reader.EndOfStream(); ++i) reader.ReadItem();
        // The last field's width is not in the file.
        for (std::size_t i = 0; i + 1 < d.viewLaenge.size() && !reader.EndOfStream(); ++i)
            d.viewLaenge[i] = roundToInt32(Val(reader.ReadItem()));
    } catch (const Failure&) {
        return false;
    }
    return true;
}

void clsTSDB::closeFiles() noexcept {
    auto& d = *parts_;
    d.serial = SerialNumber();
    d.close(d.serialNumberFile);
    closeIndexes(d);
    d.store = RecordStore();
    d.closeHandle(d.dataHandle);
    d.count = CountFile();
    d.close(d.countNumber);
    d.close(d.lockNumber);
    d.locks.forget();
    d.indexes.clear();
    d.aktIndex = 0;
    d.opened = false;
}

void clsTSDB::KillAllObjects() {
    // A listener may let go of other records, or ask for new ones: the list is read anew each time.
    for (std::size_t left = live_.size(); left > 0 && !live_.empty(); --left) {
        auto* const record = live_.front();
        live_.erase(live_.begin());
        record->invalidate();
    }
}

std::shared_ptr<clsControl> clsTSDB::Control() const { return parts_->control; }
std::shared_ptr<clsMasken> clsTSDB::Masken() const {
    return parts_->control ? parts_->control->Masken() : nullptr;
}
Text clsTSDB::Pfad() const { return upper(parts_->folder); }
Text clsTSDB::DBName() const { return FilesTopic::BaseName(parts_->folder); }
bool clsTSDB::IsAnsi() const { return parts_->control && parts_->control->IstAnsi(); }
bool clsTSDB::IsReadOnly() const { return parts_->readOnly; }
bool clsTSDB::IsShared() const { return parts_->shared; }
bool clsTSDB::IsBig() const { return parts_->big; }
bool clsTSDB::Sensible() const { return parts_->sensible; }
void clsTSDB::Sensible(bool value) { parts_->sensible = value; }
int32 clsTSDB::Error() { return std::exchange(parts_->fehler, 0); }

int32 clsTSDB::AnzahlDSaetze() {
    parts_->refreshWhenDue();
    return parts_->records();
}

int32 clsTSDB::MaxData() const { return parts_->control ? parts_->control->MaxRecords() : 0; }

bool clsTSDB::IsFull() {
    if (AnzahlDSaetze() < MaxData()) return false;
    parts_->messages().TSMsgBox(
        u"Diese Datenbank ist voll, es können keine weiteren Daten gespeichert werden.\r\nDie Datenbank ist "
        u"für " +
        toText(MaxData()) +
        u" Datensätze konfiguriert. Bitte markieren Sie nicht benötigte\r\nDatensätze als gelöscht und "
        u"führen Sie eine "
        u"Reorganisation durch.");
    return true;
}

int32 clsTSDB::AnzahlIndizes() const { return static_cast<int32>(parts_->indexes.size()); }
int32 clsTSDB::AnzahlKetten() const { return parts_->control ? parts_->control->AnzahlKetten() : 0; }
int32 clsTSDB::AnzahlMemos() const { return parts_->control ? parts_->control->AnzahlMemos() : 0; }
int32 clsTSDB::CtrlEintraege() const { return parts_->layout.fields(); }

bool clsTSDB::Sort(int32 IndexSpalte) { return sortIndexes(*parts_, IndexSpalte); }

const std::vector<Text>& clsTSDB::Befunde() const { return befunde_; }

}  // namespace tsRtm

#include "tsRtm/tables/TableBase.hpp"

#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/tables/storage/LineCode.hpp"
#include "tsRtm/tables/storage/TableFile.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {

TableBase::TableBase(TextView TypeName)
    : typeName_(TypeName), file_(std::make_unique<TableFile>()), code_(std::make_unique<LineCode>()) {}

TableBase::~TableBase() = default;

const Text& TableBase::Datei() const noexcept { return file_->name(); }
bool TableBase::Sensible() const noexcept { return file_->sensible; }
void TableBase::Sensible(bool Value) noexcept { file_->sensible = Value; }
int32 TableBase::Encoding() const noexcept { return file_->encoding; }
void TableBase::Encoding(int32 Value) noexcept { file_->encoding = Value; }
bool TableBase::bound() const noexcept { return file_->bound(); }
bool TableBase::syncAlways() const noexcept { return file_->syncAlways(); }
Text TableBase::coded(TextView cell) { return encrypted_ ? code_->encoded(cell) : Text(cell); }
Text TableBase::decoded(TextView line) { return encrypted_ ? code_->decoded(line) : Text(line); }

int32 TableBase::Count() {
    sync();
    return rows();
}

bool TableBase::Okay() {
    sync();
    return okay_;
}

void TableBase::Encrypted(bool Value) noexcept {
    if (std::exchange(encrypted_, Value) != Value && file_->seen()) changed_ = true;
}

void TableBase::bind(TextView Datei, bool SyncAlways) {
    write();
    file_->bind(Datei, SyncAlways);
    file_->sensible = true;
    dropRows();
    okay_ = true;
    changed_ = false;
}

void TableBase::sync() { sync(TableLook::nowAndThen); }

void TableBase::sync(TableLook how) {
    const auto news = file_->look(how);
    if (news.what == TableFile::News::none) return;
    if (news.what == TableFile::News::gone) {
        const bool had = rows() > 0;
        dropRows();
        okay_ = true;
        changed_ = false;  // else a file that somebody makes from here on would be deleted
        if (had) Change();
        return;
    }
    okay_ = true;
    try {
        load(linesOf(news.text));
    } catch (const Failure& failure) {
        file_->markUnread(failure.Number());
        throw;
    }
    changed_ = false;
    Change();
}

void TableBase::beforeChange(TextView Operation) {
    sync();
    file_->needRead(source(Operation));
}

void TableBase::afterChange() {
    changed_ = true;
    if (syncAlways()) write();
    Change();
}

bool TableBase::beforeAdding(bool Sync, TextView Operation) {
    const bool save = bound() && (Sync || syncAlways());
    sync(save ? TableLook::forAppending : TableLook::nowAndThen);
    file_->needRead(source(Operation));
    return save;
}

bool TableBase::appended(TextView rowText) {
    // Behind a part of a row, or with other changes to store, the file is written anew.
    if (!okay_ || changed_ || !file_->canAppend()) return false;
    file_->append(rowText);
    return true;
}

int32 TableBase::Clear(bool Sync) {
    // Not read before: a file that makes no sense can be done away with, too.
    const int32 had = rows();
    dropRows();
    okay_ = true;
    changed_ = true;
    file_->disregard();
    if (Sync || syncAlways()) write();
    Change();
    return had;
}

void TableBase::write() {
    if (!bound() || !changed_) return;
    if (file_->unread()) sync(TableLook::forced);
    file_->needRead(source(u".SchreibDaten"));
    if (!changed_) return;  // read again just now
    if (rows() > 0)
        file_->replace(fileText(), typeName_);
    else
        file_->remove(typeName_);
    changed_ = false;
    okay_ = true;
}

void TableBase::writeAtTheEnd() noexcept {
    try {
        write();
    } catch (const std::exception& failure) {
        rtmMain::DebugLog(Datei() + u": " + fromUtf8(failure.what()));
    }
}

void TableBase::needHeldText(TextView text, Holds what, TextView Operation) const {
    if (bound() && !encrypted_) needHeld(text, what, source(Operation), Datei());
}

}  // namespace tsRtm

#include "tsRtm/database/writing/OpenDatabase.hpp"

#include "tsRtm/frame/rtmMain.hpp"

namespace tsRtm {

void OpenDatabase::refreshCount() {
    if (!store) return;
    store.refresh();
    refreshed_ = rtmMain::system().clock.elapsed();
}

void OpenDatabase::refreshWhenDue() {
    if (!folder.shared || !store) return;
    if (rtmMain::system().clock.elapsed() - refreshed_ > std::chrono::seconds(6 * rtmMain::state().netWait))
        refreshCount();
}

void OpenDatabase::flush() noexcept {
    if (store) static_cast<void>(store.bytes().file().flush());
    if (serial) static_cast<void>(serial.file().flush());
    indexes.flush();
}

void OpenDatabase::close() noexcept {
    marks.giveUp();
    if (count) sign.leave([this] { flush(); });
    serial = SerialNumber();
    folder.close(opened.serial);
    indexes.clear();
    store = RecordStore();
    folder.closeHandle(opened.data);
    changes = ChangeCount();
    folder.close(opened.changes);
    count = CountFile();
    folder.close(opened.count);
    reorganisation.forget();
    locks.forget();
}

}  // namespace tsRtm

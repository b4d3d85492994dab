#include "tsRtm/services/bytes/Scrambler.hpp"

#include <algorithm>
#include <span>
#include <utility>

#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {
namespace {

constexpr TextView kFileName = u"KeyTS.dat";

TextView folderOf(TextView path) {
    const auto last = path.find_last_of(u"/\\");
    return last == TextView::npos ? TextView() : path.substr(0, last + 1);
}

Text inFolder(TextView folder) {
    const bool delimited = folder.empty() || folder.back() == u'/' || folder.back() == u'\\';
    return Text(folder) + (delimited ? Text() : rtmMain::PathDelimiter()) + Text(kFileName);
}

}  // namespace

bool Scrambler::read(TextView path) {
    const auto file = rtmMain::system().files.open(path, {});
    if (!file) return false;
    std::array<uint8, 256> bytes{};
    const auto count = (*file)->readAt(0, std::as_writable_bytes(std::span(bytes)));
    // Zeros alone, as a machine leaves them that died, hide nothing.
    if (!count || bytes == keys_) return false;
    if (*count < bytes.size()) rtmMain::DebugLog(u"SchluesselB: " + Text(path) + u" ist zu kurz");
    keys_ = bytes;
    return true;
}

bool Scrambler::load() {
    if (std::exchange(loaded_, true)) return found_;
    const Text besideHost = inFolder(folderOf(rtmMain::state().hostPath));
    const Text besideRuntime = inFolder(rtmMain::state().runtimeDir);
    found_ = read(besideHost) || read(besideRuntime);
    if (found_) return true;
    rtmMain::state().F = 53;
    rtmMain::DebugLog(u"SchluesselB: " + besideRuntime + u" Datei fehlt");
    messages_.TSMsgBox(besideRuntime + u"\rDatei fehlt", 0, u"SchluesselB");
    return false;
}

void Scrambler::scramble(Bytes& bytes, int32 start) {
    if (bytes.empty()) return;
    load();
    const auto bits = static_cast<uint32>(start);
    const auto low = static_cast<uint8>(bits);
    // Bits 16 to 23: the byte between the two has no part in it.
    const auto high = static_cast<uint8>(bits >> 16);
    auto offset = static_cast<uint8>((keys_[low] ^ low) + high);
    std::for_each(bytes.rbegin(), bytes.rend(),
                  [&](char& c) { c = static_cast<char>(static_cast<uint8>(c) ^ keys_[offset++]); });
}

}  // namespace tsRtm

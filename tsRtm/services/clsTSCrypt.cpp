#include "tsRtm/services/clsTSCrypt.hpp"

#include <algorithm>
#include <array>
#include <span>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/Lifetime.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/services/bytes/ByteForms.hpp"
#include "tsRtm/services/bytes/Hasher.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

using platform::SystemError;

constexpr TextView kClass = u"clsTSCrypt";
constexpr int32 kNoPermission = 70;
constexpr int32 kBadAlgorithm = -2146893816;  // applications compare with it
constexpr uint64 kBlock = 65536;

[[noreturn]] void raiseNoRandom(TextView operation) {
    raise(kNoPermission, Text(kClass).append(operation),
          u"Kein Cryptografie-Provider zur Erzeugung von ZufallBytes verfügbar.");
}

Hasher hasherFor(HashType type) {
    if (Hasher::knows(type)) return Hasher(type);
    raise(kBadAlgorithm, kClass,
          u"DLL gab Fehler aus. Hash-Objekt für Typ " + toHexadecimal(static_cast<uint32>(type)) +
              u" kann nicht erstellt werden! (CryptCreateHash API)");
}

[[noreturn]] void raiseNotHashed(SystemError error) {
    raise(static_cast<int32>(error), kClass,
          u"DLL-Fehler: Daten konnten nicht in den Hash geschrieben werden (CryptHashData API)");
}

void addBlock(Hasher& hasher, platform::File& file, uint64 offset, std::span<char> block) {
    const auto read = file.readAt(offset, std::as_writable_bytes(block));
    if (!read) raiseNotHashed(read.error());
    // Cut short meanwhile: a hash of half a file would look like one of all of it.
    if (*read < block.size()) raiseNotHashed(SystemError::readFault);
    hasher.add({block.data(), block.size()});
}

}  // namespace

clsTSCrypt::clsTSCrypt() {
    rtmMain::ensureStarted();
    refusal_ = static_cast<int32>(rtmMain::system().random.check());
}

std::shared_ptr<clsTSCrypt> clsTSCrypt::Create() {
    auto crypt = std::make_shared<clsTSCrypt>();
    if (crypt->refusal_ == 0) return crypt;
    raise(crypt->refusal_, kClass,
          u"Fehler beim Erstellen des Handles (CryptAcquireContext API)\r\nDLL gab Fehler zurück: " +
              toText(crypt->refusal_));
}

Text clsTSCrypt::Base64(TextView InputStr, CryptStringFlags Method) const {
    const bool isShort = (Method & CRYPT_STRING_SHORT) != 0;
    Bytes text = byteForms::encode(toAnsi(InputStr), isShort ? Method | CRYPT_STRING_NOCRLF : Method);
    // Of every form: stored lines were made so.
    if (isShort) text.erase(text.find_last_not_of('=') + 1);
    return fromAnsi(text);
}

Text clsTSCrypt::FromBase64(TextView Base64Str, CryptStringFlags Method) const {
    return fromAnsi(byteForms::decode(toAnsi(Base64Str), Method).value_or(Bytes()));
}

Text clsTSCrypt::TextToHex(TextView text) const {
    return fromAnsi(byteForms::hexDigits(toAnsi(text), byteForms::Case::upper));
}

Text clsTSCrypt::ZufallBytes(int32 Anzahl) const {
    if (refusal_ != 0) raiseNoRandom(u".ZufallBytes");
    if (Anzahl <= 0) return {};
    Bytes bytes(static_cast<std::size_t>(Anzahl), '\0');
    const auto error = rtmMain::system().random.fill(std::as_writable_bytes(std::span(bytes)));
    return failed(error) ? Text() : fromAnsi(bytes);
}

int32 clsTSCrypt::Zufall(int32 Von, int32 Bis) const {
    if (refusal_ != 0) raiseNoRandom(u".Zufall");
    const auto [low, high] = std::minmax(Von, Bis);
    const auto count = static_cast<uint64>(int64{high} - low) + 1;
    // Draws above the last whole multiple are thrown away, or small numbers would come more often.
    constexpr uint64 kDraws = uint64{1} << 32;
    const uint64 limit = kDraws - kDraws % count;
    for (;;) {
        std::array<uint32, 1> draw{};
        if (failed(rtmMain::system().random.fill(std::as_writable_bytes(std::span(draw)))))
            raiseNoRandom(u".Zufall");
        if (draw[0] < limit) return static_cast<int32>(low + static_cast<int64>(draw[0] % count));
    }
}

Text clsTSCrypt::GetHash(TextView Daten, HashType Typ) const {
    if (refusal_ != 0) return {};
    auto hasher = hasherFor(Typ);
    hasher.add(toAnsi(Daten));
    return fromAnsi(hasher.value());
}

Text clsTSCrypt::GetHashFromFile(TextView Datei, HashType Typ) const {
    if (refusal_ != 0) return {};
    const auto file = rtmMain::system().files.open(Datei, {});
    if (!file) return {};
    auto hasher = hasherFor(Typ);
    const auto size = (*file)->size();
    if (!size) raiseNotHashed(size.error());
    Bytes block(std::min(*size, kBlock), '\0');
    for (uint64 at = 0; at < *size; at += kBlock)
        addBlock(hasher, **file, at, std::span(block).first(std::min(*size - at, kBlock)));
    return fromAnsi(hasher.value());
}

}  // namespace tsRtm

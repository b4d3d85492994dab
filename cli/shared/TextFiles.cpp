#include "cli/shared/TextFiles.hpp"

#include <algorithm>
#include <iostream>

#include "cli/shared/CliError.hpp"
#include "cli/shared/ErrorText.hpp"
#include "tsRtm/frame/files/Encodings.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm::cli {
namespace {

using platform::Access;
using platform::Disposition;
using platform::OpenRequest;
using platform::Sharing;

constexpr std::size_t kFileBlock = std::size_t{64} * 1024;
constexpr const char* kStandardOutput = "-";

// Length of the well-formed UTF-8 sequence at the start, 0 where there is none.
std::size_t sequenceLength(std::string_view bytes) noexcept {
    const auto at = [&](std::size_t i) { return i < bytes.size() ? static_cast<uint8>(bytes[i]) : uint8{0}; };
    const uint8 first = at(0);
    if (first < 0x80) return 1;
    const std::size_t length = first >= 0xC2 && first < 0xE0   ? 2
                               : first >= 0xE0 && first < 0xF0 ? 3
                               : first >= 0xF0 && first < 0xF5 ? 4
                                                               : 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((at(i) & 0xC0) != 0x80) return 0;
    const uint8 second = at(1);
    const bool tooLong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool noCharacter = (first == 0xED && second >= 0xA0) || (first == 0xF4 && second >= 0x90);
    return tooLong || noCharacter ? 0 : length;
}

// Number of bytes at the start that are well-formed.
std::size_t goodBytes(std::string_view bytes) noexcept {
    std::size_t at = 0;
    while (at < bytes.size()) {
        const std::size_t length = sequenceLength(bytes.substr(at));
        if (length == 0) break;
        at += length;
    }
    return at;
}

std::optional<Text> fromLatin1(std::string_view bytes) {
    Text out;
    for (const char byte : bytes) out += static_cast<char16_t>(static_cast<uint8>(byte));
    return out;
}

std::optional<std::string> toLatin1(TextView text) {
    std::string out;
    for (const char16_t c : text) {
        if (c > 0xFF) return std::nullopt;
        out += static_cast<char>(c);
    }
    return out;
}

}  // namespace

const char* encodingName(FileEncoding encoding) noexcept {
    switch (encoding) {
        case FileEncoding::automatic:
            return "auto";
        case FileEncoding::utf8:
            return "utf8";
        case FileEncoding::latin1:
            return "latin1";
        case FileEncoding::cp1252:
            return "1252";
        case FileEncoding::cp850:
            return "850";
    }
    return "";
}

bool isUtf8(std::string_view bytes) noexcept { return goodBytes(bytes) == bytes.size(); }

std::optional<Text> decodeText(std::string_view bytes, FileEncoding encoding) {
    switch (encoding) {
        case FileEncoding::automatic:
        case FileEncoding::utf8:
            return isUtf8(bytes) ? std::optional(fromUtf8(bytes)) : std::nullopt;
        case FileEncoding::latin1:
            return fromLatin1(bytes);
        case FileEncoding::cp1252:
            return fromAnsi(bytes);
        case FileEncoding::cp850: {
            Text text = encodings::decode(bytes, CP850);
            // Frame characters have only a best fit: they would change on the way.
            return encodings::encode(text, CP850) == bytes ? std::optional(std::move(text)) : std::nullopt;
        }
    }
    return std::nullopt;
}

std::optional<std::string> encodeText(TextView text, FileEncoding encoding) {
    if (encoding == FileEncoding::latin1) return toLatin1(text);
    if (encoding == FileEncoding::utf8 || encoding == FileEncoding::automatic) return toUtf8(text);
    const int32 page = encoding == FileEncoding::cp850 ? CP850 : ANSI1252;
    std::string bytes = encodings::encode(text, page);
    return encodings::decode(bytes, page) == text ? std::optional(std::move(bytes)) : std::nullopt;
}

InputFile::InputFile(const std::string& name) : name_(name) {
    auto& files = rtmMain::system().files;
    const Text path = fromUtf8(name);
    if (const auto status = files.status(path); status && status->folder)
        throw CliError("cannot read '" + name + "': it is a folder");
    auto opened = files.open(path, OpenRequest{Access::read, Sharing::all, Disposition::openExisting});
    if (!opened) throw CliError("cannot read '" + name + "': " + systemErrorText(opened.error()));
    file_ = std::move(*opened);
}

std::size_t InputFile::read(uint64 offset, std::span<char> into) {
    const auto read = file_->readAt(offset, std::as_writable_bytes(into));
    if (!read) throw CliError("cannot read '" + name_ + "': " + systemErrorText(read.error()));
    return *read;
}

uint64 InputFile::size() {
    const auto size = file_->size();
    if (!size) throw CliError("cannot read '" + name_ + "': " + systemErrorText(size.error()));
    return *size;
}

FileEncoding detectEncoding(ByteSource& source) {
    std::string block(kFileBlock, '\0');
    uint64 offset = 0;
    for (;;) {
        const std::size_t count = source.read(offset, block);
        const std::string_view bytes(block.data(), count);
        if (offset == 0 && (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")))
            throw CliError("the file is in UTF-16; save it as UTF-8");
        const std::size_t good = goodBytes(bytes);
        const bool last = count < block.size();
        // A sequence may go on in the next block.
        if (good != count && (last || count - good >= 4)) return FileEncoding::cp1252;
        if (last) return FileEncoding::utf8;
        offset += good;
    }
}

OutputFile::OutputFile(const std::string& name) : name_(name) {
    if (name == kStandardOutput) return;
    auto opened = rtmMain::system().files.open(
        fromUtf8(name), OpenRequest{Access::readWrite, Sharing::none, Disposition::createEmpty});
    check(opened.error());
    file_ = std::move(*opened);
}

OutputFile::~OutputFile() {
    if (finished_ || !file_) return;
    file_.reset();
    static_cast<void>(rtmMain::system().files.remove(fromUtf8(name_)));
}

void OutputFile::check(platform::SystemError error) {
    if (failed(error)) throw CliError("cannot write '" + name_ + "': " + systemErrorText(error));
}

void OutputFile::write(std::string_view bytes) {
    buffer_ += bytes;
    if (buffer_.size() >= kFileBlock) flush();
}

void OutputFile::flush() {
    if (file_) {
        check(file_->writeAt(position_, std::as_bytes(std::span(buffer_))));
        position_ += buffer_.size();
    } else {
        std::cout << buffer_;
    }
    buffer_.clear();
}

void OutputFile::finish() {
    flush();
    if (file_) check(file_->flush());
    finished_ = true;
}

}  // namespace tsRtm::cli

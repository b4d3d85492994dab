#include "tsRtm/frame/files/SequentialReader.hpp"

namespace tsRtm {

namespace {
constexpr std::size_t readBlock = 16 * 1024;
constexpr int32 end = -1;
constexpr char endOfTextByte = 26;
}  // namespace

int32 SequentialReader::byteAt(platform::File& file, uint64 position) {
    if (position < begin_ || position - begin_ >= block_.size()) {
        block_.resize(readBlock);
        begin_ = position;
        const auto read = file.readAt(position, std::as_writable_bytes(std::span(block_)));
        if (!read) error_ = read.error();
        block_.resize(read ? *read : 0);
        if (block_.empty()) return end;
    }
    const char byte = block_[static_cast<std::size_t>(position - begin_)];
    return byte == endOfTextByte ? end : static_cast<unsigned char>(byte);
}

void SequentialReader::skipLineEnd(platform::File& file, uint64& position) {
    if (byteAt(file, position) == '\r')
        ++position;
    else if (byteAt(file, position) == '\n') {
        ++position;
        return;
    } else
        return;
    if (byteAt(file, position) == '\n') ++position;
}

void SequentialReader::skipBlanks(platform::File& file, uint64& position) {
    while (byteAt(file, position) == ' ') ++position;
}

platform::Result<std::optional<Bytes>> SequentialReader::line(platform::File& file, uint64& position) {
    error_ = platform::SystemError::none;
    std::optional<Bytes> result;
    int32 byte = byteAt(file, position);
    if (byte != end) result.emplace();
    for (; byte != end && byte != '\r' && byte != '\n'; byte = byteAt(file, position)) {
        result->push_back(static_cast<char>(byte));
        ++position;
    }
    skipLineEnd(file, position);
    if (platform::failed(error_)) return error_;
    return result;
}

platform::Result<std::optional<Bytes>> SequentialReader::item(platform::File& file, uint64& position) {
    error_ = platform::SystemError::none;
    std::optional<Bytes> result;
    if (byteAt(file, position) != end) result.emplace();
    skipBlanks(file, position);
    if (byteAt(file, position) == '"') {
        int32 byte;
        while ((byte = byteAt(file, ++position)) != '"' && byte != end)
            result->push_back(static_cast<char>(byte));
        if (byte == '"') ++position;
        skipBlanks(file, position);
    } else {
        for (int32 byte;
             (byte = byteAt(file, position)) != end && byte != ',' && byte != '\r' && byte != '\n';
             ++position)
            result->push_back(static_cast<char>(byte));
    }
    if (byteAt(file, position) == ',')
        ++position;
    else
        skipLineEnd(file, position);
    if (platform::failed(error_)) return error_;
    return result;
}

platform::Result<bool> SequentialReader::atEnd(platform::File& file, uint64 position) {
    error_ = platform::SystemError::none;
    const bool result = byteAt(file, position) == end;
    if (platform::failed(error_)) return error_;
    return result;
}

}  // namespace tsRtm

#include "tsRtm/banking/BankFile.hpp"

#include <algorithm>

namespace tsRtm {
namespace {

constexpr std::size_t kBlock = std::size_t{64} * 1024;
// What a row may have in UTF-8, a byte order mark before it; what is longer is no row and need not be kept.
constexpr std::size_t kKeptBytes = 4 * bankFormat::kRowLength + 4;

// Empty at the end of the file.
platform::SystemError readBlock(platform::File& file, uint64 offset, Bytes& into) {
    into.resize(kBlock);
    const auto read = file.readAt(offset, std::as_writable_bytes(std::span(into)));
    into.resize(read ? *read : 0);
    return read.error();
}

}  // namespace

BankFileReader::BankFileReader(platform::File& file, std::optional<BankFileEncoding> encoding) : file_(file) {
    BankEncodingDetector detector;
    for (;;) {
        error_ = readBlock(file_, size_, block_);
        if (block_.empty()) break;
        detector.feed(block_);
        size_ += block_.size();
    }
    encoding_ = encoding.value_or(detector.encoding());
    block_.clear();
}

bool BankFileReader::fill() {
    begin_ += block_.size();
    used_ = 0;
    error_ = readBlock(file_, begin_, block_);
    return !block_.empty();
}

bool BankFileReader::nextLine() {
    text_.clear();
    bool any = false;
    while (used_ < block_.size() || fill()) {
        any = true;
        const auto end = block_.find('\n', used_);
        const std::size_t upTo = std::min(end, block_.size());
        const std::size_t room = kKeptBytes - std::min(kKeptBytes, text_.size());
        text_.append(block_, used_, std::min(room, upTo - used_));
        used_ = std::min(upTo + 1, block_.size());
        if (end != Bytes::npos) break;
    }
    if (!any) return false;
    ++line_;
    if (text_.ends_with('\r')) text_.pop_back();
    return true;
}

bool BankFileReader::next(BankRow& row) {
    do {
        if (failed(error_) || !nextLine()) return false;
    } while (text_.empty());
    fault_ = decodeBankRow(text_, encoding_, row);
    return true;
}

}  // namespace tsRtm

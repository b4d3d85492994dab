#pragma once
// Text files from outside: their bytes, their encodings, and writing them whole or not at all.
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "tsRtm/platform/File.hpp"

namespace tsRtm::cli {

enum class FileEncoding { automatic, utf8, latin1, cp1252, cp850 };

// "utf8", "1252" ...
const char* encodingName(FileEncoding encoding) noexcept;

// Text of bytes; nothing where they are malformed, or have a character with no equal in memory. Not for
// `automatic`.
std::optional<Text> decodeText(std::string_view bytes, FileEncoding encoding);
// Bytes of a text; nothing where the encoding lacks a character. Not for `automatic`.
std::optional<std::string> encodeText(TextView text, FileEncoding encoding);
bool isUtf8(std::string_view bytes) noexcept;

// Bytes by position: a file, or in tests a string.
class ByteSource {
 public:
    virtual ~ByteSource() = default;
    // As many as there are from there, at most as many as `into` holds.
    virtual std::size_t read(uint64 offset, std::span<char> into) = 0;
    virtual uint64 size() = 0;
};

// A file for reading. Throws a CliError where it cannot be opened or read.
class InputFile final : public ByteSource {
 public:
    explicit InputFile(const std::string& name);
    std::size_t read(uint64 offset, std::span<char> into) override;
    uint64 size() override;
    platform::File& file() noexcept { return *file_; }

 private:
    std::string name_;
    std::unique_ptr<platform::File> file_;
};

// UTF-8 where every byte of the source fits it, else code page 1252. Throws a CliError for UTF-16.
FileEncoding detectEncoding(ByteSource& source);

// A file for writing, or standard output for "-". Throws a CliError where it cannot be made or written.
// Without finish() the destructor removes the file again.
class OutputFile {
 public:
    explicit OutputFile(const std::string& name);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void write(std::string_view bytes);
    void finish();
    const std::string& name() const noexcept { return name_; }

 private:
    void flush();
    void check(platform::SystemError error);

    std::string name_;
    std::unique_ptr<platform::File> file_;  // none: standard output
    std::string buffer_;
    uint64 position_ = 0;
    bool finished_ = false;
};

}  // namespace tsRtm::cli

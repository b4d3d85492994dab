#pragma once
// Scrambles stored texts.
#include <array>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

class MessagesTopic;

// By 256 key bytes from the file KeyTS.dat of the installation, loaded at the first use.
class Scrambler {
 public:
    // The messages outlive it.
    explicit Scrambler(MessagesTopic& messages) noexcept : messages_(messages) {}

    // Scrambles in place; the same call takes it back. Without a key file the bytes stay as they are.
    //
    // The file is looked for in the host's folder, then in RuntimeDir. Its first 256 bytes count, those that
    // a shorter one lacks are zero; one with zeros alone is passed over. Where neither folder has one, the
    // first use records 53 in F, logs and shows a box.
    void scramble(Bytes& bytes, int32 start);
    // Whether there is a key file; looked for as above.
    bool ready() { return load(); }

 private:
    bool load();
    bool read(TextView path);

    MessagesTopic& messages_;
    std::array<uint8, 256> keys_{};
    bool loaded_ = false;
    bool found_ = false;
};

}  // namespace tsRtm

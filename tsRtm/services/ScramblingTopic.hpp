#pragma once
// The topic of clsRtm for scrambled texts.
#include <memory>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

class MessagesTopic;
class Scrambler;

class ScramblingTopic {
 public:
    // The messages outlive it.
    explicit ScramblingTopic(MessagesTopic& messages);
    ~ScramblingTopic();

    // Scrambles a text in place, through its bytes in code page 1252; applied twice with the same Start it
    // gives the text back. Records 53 in F and shows a box where KeyTS.dat is missing; the text then stays as
    // it is.
    void Schluessel(Text& text, int32 Start);
    // The retired form. Raises 445.
    [[noreturn]] void SchlAlt(Text& text, int32 Start) const;

 private:
    std::unique_ptr<Scrambler> scrambler_;
};

}  // namespace tsRtm

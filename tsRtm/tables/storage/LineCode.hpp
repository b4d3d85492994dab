#pragma once
// Lines of list and table files: cutting a text into them, and the code that hides them.
#include <vector>

#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/services/bytes/Scrambler.hpp"
#include "tsRtm/services/clsTSCrypt.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

inline constexpr TextView kLineEnd = u"\r\n";

// The lines of a text: ended by CR LF, CR or LF, the last one with or without an end. In a text with a CR
// every LF is dropped, wherever it stands.
std::vector<Text> linesOf(TextView text);

// What a line of a file cannot hold: it would come back as something else.
enum class Holds : int32 {
    lineBreaks,  // written as another character; only the old end-of-file mark (code 26) is refused
    oneLine,     // nor a line break
};
// Raises 380 with this source for a text that the file cannot hold.
void needHeld(TextView text, Holds what, TextView Source, TextView Datei);

// Scrambles lines by the key file of the installation. A coded line is the base 64 form (RFC 4648, without
// "=") of one byte, the start value 1..255, and the scrambled bytes of the line in code page 1252.
class LineCode {
 public:
    // An empty line stays empty. A character outside code page 1252 becomes "?".
    Text encoded(TextView line);
    // A text that is no code stays as it is, so that a plain file can be turned into a coded one.
    Text decoded(TextView line);

 private:
    MessagesTopic messages_;
    Scrambler scrambler_{messages_};
    clsTSCrypt crypt_;
};

}  // namespace tsRtm

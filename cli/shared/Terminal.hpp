#pragma once
// Who sits at the other end.
#include <string>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::cli {

bool errorIsTerminal() noexcept;
// Somebody can be asked: standard input and standard error are both a terminal.
bool canAsk() noexcept;

// Text as a terminal may have it: control characters become "·", so that data cannot steer the terminal.
std::string printable(TextView text);
// Columns that a printable text takes: its code points.
std::size_t displayWidth(std::string_view utf8) noexcept;

// Starts the library on this machine with messages as the tool wants them: asked at a terminal; else each is
// a line "tsrtm: note: ..." on standard error, once, and gets the answer that loses nothing.
void startLibrary();
// Questions with yes and no are answered with yes from now on, and nobody is asked.
void agreeToAll();

}  // namespace tsRtm::cli

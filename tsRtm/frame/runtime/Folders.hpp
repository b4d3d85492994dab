#pragma once
// Start-time settings, folders and paths.
#include <initializer_list>

#include "tsRtm/platform/Settings.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm::rtmMain {

// The start-time reader of the settings store, by whole key ("Software\Tessarol"); empty for none.
Text RegRaw(platform::HKeys hive, TextView subKey, TextView name);
// A switch value: the number in the first `characters` characters of the text, rounded.
int32 SwitchValue(TextView text, std::size_t characters = 3);
// A special folder; empty where there is none.
Text SpecialFolder(int32 id);
// Non-empty parts joined by the path delimiter; the first one stands as it is. A part that would make the
// path 260 characters or longer is left out.
Text JoinPath(std::initializer_list<TextView> parts);
// Appends a part behind a delimiter; false, and nothing done, where the path would reach `limit` characters.
bool AppendPath(Text& path, TextView part, std::size_t limit = 260);
// Whether a character separates the parts of a path: data come from systems of both kinds.
constexpr bool isDelimiter(char16_t c) noexcept { return c == u'\\' || c == u'/'; }
// The file name of a path: what stands behind its last delimiter.
TextView NameOf(TextView path) noexcept;
// The platform's path delimiter.
Text PathDelimiter();
// Whether a folder is there or could be made.
bool EnsureFolder(TextView path);
bool CheckAccess(TextView path, int32 objectType, int32 mask);
// Up to the first NUL.
Text CutAtNul(TextView text);

}  // namespace tsRtm::rtmMain

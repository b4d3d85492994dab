#pragma once
// The folders of the user after the XDG base directory rules; no delimiter at the end.
#include <string>

#include "tsRtm/platform/SystemError.hpp"

namespace tsRtm::platform::posix {

std::string homeFolder();    // $HOME, else what the user database says
std::string configFolder();  // $XDG_CONFIG_HOME or ~/.config
// For all users of the machine: /etc/xdg where $XDG_CONFIG_DIRS is unset or lists it, else the last folder
// listed. Not the first, as its order of preference says: desktops put folders of their own in front, and the
// machine has one store for all sessions.
std::string machineConfigFolder();
std::string dataFolder();       // $XDG_DATA_HOME or ~/.local/share
std::string documentsFolder();  // XDG_DOCUMENTS_DIR of user-dirs.dirs where it is there, else home
std::string tempFolderPath();   // $TMPDIR or /tmp

bool isFolder(const std::string& path);
// Whether the user may do that, in the manner of access(2); what the program may, where it runs with other
// rights.
bool allowed(const std::string& path, int rights) noexcept;
// Makes a folder and those above it that are missing, as a rule for the owner alone; whatever the user's mask
// takes away, they get this mode. True where it is there now.
bool makeFolders(const std::string& path, unsigned mode = 0700);

}  // namespace tsRtm::platform::posix

#pragma once
// Where this installation of the library lies.
#include <string>

namespace tsRtm::platform::posix {

// The folder whose subfolder "Tessarol" is the installation's runtime folder. An installed tree may be moved,
// so it is looked for from the code outwards; the first of these that has such a subfolder:
//
// 1. the folder of the file that holds this code: a shared library has it beside itself;
// 2. the library folder that belongs to it: a program in bin/ with the library inside has it in ../lib;
// 3. the library folder that the build was configured for;
//
// else "/usr/lib". Asked once in a process.
const std::string& installationFolder();

// The same for code in a folder of this name.
std::string installationFolderFrom(const std::string& codeFolder);

}  // namespace tsRtm::platform::posix

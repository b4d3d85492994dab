#include "tsRtm/platform/posix/PosixPlatform.hpp"

#include <iostream>

#include "tsRtm/platform/posix/ConsoleUserInterface.hpp"
#include "tsRtm/platform/posix/PosixClock.hpp"
#include "tsRtm/platform/posix/PosixFileSystem.hpp"
#include "tsRtm/platform/posix/PosixFolders.hpp"
#include "tsRtm/platform/posix/PosixLocale.hpp"
#include "tsRtm/platform/posix/PosixNotices.hpp"
#include "tsRtm/platform/posix/PosixRandom.hpp"
#include "tsRtm/platform/posix/PosixSettings.hpp"
#include "tsRtm/platform/posix/PosixSystemInfo.hpp"
#include "tsRtm/platform/posix/PosixTimeZones.hpp"

namespace tsRtm::platform {
namespace {

struct Ground {
    posix::PosixFileSystem files;
    posix::PosixClock clock;
    posix::PosixLocale locale{posix::environmentLocale()};
    posix::PosixSettings settings{posix::configFolder() + "/tessarol",
                                  posix::machineConfigFolder() + "/tessarol"};
    posix::PosixSystemInfo system;
    posix::PosixNotices notices{locale};
    posix::ConsoleUserInterface ui{std::cin, std::cerr, posix::atTerminal(), &notices};
    posix::PosixRandom random;
    posix::PosixTimeZones zones;
    Platform platform{files,  clock, locale, settings, settings, system, system,
                      system, ui,    ui,     ui,       ui,       random, zones};
};

}  // namespace

Platform& posixPlatform() {
    // Never destroyed: global objects may ask for it while the process ends.
    static Ground& ground = *new Ground;
    return ground.platform;
}

}  // namespace tsRtm::platform

#include "tsRtm/platform/posix/PosixReplacing.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "tsRtm/platform/posix/PosixErrors.hpp"

namespace tsRtm::platform::posix {

SystemError exchangeNames(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_EXCHANGE) == 0)
        return SystemError::none;
    // Network and older file systems lack the flag.
    if (errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP) return exchangeByLink(from, to);
    return lastError();
}

SystemError exchangeByLink(const std::string& from, const std::string& to) {
    const std::string second = from + ".tmp";
    if (::link(to.c_str(), second.c_str()) != 0) {
        const bool lacksLinks = errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS || errno == EMLINK;
        return lacksLinks ? SystemError::notSupported : lastError();
    }
    if (std::rename(from.c_str(), to.c_str()) != 0) {
        const auto error = lastError();
        ::unlink(second.c_str());
        return error;
    }
    return std::rename(second.c_str(), from.c_str()) == 0 ? SystemError::none : lastError();
}

SystemError copyRights(const std::string& from, const std::string& to) {
    struct stat like {};
    struct stat own {};
    if (::stat(from.c_str(), &like) != 0 || ::stat(to.c_str(), &own) != 0) return lastError();
    const auto keep = static_cast<uid_t>(-1);
    mode_t mode = (like.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO)) | S_IWUSR;
    const bool sameGroup = own.st_gid == like.st_gid || ::chown(to.c_str(), keep, like.st_gid) == 0;
    if (!sameGroup) mode &= ~static_cast<mode_t>(S_IRWXG) | (mode & S_IRWXO) << 3;
    if (::chmod(to.c_str(), mode) != 0) return lastError();
    if (own.st_uid != like.st_uid && ::chown(to.c_str(), like.st_uid, static_cast<gid_t>(-1)) != 0)
        return lastError();
    return sameGroup ? SystemError::none : SystemError::accessDenied;
}

}  // namespace tsRtm::platform::posix

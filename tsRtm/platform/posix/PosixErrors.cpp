#include "tsRtm/platform/posix/PosixErrors.hpp"

#include <cerrno>

namespace tsRtm::platform::posix {
namespace {

struct KnownError {
    int number;
    SystemError error;
};

// clang-format off
constexpr KnownError kErrors[] = {
    {ENOENT,       SystemError::fileNotFound},
    {ENOTDIR,      SystemError::pathNotFound},
    {EMFILE,       SystemError::tooManyOpenFiles},
    {ENFILE,       SystemError::tooManyOpenFiles},
    {EACCES,       SystemError::accessDenied},
    {EPERM,        SystemError::accessDenied},
    {EISDIR,       SystemError::accessDenied},
    {EROFS,        SystemError::writeProtected},
    {EBADF,        SystemError::invalidHandle},
    {ENOMEM,       SystemError::notEnoughMemory},
    {ENXIO,        SystemError::notReady},
    {ENODEV,       SystemError::notReady},
    {EBUSY,        SystemError::sharingViolation},
    {ETXTBSY,      SystemError::sharingViolation},
    {EAGAIN,       SystemError::lockViolation},
    {EDEADLK,      SystemError::lockViolation},
    {ENOLCK,       SystemError::notSupported},
    {ENOSYS,       SystemError::notSupported},
    {EOPNOTSUPP,   SystemError::notSupported},
    {EXDEV,        SystemError::notSupported},
    {EINVAL,       SystemError::invalidParameter},
    {ENOSPC,       SystemError::diskFull},
    {EDQUOT,       SystemError::diskFull},
    {ELOOP,        SystemError::invalidName},
    {EILSEQ,       SystemError::invalidName},
    {ENOTEMPTY,    SystemError::directoryNotEmpty},
    {EEXIST,       SystemError::alreadyExists},
    {ENAMETOOLONG, SystemError::nameTooLong},
    {EFBIG,        SystemError::fileTooLarge},
    {EOVERFLOW,    SystemError::fileTooLarge},
    {EINTR,        SystemError::cancelled},
    {ECANCELED,    SystemError::cancelled},
};
// clang-format on

}  // namespace

SystemError fromErrno(int number) noexcept {
    if (number == 0) return SystemError::none;
    for (const auto& row : kErrors)
        if (row.number == number) return row.error;
    return SystemError::deviceError;
}

SystemError lastError() noexcept { return fromErrno(errno); }

}  // namespace tsRtm::platform::posix

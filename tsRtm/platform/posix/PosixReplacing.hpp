#pragma once
// What a file needs that takes the place of another one.
#include <string>

#include "tsRtm/platform/SystemError.hpp"

namespace tsRtm::platform::posix {

// `from` takes the place of `to`, and the old one gets the name `from`; `to` is never without a file.
SystemError exchangeNames(const std::string& from, const std::string& to);

// The same for volumes that cannot do it in one step: the old file gets a second name (`from` with ".tmp"
// behind it) before its first one goes to the new file. notSupported where a file has one name only. A
// process that dies in between leaves the old file under its second name, too.
SystemError exchangeByLink(const std::string& from, const std::string& to);

// The permissions of `from` for `to`, whose owner may always write, and the owner and group of `from`. What
// this process may not give away stays its own; a group that is not the same gets no more rights than
// everybody has.
SystemError copyRights(const std::string& from, const std::string& to);

}  // namespace tsRtm::platform::posix

#pragma once
#include <QByteArray>

#include "tsRtm/platform/SystemError.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm::desktop {

// A file with this content, which appears whole or not at all: written beside its place and flushed, then
// given its name in one step. One of the name that is there already stays, and is fileExists, unless it is
// replaced.
platform::SystemError storeFile(TextView name, const QByteArray& content, bool replace);

}  // namespace tsRtm::desktop

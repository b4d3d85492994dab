#pragma once
// Names of files: their parts, and how they are put together. "/" and "\" separate, whatever the ground says.
#include "tsRtm/types/Text.hpp"
#include "tsRtm/types/Variant.hpp"

namespace tsRtm::paths {

// Non-empty parts joined by the path delimiter; the first one stands as it is. A part that would make the
// path too long for the system is left out.
Text join(const VariantList& parts);

Text folder(TextView path);  // without a delimiter at its end unless it is a root
Text base(TextView path);    // last part without its extension
Text drive(TextView path);   // "C:", "\\server\share", "/" or empty
Text last(TextView path);
Text extension(TextView path);  // without the dot
Text temporary();               // "rad" and five hexadecimal digits and ".tmp"
// A file name without what may not stand in one, 260 characters at most.
Text cleaned(TextView path);

}  // namespace tsRtm::paths

#pragma once
#include <optional>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// The full name that a job's file gets: of the job, with the extension ".pdf" in any case of letters, and
// with "[2]." and so on before it where such a file is there. Without a folder, that of the user's documents.
// The folder is made; nothing where that fails.
std::optional<Text> pdfPlace(TextView folder, TextView jobName);

}  // namespace tsRtm

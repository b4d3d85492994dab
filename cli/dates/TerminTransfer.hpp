#pragma once
// Appointments between a calendar and iCalendar files.
#include <memory>
#include <string>

#include "tsRtm/appointments/clsTerminkalender.hpp"

namespace tsRtm::cli {

// The calendar of that name. Throws a CliError where there is none.
std::shared_ptr<clsTerminkalender> openCalendar(const std::string& name, bool writing);

void importTermine(const std::string& name, const std::string& file);
// `begin`: when series without a validity begin; `today`: when the file was made. Julian numbers.
void exportTermine(const std::string& name, const std::string& file, int32 begin, int32 today);

}  // namespace tsRtm::cli

#pragma once
// All that is public.
#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/clsRtm.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/fields/clsCTL.hpp"
#include "tsRtm/fields/clsMasken.hpp"
#include "tsRtm/frame/clsStartObjects.hpp"
#include "tsRtm/frame/rtmMain.hpp"
#include "tsRtm/platform/Platform.hpp"

#pragma once
// What all calendar tests stand on: a German ground in June 2026.
#include "tests/support/Table.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::test {

class CalendarTest : public ::testing::Test {
 protected:
    CalendarTest() { library.ground.clock.set(Date::of(2026, 6, 15, 8, 30, 5)); }

    // As if the user's locale wrote dates in another order.
    static void dateForm(int32 form, TextView separator) {
        rtmMain::state().locale.dateForm = form;
        rtmMain::state().locale.sepDate = separator;
    }

    StartedLibrary library;
    clsDatum datum;
};

}  // namespace tsRtm::test

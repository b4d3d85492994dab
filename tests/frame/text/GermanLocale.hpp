#pragma once
// German separators for the length of a test.
#include <gtest/gtest.h>

#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::test {

class GermanLocale : public ::testing::Test {
 protected:
    GermanLocale() : before_(locale()) {
        locale().sepDec = u",";
        locale().sep1000 = u".";
        locale().sepDate = u".";
        locale().sepTime = u":";
        locale().dateForm = 1;
    }
    ~GermanLocale() override { locale() = before_; }

    static rtmMain::LocaleBlock& locale() { return rtmMain::state().locale; }

 private:
    rtmMain::LocaleBlock before_;
};

}  // namespace tsRtm::test

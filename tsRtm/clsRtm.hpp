#pragma once
// The facade: all operations of the library that belong to no object of their own, as the sum of its topics.
#include "tsRtm/database/DatabasesTopic.hpp"
#include "tsRtm/frame/ConversionsTopic.hpp"
#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/OptionsTopic.hpp"
#include "tsRtm/frame/RtfTopic.hpp"
#include "tsRtm/frame/StreamsTopic.hpp"
#include "tsRtm/frame/clsCommon.hpp"
#include "tsRtm/services/ScramblingTopic.hpp"
#include "tsRtm/tables/ShortcutsTopic.hpp"

namespace tsRtm {

class clsBanken;

// A global object: anyone may create one, the state behind it is the process's. Each keeps its own table of
// open files, key names and key table. A class that needs one topic takes that topic, and a clsRtm passes for
// each of its topics. Creating the first one starts the library on the ground of this machine, unless
// rtmMain::Main did so before.
class clsRtm : public MessagesTopic,
               public ConversionsTopic,
               public ScramblingTopic,
               public RtfTopic,
               public FilesTopic,
               public StreamsTopic,
               public OptionsTopic,
               public ShortcutsTopic,
               public DatabasesTopic {
 public:
    clsRtm();
    ~clsRtm() override;

    // The view of the global state.
    clsCommon& Common() noexcept { return common_; }

    // The banks, one object for all facades. While a facade lives, input is checked against it, unless the
    // application has plugged in another register.
    std::shared_ptr<clsBanken> Banken() const { return banken_; }

    using FilesTopic::messages;

 private:
    clsCommon common_;
    std::shared_ptr<clsBanken> banken_;
};

}  // namespace tsRtm

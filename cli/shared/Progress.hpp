#pragma once
// A bar on standard error for work that takes long; silent where that is no terminal.
#include <chrono>
#include <string>

#include "tsRtm/types/Numbers.hpp"

namespace tsRtm::cli {

// "Loading  [########............]  40%  123 400 rows/s  0:12 left". Takes itself away at its end.
class Progress {
 public:
    // `unit` names what is counted for the rate.
    Progress(std::string label, std::string unit);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // So much of the whole is done; `counted` units stand behind it. Cheap: draws ten times a second.
    void update(uint64 done, uint64 of, uint64 counted);
    void update(uint64 done, uint64 of) { update(done, of, done); }

 private:
    void draw(double share, double seconds, uint64 counted);

    std::string label_;
    std::string unit_;
    bool on_;
    std::size_t drawn_ = 0;  // columns
    std::chrono::nanoseconds start_{};
    std::chrono::nanoseconds last_{};
};

}  // namespace tsRtm::cli

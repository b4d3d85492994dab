#include "cli/shared/Progress.hpp"

#include <algorithm>
#include <cmath>
#include <iostream>

#include "cli/shared/Terminal.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm::cli {
namespace {

using namespace std::chrono_literals;

constexpr int kBarWidth = 24;

std::string grouped(uint64 number) {
    std::string digits = std::to_string(number);
    for (auto at = static_cast<std::ptrdiff_t>(digits.size()) - 3; at > 0; at -= 3)
        digits.insert(static_cast<std::size_t>(at), " ");
    return digits;
}

std::string minutes(double seconds) {
    const auto whole = std::llround(seconds);
    const std::string rest = std::to_string(whole % 60);
    return std::to_string(whole / 60) + (rest.size() < 2 ? ":0" : ":") + rest;
}

}  // namespace

Progress::Progress(std::string label, std::string unit)
    : label_(std::move(label)), unit_(std::move(unit)), on_(errorIsTerminal()) {
    if (on_) start_ = last_ = rtmMain::system().clock.elapsed();
}

Progress::~Progress() {
    if (drawn_ > 0) std::cerr << '\r' << std::string(drawn_, ' ') << '\r' << std::flush;
}

void Progress::update(uint64 done, uint64 of, uint64 counted) {
    if (!on_ || of == 0) return;
    const auto now = rtmMain::system().clock.elapsed();
    if (now - last_ < 100ms) return;
    last_ = now;
    draw(std::min(1.0, static_cast<double>(done) / static_cast<double>(of)),
         std::chrono::duration<double>(now - start_).count(), counted);
}

void Progress::draw(double share, double seconds, uint64 counted) {
    const int full = static_cast<int>(share * kBarWidth);
    std::string line = label_ + "  [" + std::string(static_cast<std::size_t>(full), '#') +
                       std::string(static_cast<std::size_t>(kBarWidth - full), '.') + "]  " +
                       std::to_string(static_cast<int>(share * 100)) + "%";
    if (seconds > 0)
        line +=
            "  " + grouped(static_cast<uint64>(static_cast<double>(counted) / seconds)) + " " + unit_ + "/s";
    if (share > 0) line += "  " + minutes(seconds / share - seconds) + " left";
    const std::size_t width = displayWidth(line);
    std::cerr << '\r' << line << std::string(drawn_ > width ? drawn_ - width : 0, ' ') << std::flush;
    drawn_ = std::max(drawn_, width);
}

}  // namespace tsRtm::cli

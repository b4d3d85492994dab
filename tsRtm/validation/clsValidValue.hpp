#pragma once
// Numbers within limits.
#include "tsRtm/validation/ValidCheckerBase.hpp"

namespace tsRtm {

// A value is the number that it begins with, "," or "." before the decimals: "12,5 kg" is 12.5, and a text
// without a number is 0. With bit 32 of the options a value must be as long as the control's MaxLength.
class clsValidValue final : public ValidCheckerBase {
 public:
    clsValidValue() noexcept;

    // Open at first.
    float64 Minimum() const noexcept { return minimum_; }
    void Minimum(float64 value) noexcept { minimum_ = value; }
    float64 Maximum() const noexcept { return maximum_; }
    void Maximum(float64 value) noexcept { maximum_ = value; }
    // As a value is read.
    static float64 NumberOf(TextView text);

    eValidResult Check(const std::shared_ptr<iValidControl>& Ctrl, TextView Wert) override;
    Text Msg() const override;
    // Places of the control whose value was last out of the limits, where it has that property.
    std::optional<int32> Decimals() const noexcept { return decimals_; }

 private:
    Text ShortText() const override;

    float64 minimum_;
    float64 maximum_;
    std::optional<int32> decimals_;
    Text message_;
};

}  // namespace tsRtm

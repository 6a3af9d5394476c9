#include "dialog/number_step.h"

#include <cstdio>
#include <cstring>
#include <limits>

namespace tarvo {

double StepNumber(double value, float delta, float step, float minimum, float maximum) {
    const float moved = delta * step;
    const double next = value + moved;
    if (next > maximum) {
        return maximum;
    }
    return next >= minimum ? next : minimum;
}

std::wstring OneDecimal(double value) {
    constexpr std::size_t kLongest = 320; // the largest double has 309 digits before the point
    char digits[kLongest] = {};
    std::snprintf(digits, sizeof digits, "%.1f", value);
    return std::wstring(digits, digits + std::strlen(digits));
}

std::int32_t TruncateToInt32(double value) {
    using Limits = std::numeric_limits<std::int32_t>;
    // One beyond each limit still truncates to the limit.
    const bool fits = value > Limits::min() - 1.0 && value < Limits::max() + 1.0;
    return fits ? static_cast<std::int32_t>(value) : Limits::min();
}

} // namespace tarvo

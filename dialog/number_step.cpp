#include "dialog/number_step.h"

#include <cstdio>
#include <limits>
#include <vector>

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
    constexpr const char* kFormat = "%.1f";
    std::vector<char> digits(static_cast<std::size_t>(std::snprintf(nullptr, 0, kFormat, value)) + 1);
    std::snprintf(digits.data(), digits.size(), kFormat, value);
    return std::wstring(digits.begin(), digits.end() - 1);
}

std::int32_t TruncateToInt32(double value) {
    using Limits = std::numeric_limits<std::int32_t>;
    // One beyond each limit still truncates to the limit.
    const bool fits = value > Limits::min() - 1.0 && value < Limits::max() + 1.0;
    return fits ? static_cast<std::int32_t>(value) : Limits::min();
}

} // namespace tarvo

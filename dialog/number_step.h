// Arithmetic of the number fields, apart from the controls that show them.
#pragma once

#include <cstdint>
#include <string>

namespace tarvo {

// `value` moved by delta steps and kept within the limits. The product is taken in 32 bits, the sum in 64;
// what is not a number ends at the lower limit.
double StepNumber(double value, float delta, float step, float minimum, float maximum);

// "%.1f"
std::wstring OneDecimal(double value);

// Towards zero. What does not fit, or is not a number, gives the lowest value, as the processor's own
// conversion does.
std::int32_t TruncateToInt32(double value);

} // namespace tarvo

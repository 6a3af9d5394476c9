// Arithmetic of the number fields, without their controls.
#pragma once

#include <cstdint>
#include <string>

namespace tarvo {

// `value` moved by delta steps and kept within the limits. The product is a 32-bit float, the sum a 64-bit
// float; a value that is not a number becomes the lower limit.
double StepNumber(double value, float delta, float step, float minimum, float maximum);

// "%.1f"
std::wstring OneDecimal(double value);

// Towards zero. The lowest value when `value` does not fit or is not a number, as the processor does it.
std::int32_t TruncateToInt32(double value);

} // namespace tarvo

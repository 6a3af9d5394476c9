// Numbers out of text the way the C runtime's atoi reads them, but defined for every input.
#pragma once

#include <cstdint>
#include <string>

namespace tarvo {

// Leading blanks, a sign and digits; anything else ends the number, nothing at all is 0. Out of range: the
// limit.
std::int32_t DecimalInt(const std::string& text);

} // namespace tarvo

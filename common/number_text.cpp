#include "common/number_text.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace tarvo {

std::int32_t DecimalInt(const std::string& text) {
    // strtol stops at its own limits, which differ between the platforms; the common limits follow.
    const long value = std::strtol(text.c_str(), nullptr, 10);
    const long lowest = std::numeric_limits<std::int32_t>::min();
    const long highest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::max(lowest, std::min(highest, value)));
}

} // namespace tarvo

// The notices that an analysis must give, from its own text, in a second way.
#pragma once

#include "tests/fuzz/support/json_tree.h"

#include <string>
#include <vector>

namespace fuzz {

// For an analysis that the reader takes and whose Corona limits are not all off. False when a number would
// have to be written as the library writes it.
bool expected_notices(const Node& analysis, std::vector<std::wstring>& notices);

} // namespace fuzz

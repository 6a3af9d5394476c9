// What the codes in the "errors" of an analysis mean.
#pragma once

#include <string>

namespace tarvo {

// The dialog shows a notice for it: not everything could be read.
constexpr int kIncompleteAnalysis = 107;

// The log line for a code: its number, and what it says in words.
std::string AnalysisCodeLine(int code);

} // namespace tarvo

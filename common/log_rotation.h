// Which files a log rotation deletes and renames, apart from doing it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tarvo {

struct RotationStep {
    std::string from;
    std::string to; // empty: `from` is deleted
};

// The current file is `base` + ".log", older ones `base` + "1.log" (the newest) to `base` + (max_files - 1) +
// ".log". `exists` is asked for numbered files only. The last step moves the current file to number 1 in any
// case, also where that name is taken (the move then fails and the current file grows on).
std::vector<RotationStep> PlanRotation(const std::string& base, std::uint32_t max_files,
                                       const std::function<bool(const std::string&)>& exists);

} // namespace tarvo

#include "common/log_rotation.h"

namespace tarvo {

namespace {

std::string numbered(const std::string& base, std::uint32_t number) {
    return base + std::to_string(number) + ".log";
}

} // namespace

std::vector<RotationStep> PlanRotation(const std::string& base, std::uint32_t max_files,
                                       const std::function<bool(const std::string&)>& exists) {
    std::vector<RotationStep> steps;
    const std::uint32_t oldest = max_files == 0 ? 0 : max_files - 1;
    for (std::uint32_t number = oldest; number >= 1; --number) {
        const std::string name = numbered(base, number);
        if (exists(name)) {
            steps.push_back({name, number == oldest ? std::string() : numbered(base, number + 1)});
        }
    }
    steps.push_back({base + ".log", numbered(base, 1)});
    return steps;
}

} // namespace tarvo

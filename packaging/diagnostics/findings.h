// Makes findings of the facts: what is right, what is not, why, and what to do about it.
#pragma once

#include "packaging/diagnostics/facts.h"

#include <string>
#include <vector>

namespace diagnostics {

enum class Severity { fine, warning, problem };

struct Finding {
    Severity severity;
    std::string what;
    std::string cure; // empty when everything is fine
};

std::vector<Finding> judge(const Facts& facts);

// One block for each finding, problems first, and a last line that counts them. Lines end with "\r\n".
std::string summary_text(const std::vector<Finding>& findings);

bool has_problem(const std::vector<Finding>& findings);

} // namespace diagnostics

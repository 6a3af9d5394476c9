// Makes findings of the facts: what is right, what is not, why, and what to do about it.
#pragma once

#include "packaging/diagnostics/facts.h"
#include "packaging/diagnostics/messages.h"

#include <string>
#include <vector>

namespace diagnostics {

enum class Severity { fine, warning, problem };

struct Finding {
    Severity severity;
    Sentence what;
    Sentence cure; // Message::nothing when everything is fine
};

// What is found, in the order in which it is judged.
class Findings {
public:
    void fine(Message what, std::vector<Argument> arguments = {}) {
        list_.push_back({Severity::fine, {what, std::move(arguments)}, {}});
    }
    void warning(Sentence what, Sentence cure) { add(Severity::warning, std::move(what), std::move(cure)); }
    void problem(Sentence what, Sentence cure) { add(Severity::problem, std::move(what), std::move(cure)); }
    const std::vector<Finding>& list() const { return list_; }

private:
    void add(Severity severity, Sentence what, Sentence cure) {
        list_.push_back({severity, std::move(what), std::move(cure)});
    }

    std::vector<Finding> list_;
};

// The parts of judge().
void judge_installation(const Facts& facts, Findings& findings);
void judge_folders(const Facts& facts, Findings& findings);
void judge_client(const Facts& facts, Findings& findings);
void judge_last_submission(const Facts& facts, Findings& findings);

std::vector<Finding> judge(const Facts& facts);

// One block for each finding, problems first, and a last line that counts them. Lines end with "\r\n".
std::string summary_text(const std::vector<Finding>& findings, Language language, const Hide& hide = Hide());

bool has_problem(const std::vector<Finding>& findings);

} // namespace diagnostics

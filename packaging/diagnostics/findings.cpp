#include "packaging/diagnostics/findings.h"

#include <algorithm>

namespace diagnostics {

namespace {

Message label(Severity severity) {
    return severity == Severity::problem   ? Message::label_problem
           : severity == Severity::warning ? Message::label_warning
                                           : Message::label_fine;
}

std::size_t count(const std::vector<Finding>& findings, Severity severity) {
    return static_cast<std::size_t>(
        std::count_if(findings.begin(), findings.end(),
                      [severity](const Finding& finding) { return finding.severity == severity; }));
}

std::string block(const Finding& finding, Language language, const Hide& hide) {
    std::string lines =
        text(label(finding.severity), language) + rendered(finding.what, language, hide) + "\r\n";
    if (finding.cure.message != Message::nothing) {
        lines += "         -> " + rendered(finding.cure, language, hide) + "\r\n";
    }
    return lines;
}

} // namespace

std::vector<Finding> judge(const Facts& facts) {
    Findings findings;
    judge_installation(facts, findings);
    judge_client(facts, findings);
    judge_folders(facts, findings);
    judge_last_submission(facts, findings);
    return findings.list();
}

std::string summary_text(const std::vector<Finding>& findings, Language language, const Hide& hide) {
    std::string lines;
    for (Severity severity : {Severity::problem, Severity::warning, Severity::fine}) {
        for (const Finding& finding : findings) {
            if (finding.severity == severity) {
                lines += block(finding, language, hide);
            }
        }
    }
    return lines + "\r\n" +
           text(Message::counted, language,
                {{std::to_string(count(findings, Severity::problem))},
                 {std::to_string(count(findings, Severity::warning))}}) +
           "\r\n";
}

bool has_problem(const std::vector<Finding>& findings) {
    return count(findings, Severity::problem) != 0;
}

} // namespace diagnostics

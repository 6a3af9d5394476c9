// The desktop client: what its settings say, and what answers at its address.
#include "packaging/diagnostics/findings.h"

namespace diagnostics {

namespace {

constexpr int kLargestPort = 65535;
constexpr int kAccepted = 10001;
// The answers that say something about the client, whatever was asked for: its project, its version, itself.
constexpr int kAboutItself[] = {10002, 10003, 10004, 11000};

void judge_settings(const Facts& facts, Findings& findings) {
    const Sentence cure = {Message::cure_ini_value, {{facts.ini.path}}};
    if (facts.ip.empty()) {
        findings.problem({Message::ip_missing, {}}, cure);
    }
    if (facts.port < 1 || facts.port > kLargestPort) {
        findings.problem({Message::port_unusable, {{facts.port_text}}}, cure);
    }
    if (facts.lower_version.empty()) {
        findings.problem({Message::lower_version_missing, {}}, cure);
    } else if (!facts.module_version.empty() && facts.lower_version > facts.module_version) {
        // The plugin compares the texts in the same way.
        findings.problem({Message::version_too_low, {{facts.lower_version}}},
                         {Message::cure_version_too_low, {}});
    }
}

void judge_code(const std::string& port, int code, const Facts& facts, Findings& findings) {
    if (code == kAccepted) {
        findings.warning({Message::client_accepts, {{facts.ip}, {port}}}, {Message::cure_client_accepts, {}});
        return;
    }
    for (int about : kAboutItself) {
        if (code == about) {
            findings.warning({Message::client_says,
                              {{facts.ip},
                               {port},
                               {std::to_string(code)},
                               {code_meaning(code).english, Origin::ours, code_meaning(code).chinese}}},
                             {Message::cure_client_says, {}});
            return;
        }
    }
    findings.fine(Message::client_answers, {{facts.ip}, {port}, {std::to_string(code)}});
}

void judge_answer(const std::string& port, const Facts& facts, Findings& findings) {
    int code = 0;
    const AnswerForm form = answer_form(facts.client.body, code);
    if (form == AnswerForm::code) {
        judge_code(port, code, facts, findings);
        return;
    }
    const Message how = form == AnswerForm::empty  ? Message::answer_empty
                        : form == AnswerForm::page ? Message::answer_page
                        : form == AnswerForm::text ? Message::answer_text
                                                   : Message::answer_json;
    findings.problem({Message::client_foreign,
                      {{facts.ip},
                       {port},
                       {std::to_string(facts.client.status)},
                       {pattern(how, Language::english), Origin::ours, pattern(how, Language::chinese)}}},
                     {Message::cure_client_foreign, {{port}, {facts.ini.path}}});
}

void judge_connection(const Facts& facts, Findings& findings) {
    const std::string port = std::to_string(facts.port);
    const std::vector<Argument> place = {{facts.ip}, {port}};
    const std::vector<Argument> ini = {{facts.ini.path}};
    switch (facts.client.connection) {
    case Connection::not_tried:
        break;
    case Connection::reached:
        if (facts.client.answered) {
            judge_answer(port, facts, findings);
        } else {
            findings.problem(
                {Message::client_silent, {{facts.ip}, {port}, {std::to_string(facts.client.error)}}},
                {Message::cure_client_foreign, {{port}, {facts.ini.path}}});
        }
        break;
    case Connection::refused:
        findings.problem({Message::client_refused, place}, {Message::cure_client_refused, ini});
        break;
    case Connection::timed_out:
        findings.problem({Message::client_timed_out, place}, {Message::cure_client_timed_out, ini});
        break;
    case Connection::unknown_name:
        findings.problem({Message::client_unknown_name, {{facts.ip}}},
                         {Message::cure_client_unknown_name, ini});
        break;
    }
}

} // namespace

void judge_client(const Facts& facts, Findings& findings) {
    if (!facts.has_data_folder) {
        return;
    }
    if (!facts.ini.exists) {
        findings.problem({Message::ini_missing, {{facts.ini.path}}}, {Message::cure_ini_missing, {}});
        return;
    }
    judge_settings(facts, findings);
    judge_connection(facts, findings);
}

} // namespace diagnostics

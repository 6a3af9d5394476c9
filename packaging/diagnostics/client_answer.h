// What a program that listens at the client's address answers to a request that names no job.
#pragma once

#include <string>

namespace diagnostics {

enum class Connection { not_tried, reached, refused, timed_out, unknown_name };

struct ClientFact {
    Connection connection = Connection::not_tried;
    // When it was reached:
    bool answered = false;
    unsigned long error = 0; // of Windows, without an answer
    int status = 0;          // of HTTP
    std::string body;        // the beginning of it
};

// As the plugin posts it, for a job without scene, document and archive: there is nothing that a client could
// take. It has all four members, so that a client reaches its check of the files.
std::string empty_request();

enum class AnswerForm { empty, page, text, json, code };

// `code` is filled with AnswerForm::code only.
AnswerForm answer_form(const std::string& body, int& code);

} // namespace diagnostics

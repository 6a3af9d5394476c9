// Checks requests, records them in a file and prints them. The record is complete before the answer is sent,
// so a program that has the answer can read it.
#pragma once

#include "standin/base/files_win32.h"
#include "standin/client/http_request.h"
#include "standin/client/options.h"
#include "standin/client/request_check.h"

#include <json/value.h>

#include <mutex>
#include <string>

namespace client {

struct Answer {
    int status = 200;
    std::string body;
};

// Prints at once, also into a pipe.
void print_line(const std::string& line);

class RequestLog {
public:
    RequestLog(const Options& options, const Answer& answer) : options_(options), answer_(answer) {}

    bool open_record();

    // Any thread; one request at a time.
    void take(const HttpRequest& request);

private:
    Json::Value record_of(const HttpRequest& request, const RequestFindings& findings) const;
    Json::Value answer_record() const;
    void print(const HttpRequest& request, const RequestFindings& findings) const;

    const Options& options_;
    const Answer& answer_;
    std::mutex mutex_;
    base::LineFile record_;
    int number_ = 0;
};

} // namespace client

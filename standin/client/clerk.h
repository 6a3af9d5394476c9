// Takes requests in: has them checked, records them, and tells the person at the console. The record is
// complete before the answer leaves, so whoever got the answer can read it.
#pragma once

#include "standin/client/files.h"
#include "standin/client/http_request.h"
#include "standin/client/options.h"
#include "standin/client/request_check.h"

#include <json/value.h>

#include <mutex>
#include <string>

namespace desktop_client {

struct Answer {
    int status = 200;
    std::string body;
};

// Prints at once, also into a pipe.
void print_line(const std::string& line);

class Clerk {
public:
    Clerk(const Options& options, const Answer& answer) : options_(options), answer_(answer) {}

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
    LineFile record_;
    int number_ = 0;
};

} // namespace desktop_client

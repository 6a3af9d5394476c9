// A request as it arrived, and what the client checks before it would take a job: the request itself, the
// submit document, the archive.
#pragma once

#include <json/value.h>

#include <string>
#include <utility>
#include <vector>

namespace client {

struct HttpRequest {
    bool was_read = true; // false: the connection was accepted and closed unread
    std::string method;
    std::string target; // the path with its query
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;
};

// Every value of the header, joined by ", "; empty when it was not sent.
std::string header_value(const HttpRequest& request, const std::string& name);

// Reads "POST / HTTP/1.1" and the header lines below it. Returns false when `head` is not HTTP.
bool parse_request_head(const std::string& head, HttpRequest& request);

// Opens the files and runs 7z.exe, without a time limit: a large scene takes its time. Returns
//   "checks": {"check", "ok", "detail"} each; a check that an earlier failure made impossible is left out
//   "ok":     whether there are checks and all of them hold
//   "job":    what the request points at; texts are empty and sizes -1 where they are not known
Json::Value check_request(const HttpRequest& request, const std::wstring& seven_zip);

} // namespace client

// One request as it arrived.
#pragma once

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

} // namespace client

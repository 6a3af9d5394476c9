#include "standin/client/http_request.h"

#include "standin/base/text.h"

#include <sstream>

namespace client {

std::string header_value(const HttpRequest& request, const std::string& name) {
    std::string value;
    for (const auto& header : request.headers) {
        if (base::equal_ignoring_case(header.first, name)) {
            value += (value.empty() ? "" : ", ") + header.second;
        }
    }
    return value;
}

bool parse_request_head(const std::string& head, HttpRequest& request) {
    std::istringstream lines(head);
    std::string version;
    lines >> request.method >> request.target >> version;
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line)) {
        line = line.substr(0, line.find('\r'));
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos) {
            return false;
        }
        const std::size_t value = line.find_first_not_of(" \t", colon + 1);
        request.headers.emplace_back(line.substr(0, colon),
                                     value == std::string::npos ? std::string() : line.substr(value));
    }
    return version.compare(0, 5, "HTTP/") == 0;
}

} // namespace client

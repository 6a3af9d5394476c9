#include "standin/client/http_request.h"

#include "standin/base/text.h"

namespace client {

namespace {

std::string trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos) {
        return std::string();
    }
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::vector<std::string> lines_of(const std::string& head) {
    std::vector<std::string> lines;
    size_t start = 0;
    for (size_t end = head.find("\r\n"); end != std::string::npos; end = head.find("\r\n", start)) {
        lines.push_back(head.substr(start, end - start));
        start = end + 2;
    }
    lines.push_back(head.substr(start));
    return lines;
}

} // namespace

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
    const std::vector<std::string> lines = lines_of(head);
    const size_t first = lines[0].find(' ');
    const size_t last = lines[0].rfind(' ');
    if (first == std::string::npos || first == last || lines[0].compare(last + 1, 5, "HTTP/") != 0) {
        return false;
    }
    request.method = lines[0].substr(0, first);
    request.target = lines[0].substr(first + 1, last - first - 1);
    for (size_t i = 1; i < lines.size(); ++i) {
        const size_t colon = lines[i].find(':');
        if (colon == std::string::npos) {
            return false;
        }
        request.headers.emplace_back(lines[i].substr(0, colon), trimmed(lines[i].substr(colon + 1)));
    }
    return true;
}

} // namespace client

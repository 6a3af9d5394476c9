// The command line of the client.
#pragma once

#include "standin/base/arguments.h"

#include <string>
#include <vector>

namespace client {

struct Options {
    int port = 0; // 0: a free one
    std::string mode = "reply";
    std::string reply_body = "{\"ret\":10001}"; // UTF-8
    unsigned delay_ms = 0;
    std::wstring ready_file;
    std::wstring record_file;
    std::wstring stop_file;
    std::wstring seven_zip;
};

// `arguments` without the program's name; `text` is the help page or the error message.
base::Arguments parse_options(const std::vector<std::wstring>& arguments, Options& options,
                              std::string& text);

} // namespace client

// The command line of the client.
#pragma once

#include "standin/base/arguments.h"

#include <string>
#include <vector>

namespace client {

enum class Mode {
    reply,
    status_500,
    chunked,
    empty,
    garbage,
    big,
    close,
    close_after_header,
    pieces,
    bytes,
    silence,
    no_length,
};

struct Options {
    int port = 0; // 0: a free one
    Mode mode = Mode::reply;
    std::string mode_name = "reply";
    std::string reply_body = "{\"ret\":10001}"; // UTF-8, or the bytes of --body-file
    unsigned delay_ms = 0;
    bool once = false;
    std::wstring ready_file;
    std::wstring record_file;
    std::wstring stop_file;
    std::wstring body_file;
    std::wstring seven_zip;
};

// True for answers that no HTTP library would give; they are sent through a plain socket.
bool needs_plain_socket(Mode mode);

// `arguments` without the program's name; `text` is the help page or the error message.
base::Arguments parse_options(const std::vector<std::wstring>& arguments, Options& options,
                              std::string& text);

} // namespace client

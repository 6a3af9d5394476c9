#include "standin/client/options.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace client {

namespace {

struct ModeEntry {
    const char* name;
    Mode mode;
    bool plain_socket;
    bool own_body; // --reply, --body and --body-file would have no effect
    const char* help;
};

constexpr ModeEntry kModes[] = {
    {"reply", Mode::reply, false, false, "answers with status 200 (the default)"},
    {"status-500", Mode::status_500, false, false, "answers with status 500"},
    {"chunked", Mode::chunked, false, false, "sends the answer in HTTP chunks"},
    {"empty", Mode::empty, false, true, "answers with status 200 and no body"},
    {"garbage", Mode::garbage, false, true, "answers with text that is not JSON"},
    {"big", Mode::big, false, true, "answers with 10 MB"},
    {"close", Mode::close, true, true, "accepts and closes without reading"},
    {"close-after-header", Mode::close_after_header, true, false, "closes after the answer's header"},
    {"pieces", Mode::pieces, true, false, "sends the body in two packets, a second apart"},
    {"bytes", Mode::bytes, true, false, "sends the answer one byte at a time"},
    {"silence", Mode::silence, true, true, "reads, never answers, and closes after --delay"},
    {"no-length", Mode::no_length, true, false, "answers without a length, and closes"},
};

constexpr int kMillisecondsPerDay = 24 * 60 * 60 * 1000;

const ModeEntry* find_mode(const std::string& name) {
    const ModeEntry* found = std::find_if(std::begin(kModes), std::end(kModes),
                                          [&name](const ModeEntry& entry) { return name == entry.name; });
    return found == std::end(kModes) ? nullptr : found;
}

std::string list_of_modes() {
    std::string text = "modes:\n";
    for (const ModeEntry& entry : kModes) {
        std::string name = entry.name;
        name.resize(20, ' ');
        text += "  " + name + entry.help + "\n";
    }
    return text;
}

void add_body_options(CLI::App& app, Options& options) {
    CLI::Option* reply = app.add_option_function<std::int64_t>(
        "--reply",
        [&options](const std::int64_t& code) {
            options.reply_body = "{\"ret\":" + std::to_string(code) + "}";
        },
        "answers {\"ret\":CODE}; 10001, the default, accepts the job");
    CLI::Option* body = app.add_option("--body", options.reply_body, "answers with this text instead");
    CLI::Option* file =
        base::add_path(app, "--body-file", options.body_file, "answers with the bytes of this file instead");
    body->excludes(reply);
    file->excludes(reply)->excludes(body);
    app.callback([reply, body, file, &options] {
        const ModeEntry& mode = *find_mode(options.mode_name);
        options.mode = mode.mode;
        if (mode.own_body && reply->count() + body->count() + file->count() > 0) {
            throw CLI::ValidationError("mode " + options.mode_name +
                                       " never sends the text of --reply, --body or --body-file");
        }
    });
}

} // namespace

bool needs_plain_socket(Mode mode) {
    return std::any_of(std::begin(kModes), std::end(kModes),
                       [mode](const ModeEntry& entry) { return entry.mode == mode && entry.plain_socket; });
}

base::Arguments parse_options(const std::vector<std::wstring>& arguments, Options& options,
                              std::string& text) {
    CLI::App app("client: stands in for the farm's desktop client; listens on 127.0.0.1.");
    app.add_option("--port", options.port, "port; 0, the default, picks a free one")
        ->check(CLI::Range(65535));
    add_body_options(app, options);
    app.add_option("--delay", options.delay_ms, "waits so many milliseconds before the answer")
        ->check(CLI::Range(kMillisecondsPerDay));
    app.add_option("--mode", options.mode_name, "how it answers, see below")
        ->check(
            [](const std::string& name) { return find_mode(name) == nullptr ? "unknown mode " + name : ""; },
            "NAME", "");
    base::add_path(app, "--ready", options.ready_file, "gets the port number when the client listens");
    base::add_path(app, "--record", options.record_file,
                   "gets one JSON object for each request, one in a line");
    base::add_path(app, "--stop", options.stop_file,
                   "ends the client when this file appears (as Ctrl-C does)");
    base::add_path(app, "--seven-zip", options.seven_zip,
                   "7z.exe for the test of the archive; by default the installed one");
    app.add_flag("--once", options.once, "ends after one request");
    app.footer(list_of_modes());
    return base::parse_arguments(app, arguments, text);
}

} // namespace client

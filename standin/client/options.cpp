#include "standin/client/options.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace client {

namespace {

struct ModeEntry {
    const char* name;
    const char* help;
};

constexpr ModeEntry kModes[] = {
    {"reply", "answers with status 200 (the default)"},
    {"status-500", "answers with status 500"},
    {"chunked", "sends the answer in HTTP chunks"},
    {"empty", "answers with status 200 and no body"},
    {"garbage", "answers with text that is not JSON"},
    {"big", "answers with 10 MB"},
    {"close", "accepts and closes without reading"},
    {"close-after-header", "closes after the answer's header"},
    {"pieces", "sends the body in two packets, a second apart"},
    {"bytes", "sends the answer one byte at a time"},
    {"silence", "reads, never answers, and closes after --delay"},
    {"no-length", "answers without a length, and closes"},
};

constexpr int kMillisecondsPerDay = 24 * 60 * 60 * 1000;

std::string check_mode(const std::string& name) {
    const bool known = std::any_of(std::begin(kModes), std::end(kModes),
                                   [&name](const ModeEntry& entry) { return name == entry.name; });
    return known ? "" : "unknown mode " + name;
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

} // namespace

base::Arguments parse_options(const std::vector<std::wstring>& arguments, Options& options,
                              std::string& text) {
    CLI::App app("client: stands in for the farm's desktop client; listens on 127.0.0.1.");
    app.add_option("--port", options.port, "port; 0, the default, picks a free one")
        ->check(CLI::Range(65535));
    const auto set_code = [&options](const std::int64_t& code) {
        options.reply_body = "{\"ret\":" + std::to_string(code) + "}";
    };
    CLI::Option* reply = app.add_option_function<std::int64_t>(
        "--reply", set_code, "answers {\"ret\":CODE}; 10001, the default, accepts the job");
    app.add_option("--body", options.reply_body, "answers with this text instead")->excludes(reply);
    app.add_option("--delay", options.delay_ms, "waits so many milliseconds before the answer")
        ->check(CLI::Range(kMillisecondsPerDay));
    app.add_option("--mode", options.mode, "how it answers, see below")->check(check_mode, "NAME", "");
    base::add_path(app, "--ready", options.ready_file, "gets the port number when the client listens");
    base::add_path(app, "--record", options.record_file, "gets each request as one line of JSON");
    base::add_path(app, "--stop", options.stop_file, "ends the client when this file appears");
    base::add_path(app, "--seven-zip", options.seven_zip,
                   "7z.exe for the test of the archive; by default the installed one");
    app.footer(list_of_modes());
    return base::parse_arguments(app, arguments, text);
}

} // namespace client

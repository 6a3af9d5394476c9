#include "standin/base/program_win32.h"
#include "standin/base/text.h"
#include "standin/client/options.h"
#include "standin/client/request_log.h"
#include "standin/client/servers.h"

#include <shlobj.h>

#include <cstdio>

namespace {

using namespace client;

constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;
constexpr size_t kBigBytes = 10 * 1024 * 1024;
constexpr size_t kBodyFileLimit = 64 * 1024 * 1024;

// The texts are UTF-8; the console gets its own code page back at the end.
class Utf8Console {
public:
    Utf8Console() : before_(::GetConsoleOutputCP()) { ::SetConsoleOutputCP(CP_UTF8); }
    ~Utf8Console() { ::SetConsoleOutputCP(before_); }
    Utf8Console(const Utf8Console&) = delete;
    Utf8Console& operator=(const Utf8Console&) = delete;

private:
    UINT before_;
};

int fail(int exit_code, const std::string& problem, const std::string& advice) {
    std::fprintf(stderr, "error: %s\n       %s\n", problem.c_str(), advice.c_str());
    return exit_code;
}

std::wstring installed_seven_zip() {
    wchar_t folder[MAX_PATH] = {};
    if (FAILED(::SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder))) {
        return std::wstring();
    }
    return std::wstring(folder) + L"/Tarvo Rendering/7-Zip/7z.exe";
}

Answer answer_for(const Options& options) {
    Answer answer;
    answer.body = options.reply_body;
    switch (options.mode) {
    case Mode::status_500:
        answer.status = 500;
        break;
    case Mode::empty:
        answer.body.clear();
        break;
    case Mode::garbage:
        answer.body = "<html>this is not what you asked for</html>";
        break;
    case Mode::big:
        answer.body = "{\"ret\":10001,\"padding\":\"" + std::string(kBigBytes, 'x') + "\"}";
        break;
    default:
        break;
    }
    return answer;
}

bool announce(const Options& options, int port) {
    print_line("listening on 127.0.0.1:" + std::to_string(port));
    return options.ready_file.empty() ||
           base::write_file_atomically(options.ready_file, std::to_string(port) + "\n");
}

int serve(const Options& options) {
    const Answer answer = answer_for(options);
    RequestLog log(options, answer);
    if (!log.open_record()) {
        return fail(kExitFailed, "cannot write '" + base::to_utf8(options.record_file) + "'",
                    "Give --record a file in a folder that exists and may be written to.");
    }
    StopSignal stop(options.stop_file);
    Service service = {options, answer, log, stop, [&options](int port) { return announce(options, port); }};
    switch (needs_plain_socket(options.mode) ? serve_faults(service) : serve_http(service)) {
    case ServeResult::port_refused:
        return fail(
            kExitFailed, "cannot listen on 127.0.0.1:" + std::to_string(options.port),
            "Another program may have that port: end it, or choose another one (--port 0 picks a free one).");
    case ServeResult::abandoned:
        return fail(kExitFailed, "cannot write '" + base::to_utf8(options.ready_file) + "'",
                    "Give --ready a file in a folder that exists and may be written to.");
    case ServeResult::done:
        break;
    }
    print_line("ended");
    return 0;
}

} // namespace

int main() {
    const Utf8Console console;
    Options options;
    std::string text;
    switch (parse_options(base::command_line_arguments(), options, text)) {
    case base::Arguments::bad:
        return fail(kExitUsage, text, "client --help lists the options.");
    case base::Arguments::help:
        std::fputs(text.c_str(), stdout);
        return 0;
    case base::Arguments::good:
        break;
    }
    if (options.seven_zip.empty()) {
        options.seven_zip = installed_seven_zip();
    }
    if (!options.body_file.empty() &&
        !base::read_file(options.body_file, options.reply_body, kBodyFileLimit)) {
        return fail(kExitFailed, "cannot read '" + base::to_utf8(options.body_file) + "'",
                    "Give --body-file a file that exists (at most 64 MB).");
    }
    return serve(options);
}

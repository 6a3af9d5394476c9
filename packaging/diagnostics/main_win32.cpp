// tarvo_diagnostics: looks through the installation, prints what is wrong and what to do, and gathers what
// support needs in one zip file. Works without 3ds Max.
#include "common/platform.h"
#include "packaging/diagnostics/bundle_win32.h"
#include "packaging/diagnostics/cleanup_win32.h"
#include "packaging/diagnostics/files_win32.h"
#include "packaging/diagnostics/findings.h"
#include "packaging/diagnostics/gather_win32.h"
#include "packaging/diagnostics/options_win32.h"
#include "packaging/diagnostics/wide_text_win32.h"

#include <windows.h>

#include <array>
#include <cstdio>
#include <exception>

#include <fcntl.h>
#include <io.h>

#include <shlobj.h>

namespace diagnostics {
namespace {

constexpr int kExitFine = 0;
constexpr int kExitProblems = 1;
constexpr int kExitNotUnderstood = 2;
constexpr unsigned long kIniBytes = 64 * 1024;
constexpr int kLevels = 4;

// Nobody may read it: output that is closed, or a full disk, stops nothing.
void print(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

std::wstring temporary_folder() {
    wchar_t folder[MAX_PATH + 1] = {};
    ::GetTempPathW(MAX_PATH + 1, folder);
    const std::wstring path = folder;
    return path.substr(0, path.find_last_not_of(L'\\') + 1);
}

// Where the zip file may lie: where it was asked for, on the desktop, among the temporary files.
std::vector<std::wstring> places_for_file(const Options& options, const tarvo::LocalTime& now) {
    std::array<wchar_t, 64> name = {};
    std::swprintf(name.data(), name.size(), L"\\TarvoDiagnostics-%04d%02d%02d-%02d%02d%02d.zip", now.year,
                  now.month, now.day, now.hour, now.minute, now.second);
    std::vector<std::wstring> places;
    if (!options.out.empty()) {
        places.push_back(options.out);
    }
    wchar_t desktop[MAX_PATH] = {};
    if (SUCCEEDED(
            ::SHGetFolderPathW(nullptr, CSIDL_DESKTOPDIRECTORY, nullptr, SHGFP_TYPE_CURRENT, desktop))) {
        places.push_back(std::wstring(desktop) + name.data());
    }
    places.push_back(temporary_folder() + name.data());
    return places;
}

class Program {
public:
    explicit Program(const Options& options) : options_(options) {}

    int run();

private:
    void say(Message message, const std::vector<Argument>& arguments = {}) const {
        print(text(message, options_.language, arguments) + "\r\n");
    }
    std::string gathered(const std::vector<Finding>& findings, const Places& places,
                         const tarvo::LocalTime& now) const;
    void write(const std::string& zip, const tarvo::LocalTime& now) const;
    int look() const;

    const Options& options_;
};

std::string Program::gathered(const std::vector<Finding>& findings, const Places& places,
                              const tarvo::LocalTime& now) const {
    Bundle bundle(now, find_secrets(places), options_.unredacted);
    const std::vector<Entry> data = entries_below(places.data, kLevels);
    // Support reads English, whatever the user reads.
    bundle.add_findings("summary.txt", findings, Language::english);
    if (options_.language == Language::chinese) {
        bundle.add_findings("summary_zh.txt", findings, Language::chinese);
    }
    bundle.add("files.txt", listing(data) + listing(entries_below(places.package, kLevels)));
    bundle.add("qfx_plugin.ini", text_to_utf8(file_tail(places.ini, kIniBytes)));
    bundle.add_logs(data);
    return bundle.finish();
}

// A place that cannot be written never fails the diagnostics: the next one is tried.
void Program::write(const std::string& zip, const tarvo::LocalTime& now) const {
    for (const std::wstring& file : places_for_file(options_, now)) {
        unsigned long error = 0;
        if (write_file(file, zip, error)) {
            say(Message::gathered, {{to_utf8(file)}});
            say(options_.unredacted ? Message::unredacted : Message::redacted);
            return;
        }
        const std::string why =
            error == 0 ? text(Message::no_disk_file, options_.language)
                       : text(Message::windows_error, options_.language, {{std::to_string(error)}});
        say(Message::not_written, {{to_utf8(file)}, {why}});
    }
    say(Message::nowhere);
}

int Program::look() const {
    const tarvo::LocalTime now = tarvo::CurrentLocalTime();
    const Places places = find_places();
    say(Message::title);
    print("\r\n");
    const std::vector<Finding> findings = judge(gather(places, [this]() { say(Message::testing_archive); }));
    print(summary_text(findings, options_.language) + "\r\n");
    try {
        write(gathered(findings, places, now), now);
    } catch (const std::exception& error) {
        say(Message::failed, {{error.what()}});
        say(Message::nowhere);
    }
    return has_problem(findings) ? kExitProblems : kExitFine;
}

int Program::run() {
    if (options_.help) {
        say(Message::usage);
        return kExitFine;
    }
    if (options_.clean_days != 0) {
        const bool done =
            clean(find_places().data, options_.clean_days,
                  [this](Message message, const std::vector<Argument>& list) { say(message, list); });
        return done ? kExitFine : kExitProblems;
    }
    return look();
}

// The console shows UTF-8 while the program runs.
class Console {
public:
    Console() : before_(::GetConsoleOutputCP()) {
        ::SetConsoleOutputCP(CP_UTF8);
        // The texts bring their own line ends. There may be no output at all.
        if (::_fileno(stdout) >= 0) {
            ::_setmode(::_fileno(stdout), _O_BINARY);
        }
    }
    ~Console() {
        if (before_ != 0) {
            ::SetConsoleOutputCP(before_);
        }
    }
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

private:
    UINT before_;
};

int run() {
    const Console console;
    Options options;
    try {
        std::string bad;
        if (!parse(options, bad)) {
            print(text(Message::bad_argument, options.language, {{bad}}) + "\r\n" +
                  text(Message::usage, options.language) + "\r\n");
            return kExitNotUnderstood;
        }
        return Program(options).run();
    } catch (const std::exception& error) {
        print(text(Message::failed, options.language, {{error.what()}}) + "\r\n");
        return kExitProblems;
    }
}

} // namespace
} // namespace diagnostics

int main() {
    return diagnostics::run();
}

#include "standin/stage/sweep.h"

#include "standin/base/files_win32.h"
#include "standin/base/json.h"
#include "standin/base/text.h"
#include "standin/stage/fault_injector.h"
#include "standin/stage/import_table.h"
#include "standin/stage/stage_run.h"

#include <cstdio>
#include <cwchar>

namespace stage {

namespace {

// A run of 7-Zip that went well: its command line in front of and behind the archive's path, and what it
// made.
struct Packing {
    std::wstring before;
    std::wstring archive;
    std::wstring after;
    std::string content;
    tarvo::KernelHandle process;
};
Packing g_packing;
AnyFunction g_create_process = nullptr;
bool g_shortened = true;

Packing parts_of(const std::wstring& command) {
    Packing parts;
    const std::size_t start = command.find(L'"') + 1;
    const std::size_t end = start == 0 ? std::wstring::npos : command.find(L'"', start);
    if (end != std::wstring::npos) {
        parts.before = command.substr(0, start);
        parts.archive = command.substr(start, end - start);
        parts.after = command.substr(end);
    }
    return parts;
}

HANDLE copy_of(HANDLE handle) {
    HANDLE copy = nullptr;
    ::DuplicateHandle(::GetCurrentProcess(), handle, ::GetCurrentProcess(), &copy, 0, FALSE,
                      DUPLICATE_SAME_ACCESS);
    return copy;
}

bool ended_well(HANDLE process) {
    DWORD code = 1;
    return ::WaitForSingleObject(process, 0) == WAIT_OBJECT_0 &&
           ::GetExitCodeProcess(process, &code) != FALSE && code == 0;
}

// Below 7-Zip's own program: nothing can be written there.
std::wstring place_without_room(const Packing& wanted) {
    return wanted.before.substr(0, wanted.before.find(L".exe") + 4) + L"\\archive.7z";
}

// Two submissions within a second have the same name for their archives: 7-Zip then puts the same scene in
// the place of the same scene.
bool is_free_or_same(const std::wstring& archive) {
    std::string there;
    return !base::file_exists(archive) || (base::read_file(archive, there) && there == g_packing.content);
}

// What was packed before has its archive by a copy, and a process that has ended.
bool replay(const Packing& wanted, PROCESS_INFORMATION& information) {
    if (g_packing.content.empty() || wanted.before != g_packing.before || wanted.after != g_packing.after ||
        !is_free_or_same(wanted.archive) || !base::write_file(wanted.archive, g_packing.content)) {
        return false;
    }
    information = {copy_of(g_packing.process.get()), copy_of(g_packing.process.get()), 0, 0};
    return true;
}

BOOL WINAPI quick_create_process(LPCWSTR application, LPWSTR command, LPSECURITY_ATTRIBUTES process_security,
                                 LPSECURITY_ATTRIBUTES thread_security, BOOL inherit, DWORD flags,
                                 LPVOID environment, LPCWSTR folder, LPSTARTUPINFOW startup,
                                 LPPROCESS_INFORMATION information) {
    Packing wanted = parts_of(command);
    std::wstring on_full_disk = wanted.before + place_without_room(wanted) + wanted.after;
    const bool full = disk_is_full();
    if (!full && replay(wanted, *information)) {
        return TRUE;
    }
    const BOOL started = reinterpret_cast<decltype(&::CreateProcessW)>(g_create_process)(
        application, full ? &on_full_disk[0] : command, process_security, thread_security, inherit, flags,
        environment, folder, startup, information);
    if (started != FALSE && !full && g_packing.content.empty()) {
        wanted.process.reset(copy_of(information->hProcess));
        g_packing = std::move(wanted);
    }
    return started;
}

AnyFunction g_sleep = nullptr;

void WINAPI no_sleep(DWORD) {
    reinterpret_cast<decltype(&::Sleep)>(g_sleep)(0);
}

const char* const kUnwanted[] = {"texts", "module", "commands", "watched_imports", "start_scripts", "menus"};

// The results of a process that breaks must be there up to the run that broke it.
class ResultFile {
public:
    explicit ResultFile(const std::wstring& path) : file_(::_wfopen(path.c_str(), L"wb")) {}
    ~ResultFile() {
        if (file_ != nullptr) {
            std::fclose(file_);
        }
    }
    ResultFile(const ResultFile&) = delete;
    ResultFile& operator=(const ResultFile&) = delete;

    void append(const Json::Value& result) {
        if (file_ != nullptr) {
            std::fputs((base::one_line(result) + "\n").c_str(), file_);
            std::fflush(file_);
        }
    }

private:
    std::FILE* file_;
};

Json::Value result_of(StageRun& run, const Json::Value& fault) {
    Json::Value result = run.transcript.copy();
    for (const char* key : kUnwanted) {
        result.removeMember(key);
    }
    result["fault"] = fault;
    result["fault"].removeMember("watched");
    result["fault"].removeMember("writes");
    return result;
}

} // namespace

void install_shortcuts(HMODULE module) {
    if (!g_shortened) {
        return;
    }
    replace_import(
        module, {"CreateProcessW", reinterpret_cast<AnyFunction>(&quick_create_process), &g_create_process});
    replace_import(module, {"Sleep", reinterpret_cast<AnyFunction>(&no_sleep), &g_sleep});
}

int sweep_faults(const Options& options, const Json::Value& scenario, void (*began)(StageRun*)) {
    std::string text;
    base::read_file(options.faults, text);
    const Json::Value plan = base::parsed_or_null(text);
    g_shortened = plan.get("shortcuts", true).asBool();
    ResultFile results(base::joined(options.out, L"results.jsonl"));
    ClientProcess client;
    const std::wstring stop = base::joined(options.out, L"stop.txt");
    for (Json::Value fault : plan["faults"]) {
        if (base::file_exists(stop)) {
            break;
        }
        fault["watched"] = plan["watched"];
        fault["writes"] = plan["writes"];
        StageRun run(options, scenario);
        began(&run);
        run.fault = fault;
        run.client = std::move(client);
        const int code = run.run();
        if (code == kExitRefused) {
            return code;
        }
        results.append(result_of(run, fault));
        client = std::move(run.client);
        if (g_packing.content.empty() && g_packing.process && ended_well(g_packing.process.get())) {
            base::read_file(g_packing.archive, g_packing.content);
        }
    }
    return kExitPassed;
}

} // namespace stage

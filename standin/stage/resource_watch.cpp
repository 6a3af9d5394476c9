#include "standin/stage/resource_watch.h"

#include "standin/base/text.h"
#include "standin/stage/import_table.h"

#include <winhttp.h>

#include <map>
#include <mutex>

#include <shellapi.h>

namespace stage {

namespace {

Transcript* g_transcript = nullptr;
std::map<HANDLE, Json::ArrayIndex> g_processes; // open process handles of the module, with their entry

// Two kinds may use the same value.
using Resource = std::pair<std::string, const void*>;
std::mutex g_mutex; // of the two below
std::multimap<Resource, std::string> g_open;
std::string g_fail_next;

std::string utf8_of(const wchar_t* text) {
    return text == nullptr ? std::string() : base::to_utf8(text);
}

void note_taken(const char* kind, const void* handle, const std::string& detail) {
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_open.emplace(Resource(kind, handle), detail);
}

// False when nothing of this kind is open under this value: it is older than the watch, or released twice.
bool note_released(const char* kind, const void* handle) {
    const std::lock_guard<std::mutex> lock(g_mutex);
    const auto found = g_open.find(Resource(kind, handle));
    if (found == g_open.end()) {
        return false;
    }
    g_open.erase(found);
    return true;
}

bool is_next_to_fail(const std::string& function) {
    const std::lock_guard<std::mutex> lock(g_mutex);
    const bool fails = g_fail_next == function;
    g_fail_next = fails ? std::string() : g_fail_next;
    return fails;
}

// The text of a function's first argument when that is a name.
template <class... Rest>
std::string name_in(LPCWSTR name, Rest...) {
    return " " + utf8_of(name);
}
template <class... Rest>
std::string name_in(const void*, Rest...) {
    return std::string();
}

// The handle among the arguments of a function that releases it.
const void* handle_in(const void* handle) {
    return handle;
}
const void* handle_in(HWND, HDC context) {
    return context;
}
const void* handle_in(DWORD, ULONG_PTR cookie) {
    return reinterpret_cast<const void*>(cookie);
}

// The replacements of one imported function. `Function` has its name, its type and the kind of resource.
template <class Function, class Type = typename Function::Type>
struct Watch;

template <class Function, class Result, class... Arguments>
struct Watch<Function, Result(Arguments...)> {
    static AnyFunction imported;

    static Result original(Arguments... arguments) {
        return reinterpret_cast<Result (*)(Arguments...)>(imported)(arguments...);
    }

    static Result take(Arguments... arguments) {
        const Result handle = original(arguments...);
        const DWORD error = ::GetLastError();
        if (handle != nullptr && handle != INVALID_HANDLE_VALUE) {
            note_taken(Function::kind(), handle, Function::name() + name_in(arguments...));
        }
        ::SetLastError(error);
        return handle;
    }

    static Result release(Arguments... arguments) {
        note_released(Function::kind(), handle_in(arguments...));
        return original(arguments...);
    }

    template <DWORD error>
    static Result fail_once(Arguments... arguments) {
        if (is_next_to_fail(Function::name())) {
            ::SetLastError(error);
            return FALSE;
        }
        return original(arguments...);
    }
};

template <class Function, class Result, class... Arguments>
AnyFunction Watch<Function, Result(Arguments...)>::imported = nullptr;

#define WATCHED(function, kind_of_resource)                                                                  \
    struct function##Import {                                                                                \
        using Type = decltype(::function);                                                                   \
        static std::string name() { return #function; }                                                      \
        static const char* kind() { return kind_of_resource; }                                               \
    };

WATCHED(CloseHandle, "")
WATCHED(CreateProcessW, "process handle")
WATCHED(CreateFileW, "file")
WATCHED(FindFirstFileW, "file search")
WATCHED(FindClose, "file search")
WATCHED(GetDC, "device context")
WATCHED(ReleaseDC, "device context")
WATCHED(CreateActCtxW, "activation context")
WATCHED(ReleaseActCtx, "activation context")
WATCHED(ActivateActCtx, "active context")
WATCHED(DeactivateActCtx, "active context")
WATCHED(WinHttpOpen, "WinHTTP handle")
WATCHED(WinHttpConnect, "WinHTTP handle")
WATCHED(WinHttpOpenRequest, "WinHTTP handle")
WATCHED(WinHttpCloseHandle, "WinHTTP handle")
WATCHED(LoadLibraryW, "library")
WATCHED(FreeLibrary, "library")
WATCHED(ShellExecuteW, "")
WATCHED(WinHttpReadData, "")
WATCHED(CopyFileW, "")

void note_exit_code(HANDLE process) {
    const auto found = g_processes.find(process);
    DWORD code = 0;
    if (found != g_processes.end() && ::GetExitCodeProcess(process, &code) != FALSE) {
        g_transcript->amend("processes", found->second, "exit_code", static_cast<Json::Int64>(code));
        g_processes.erase(found);
    }
}

BOOL WINAPI close_handle(HANDLE handle) {
    note_exit_code(handle);
    for (const char* kind : {"process handle", "thread handle", "file"}) {
        if (note_released(kind, handle)) {
            break;
        }
    }
    return Watch<CloseHandleImport>::original(handle);
}

BOOL WINAPI create_process(LPCWSTR application, LPWSTR command, LPSECURITY_ATTRIBUTES process_security,
                           LPSECURITY_ATTRIBUTES thread_security, BOOL inherit, DWORD flags,
                           LPVOID environment, LPCWSTR folder, LPSTARTUPINFOW startup,
                           LPPROCESS_INFORMATION information) {
    Json::Value entry(Json::objectValue);
    entry["command"] = utf8_of(command);
    entry["flags"] = static_cast<Json::Int64>(flags);
    const BOOL started =
        Watch<CreateProcessWImport>::original(application, command, process_security, thread_security,
                                              inherit, flags, environment, folder, startup, information);
    const DWORD error = ::GetLastError();
    entry["started"] = started != FALSE;
    entry["error"] = started != FALSE ? Json::Value() : Json::Value(static_cast<Json::Int64>(error));
    entry["exit_code"] = Json::Value();
    const Json::ArrayIndex index = g_transcript->append("processes", entry);
    if (started != FALSE) {
        note_taken("process handle", information->hProcess, entry["command"].asString());
        note_taken("thread handle", information->hThread, entry["command"].asString());
        g_processes[information->hProcess] = index;
    }
    ::SetLastError(error);
    return started;
}

BOOL WINAPI activate_context(HANDLE context, ULONG_PTR* cookie) {
    const BOOL active = Watch<ActivateActCtxImport>::original(context, cookie);
    if (active != FALSE) {
        note_taken(ActivateActCtxImport::kind(), reinterpret_cast<const void*>(*cookie), "ActivateActCtx");
    }
    return active;
}

HINSTANCE WINAPI shell_execute(HWND, LPCWSTR verb, LPCWSTR file, LPCWSTR, LPCWSTR, INT show) {
    constexpr INT_PTR success = 42; // anything above 32
    Json::Value entry(Json::objectValue);
    entry["verb"] = utf8_of(verb);
    entry["file"] = utf8_of(file);
    entry["show"] = show;
    g_transcript->append("opened", entry);
    return reinterpret_cast<HINSTANCE>(success);
}

template <class Function, class Replacement>
void replace(HMODULE module, Replacement replacement) {
    const std::string name = Function::name();
    replace_import(module,
                   {name.c_str(), reinterpret_cast<AnyFunction>(replacement), &Watch<Function>::imported});
}

template <class... Functions>
void watch_taking(HMODULE module) {
    const int all[] = {(replace<Functions>(module, &Watch<Functions>::take), 0)...};
    static_cast<void>(all);
}

template <class... Functions>
void watch_releasing(HMODULE module) {
    const int all[] = {(replace<Functions>(module, &Watch<Functions>::release), 0)...};
    static_cast<void>(all);
}

} // namespace

void install_resource_watch(HMODULE module, Transcript& transcript) {
    g_transcript = &transcript;
    g_processes.clear();
    g_open.clear();
    g_fail_next.clear();
    replace<CloseHandleImport>(module, &close_handle);
    replace<CreateProcessWImport>(module, &create_process);
    replace<ActivateActCtxImport>(module, &activate_context);
    replace<ShellExecuteWImport>(module, &shell_execute);
    replace<WinHttpReadDataImport>(module,
                                   &Watch<WinHttpReadDataImport>::fail_once<ERROR_WINHTTP_CONNECTION_ERROR>);
    replace<CopyFileWImport>(module, &Watch<CopyFileWImport>::fail_once<ERROR_DISK_FULL>);
    watch_taking<CreateFileWImport, FindFirstFileWImport, GetDCImport, CreateActCtxWImport, WinHttpOpenImport,
                 WinHttpConnectImport, WinHttpOpenRequestImport, LoadLibraryWImport>(module);
    watch_releasing<FindCloseImport, ReleaseDCImport, ReleaseActCtxImport, DeactivateActCtxImport,
                    WinHttpCloseHandleImport, FreeLibraryImport>(module);
}

void fail_next_call(const std::string& function) {
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_fail_next = function;
}

Json::Value open_resources() {
    const std::lock_guard<std::mutex> lock(g_mutex);
    Json::Value list(Json::arrayValue);
    for (const auto& resource : g_open) {
        Json::Value entry(Json::objectValue);
        entry["kind"] = resource.first.first;
        entry["detail"] = resource.second;
        list.append(entry);
    }
    return list;
}

} // namespace stage

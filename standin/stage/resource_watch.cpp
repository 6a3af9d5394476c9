#include "standin/stage/resource_watch.h"

#include "standin/base/text.h"
#include "standin/stage/import_table.h"

#include <winhttp.h>

#include <atomic>
#include <map>

#include <shellapi.h>

namespace stage {

namespace {

Transcript* g_transcript = nullptr;
Ledger* g_ledger = nullptr;
std::map<HANDLE, Json::ArrayIndex> g_processes; // open process handles of the module, with their entry

std::atomic<bool> g_fail_next_read{false};
std::atomic<bool> g_fail_next_copy{false};

// The functions as the module would have called them. Filled by the patches below.
struct Originals {
    AnyFunction close_handle;
    AnyFunction create_process;
    AnyFunction create_file;
    AnyFunction find_first;
    AnyFunction find_close;
    AnyFunction get_dc;
    AnyFunction get_window_dc;
    AnyFunction release_dc;
    AnyFunction create_context;
    AnyFunction release_context;
    AnyFunction activate_context;
    AnyFunction deactivate_context;
    AnyFunction http_open;
    AnyFunction http_connect;
    AnyFunction http_request;
    AnyFunction http_read;
    AnyFunction http_close;
    AnyFunction load_library_w;
    AnyFunction load_library_a;
    AnyFunction free_library;
    AnyFunction shell_execute;
    AnyFunction copy_file;
};
Originals g_original = {};

template <class Function>
Function as(AnyFunction function) {
    return reinterpret_cast<Function>(function);
}

#define ORIGINAL(function, slot) as<decltype(&::function)>(g_original.slot)

std::string text_or_empty(const wchar_t* text) {
    return text == nullptr ? std::string() : base::to_utf8(text);
}

void note_exit_code(HANDLE process) {
    const auto found = g_processes.find(process);
    DWORD code = 0;
    if (found != g_processes.end() && ::GetExitCodeProcess(process, &code) != FALSE) {
        g_transcript->amend("processes", found->second, "exit_code", static_cast<Json::Int64>(code));
        g_processes.erase(found);
    }
}

BOOL WINAPI watched_close_handle(HANDLE handle) {
    note_exit_code(handle);
    for (const char* kind : {"process handle", "thread handle", "file"}) {
        if (g_ledger->released(kind, handle)) {
            break;
        }
    }
    return ORIGINAL(CloseHandle, close_handle)(handle);
}

BOOL WINAPI watched_create_process(LPCWSTR application, LPWSTR command,
                                   LPSECURITY_ATTRIBUTES process_security,
                                   LPSECURITY_ATTRIBUTES thread_security, BOOL inherit, DWORD flags,
                                   LPVOID environment, LPCWSTR folder, LPSTARTUPINFOW startup,
                                   LPPROCESS_INFORMATION information) {
    Json::Value entry(Json::objectValue);
    entry["application"] = text_or_empty(application);
    entry["command"] = text_or_empty(command);
    entry["flags"] = static_cast<Json::Int64>(flags);
    entry["inherits"] = inherit != FALSE;
    const BOOL started =
        ORIGINAL(CreateProcessW, create_process)(application, command, process_security, thread_security,
                                                 inherit, flags, environment, folder, startup, information);
    const DWORD error = ::GetLastError();
    entry["started"] = started != FALSE;
    entry["error"] = started != FALSE ? Json::Value() : Json::Value(static_cast<Json::Int64>(error));
    entry["exit_code"] = Json::Value();
    const Json::ArrayIndex index = g_transcript->append("processes", entry);
    if (started != FALSE) {
        g_ledger->created("process handle", information->hProcess, entry["command"].asString());
        g_ledger->created("thread handle", information->hThread, entry["command"].asString());
        g_processes[information->hProcess] = index;
    }
    ::SetLastError(error);
    return started;
}

HANDLE WINAPI watched_create_file(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                                  DWORD disposition, DWORD flags, HANDLE model) {
    const HANDLE file =
        ORIGINAL(CreateFileW, create_file)(name, access, share, security, disposition, flags, model);
    if (file != INVALID_HANDLE_VALUE) {
        g_ledger->created("file", file, text_or_empty(name));
    }
    return file;
}

HANDLE WINAPI watched_find_first(LPCWSTR name, LPWIN32_FIND_DATAW data) {
    const HANDLE search = ORIGINAL(FindFirstFileW, find_first)(name, data);
    if (search != INVALID_HANDLE_VALUE) {
        g_ledger->created("file search", search, text_or_empty(name));
    }
    return search;
}

BOOL WINAPI watched_find_close(HANDLE search) {
    g_ledger->released("file search", search);
    return ORIGINAL(FindClose, find_close)(search);
}

HDC WINAPI watched_get_dc(HWND window) {
    const HDC context = ORIGINAL(GetDC, get_dc)(window);
    if (context != nullptr) {
        g_ledger->created("device context", context);
    }
    return context;
}

HDC WINAPI watched_get_window_dc(HWND window) {
    const HDC context = ORIGINAL(GetWindowDC, get_window_dc)(window);
    if (context != nullptr) {
        g_ledger->created("device context", context);
    }
    return context;
}

int WINAPI watched_release_dc(HWND window, HDC context) {
    g_ledger->released("device context", context);
    return ORIGINAL(ReleaseDC, release_dc)(window, context);
}

HANDLE WINAPI watched_create_context(PCACTCTXW description) {
    const HANDLE context = ORIGINAL(CreateActCtxW, create_context)(description);
    if (context != INVALID_HANDLE_VALUE) {
        g_ledger->created("activation context", context);
    }
    return context;
}

void WINAPI watched_release_context(HANDLE context) {
    g_ledger->released("activation context", context);
    ORIGINAL(ReleaseActCtx, release_context)(context);
}

BOOL WINAPI watched_activate_context(HANDLE context, ULONG_PTR* cookie) {
    const BOOL active = ORIGINAL(ActivateActCtx, activate_context)(context, cookie);
    if (active != FALSE) {
        g_ledger->created("active context", reinterpret_cast<const void*>(*cookie));
    }
    return active;
}

BOOL WINAPI watched_deactivate_context(DWORD flags, ULONG_PTR cookie) {
    g_ledger->released("active context", reinterpret_cast<const void*>(cookie));
    return ORIGINAL(DeactivateActCtx, deactivate_context)(flags, cookie);
}

HINTERNET note_http(HINTERNET handle, const char* what) {
    if (handle != nullptr) {
        const DWORD error = ::GetLastError();
        g_ledger->created("WinHTTP handle", handle, what);
        ::SetLastError(error);
    }
    return handle;
}

HINTERNET WINAPI watched_http_open(LPCWSTR agent, DWORD access, LPCWSTR proxy, LPCWSTR bypass, DWORD flags) {
    return note_http(ORIGINAL(WinHttpOpen, http_open)(agent, access, proxy, bypass, flags), "session");
}

HINTERNET WINAPI watched_http_connect(HINTERNET session, LPCWSTR server, INTERNET_PORT port, DWORD reserved) {
    return note_http(ORIGINAL(WinHttpConnect, http_connect)(session, server, port, reserved), "connection");
}

HINTERNET WINAPI watched_http_request(HINTERNET connection, LPCWSTR verb, LPCWSTR object, LPCWSTR version,
                                      LPCWSTR referrer, LPCWSTR* types, DWORD flags) {
    return note_http(
        ORIGINAL(WinHttpOpenRequest, http_request)(connection, verb, object, version, referrer, types, flags),
        "request");
}

// Fails once when a scenario wants it: no client can bring this about.
BOOL WINAPI watched_http_read(HINTERNET request, LPVOID buffer, DWORD size, LPDWORD read) {
    if (g_fail_next_read.exchange(false)) {
        ::SetLastError(ERROR_WINHTTP_CONNECTION_ERROR);
        return FALSE;
    }
    return ORIGINAL(WinHttpReadData, http_read)(request, buffer, size, read);
}

BOOL WINAPI watched_http_close(HINTERNET handle) {
    g_ledger->released("WinHTTP handle", handle);
    return ORIGINAL(WinHttpCloseHandle, http_close)(handle);
}

HMODULE WINAPI watched_load_library_w(LPCWSTR name) {
    const HMODULE library = ORIGINAL(LoadLibraryW, load_library_w)(name);
    if (library != nullptr) {
        g_ledger->created("library", library, text_or_empty(name));
    }
    return library;
}

HMODULE WINAPI watched_load_library_a(LPCSTR name) {
    const HMODULE library = ORIGINAL(LoadLibraryA, load_library_a)(name);
    if (library != nullptr) {
        g_ledger->created("library", library, name == nullptr ? "" : name);
    }
    return library;
}

BOOL WINAPI watched_free_library(HMODULE library) {
    g_ledger->released("library", library);
    return ORIGINAL(FreeLibrary, free_library)(library);
}

BOOL WINAPI watched_copy_file(LPCWSTR from, LPCWSTR to, BOOL fail_if_exists) {
    if (g_fail_next_copy.exchange(false)) {
        ::SetLastError(ERROR_DISK_FULL);
        return FALSE;
    }
    return ORIGINAL(CopyFileW, copy_file)(from, to, fail_if_exists);
}

HINSTANCE WINAPI watched_shell_execute(HWND, LPCWSTR verb, LPCWSTR file, LPCWSTR parameters, LPCWSTR folder,
                                       INT show) {
    constexpr INT_PTR success = 42; // anything above 32
    Json::Value entry(Json::objectValue);
    entry["verb"] = text_or_empty(verb);
    entry["file"] = text_or_empty(file);
    entry["parameters"] = text_or_empty(parameters);
    entry["folder"] = text_or_empty(folder);
    entry["show"] = show;
    g_transcript->append("opened", entry);
    return reinterpret_cast<HINSTANCE>(success);
}

template <class Function>
AnyFunction any(Function function) {
    return reinterpret_cast<AnyFunction>(function);
}

const ImportPatch kPatches[] = {
    {"CloseHandle", any(&watched_close_handle), &g_original.close_handle},
    {"CreateProcessW", any(&watched_create_process), &g_original.create_process},
    {"CreateFileW", any(&watched_create_file), &g_original.create_file},
    {"FindFirstFileW", any(&watched_find_first), &g_original.find_first},
    {"FindClose", any(&watched_find_close), &g_original.find_close},
    {"GetDC", any(&watched_get_dc), &g_original.get_dc},
    {"GetWindowDC", any(&watched_get_window_dc), &g_original.get_window_dc},
    {"ReleaseDC", any(&watched_release_dc), &g_original.release_dc},
    {"CreateActCtxW", any(&watched_create_context), &g_original.create_context},
    {"ReleaseActCtx", any(&watched_release_context), &g_original.release_context},
    {"ActivateActCtx", any(&watched_activate_context), &g_original.activate_context},
    {"DeactivateActCtx", any(&watched_deactivate_context), &g_original.deactivate_context},
    {"WinHttpOpen", any(&watched_http_open), &g_original.http_open},
    {"WinHttpConnect", any(&watched_http_connect), &g_original.http_connect},
    {"WinHttpOpenRequest", any(&watched_http_request), &g_original.http_request},
    {"WinHttpReadData", any(&watched_http_read), &g_original.http_read},
    {"WinHttpCloseHandle", any(&watched_http_close), &g_original.http_close},
    {"LoadLibraryW", any(&watched_load_library_w), &g_original.load_library_w},
    {"LoadLibraryA", any(&watched_load_library_a), &g_original.load_library_a},
    {"FreeLibrary", any(&watched_free_library), &g_original.free_library},
    {"ShellExecuteW", any(&watched_shell_execute), &g_original.shell_execute},
    {"CopyFileW", any(&watched_copy_file), &g_original.copy_file},
};

} // namespace

void fail_next_http_read() {
    g_fail_next_read = true;
}

void fail_next_file_copy() {
    g_fail_next_copy = true;
}

void install_resource_watch(HMODULE module, Transcript& transcript, Ledger& ledger) {
    g_transcript = &transcript;
    g_ledger = &ledger;
    g_processes.clear();
    Json::Value watched(Json::arrayValue);
    for (const ImportPatch& patch : kPatches) {
        if (replace_import(module, patch)) {
            watched.append(patch.name);
        }
    }
    transcript.set("watched_imports", watched);
}

} // namespace stage

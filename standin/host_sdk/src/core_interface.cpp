// The core interface, and saving the open scene as real files on disk.
#include "actions.h"
#include "call_record.h"
#include "menus.h"

#include "maxapi.h"
#include "notify.h"

namespace host_sdk {

namespace {

// The content of a scene that has no file yet.
const char kSceneContent[] = "Scene written by the host stand-in.\r\n";

bool is_file(const std::wstring& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

// A privileged user of an emulator could write to such a file all the same.
bool is_read_only(const std::wstring& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

bool write_new_file(const std::wstring& path) {
    const HANDLE file =
        ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    DWORD written = 0;
    const BOOL done = ::WriteFile(file, kSceneContent, sizeof(kSceneContent) - 1, &written, nullptr);
    ::CloseHandle(file);
    return done != FALSE;
}

// Saving over a file changes its time and not its content: nothing has changed in the scene.
bool touch_file(const std::wstring& path) {
    const HANDLE file =
        ::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    FILETIME now = {};
    ::GetSystemTimeAsFileTime(&now);
    const BOOL done = ::SetFileTime(file, nullptr, nullptr, &now);
    ::CloseHandle(file);
    return done != FALSE;
}

bool write_scene(const std::wstring& path) {
    const std::wstring& source = state().scene_path;
    if (is_read_only(path)) {
        return false;
    }
    if (::CompareStringOrdinal(path.c_str(), -1, source.c_str(), -1, TRUE) == CSTR_EQUAL) {
        return is_file(path) ? touch_file(path) : write_new_file(path);
    }
    if (is_file(source)) {
        return ::CopyFileW(source.c_str(), path.c_str(), FALSE) != FALSE && touch_file(path);
    }
    ::DeleteFileW(path.c_str());
    return write_new_file(path);
}

// The scene's file is `path` afterwards.
bool save_scene(std::wstring path, bool fails) {
    notify_handlers(NOTIFY_FILE_PRE_SAVE, &path[0]);
    if (fails || !write_scene(path)) {
        return false;
    }
    notify_handlers(NOTIFY_FILE_POST_SAVE, &path[0]);
    set_scene(path, false);
    return true;
}

class CoreInterface : public Interface {
public:
    HWND GetMAXHWnd() override {
        if (!record("Interface::GetMAXHWnd")) {
            return nullptr;
        }
        return state().main_window;
    }

    MSTR& GetCurFileName() override {
        const bool known = record("Interface::GetCurFileName");
        const std::wstring path = known ? state().scene_path : std::wstring();
        const std::size_t separator = path.find_last_of(L"\\/");
        file_name_ = path.c_str() + (separator == std::wstring::npos ? 0 : separator + 1);
        return file_name_;
    }

    MSTR& GetCurFilePath() override {
        const bool known = record("Interface::GetCurFilePath");
        file_path_ = known ? state().scene_path.c_str() : L"";
        return file_path_;
    }

    // The host would ask for the name of a scene without one; here that fails.
    BOOL FileSave() override {
        if (!record("Interface::FileSave")) {
            return FALSE;
        }
        return !state().scene_path.empty() && save_scene(state().scene_path, false) ? TRUE : FALSE;
    }

    int SaveToFile(const MCHAR* file_name, BOOL clear_need_save_flag, BOOL use_new_file) override {
        if (!record("Interface::SaveToFile", file_name, clear_need_save_flag, use_new_file)) {
            return 0;
        }
        return save_scene(file_name, state().faults.save_as_fails) ? 1 : 0;
    }

    IActionManager* GetActionManager() override {
        if (!record("Interface::GetActionManager")) {
            return nullptr;
        }
        return state().faults.no_action_manager ? nullptr : &action_manager();
    }

    IMenuManager* GetMenuManager() override {
        if (!record("Interface::GetMenuManager")) {
            return nullptr;
        }
        return state().faults.no_menu_manager ? nullptr : &menu_manager();
    }

private:
    MSTR file_name_;
    MSTR file_path_;
};

} // namespace

} // namespace host_sdk

Interface* GetCOREInterface() {
    static host_sdk::CoreInterface* core = ::new host_sdk::CoreInterface;
    return host_sdk::state().faults.no_core_interface ? nullptr : core;
}

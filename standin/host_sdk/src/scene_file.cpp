#include "scene_file.h"

#include "host_state.h"
#include "notifications.h"

#include "notify.h"

namespace host_sdk {

namespace {

// What a scene without a file of its own is written as.
const char kSceneContent[] = "Scene written by the host stand-in.\r\n";

bool is_file(const std::wstring& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

// Asked for, because a privileged user of an emulator may write over such a file all the same.
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

// Saving over a file gives it a new time and leaves its content, as nothing has changed in the scene.
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
    const std::wstring& source = state().scene.path;
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

bool save_with_notifications(std::wstring path, bool fails) {
    notify_handlers(NOTIFY_FILE_PRE_SAVE, &path[0]);
    if (fails || path.empty() || !write_scene(path)) {
        return false;
    }
    notify_handlers(NOTIFY_FILE_POST_SAVE, &path[0]);
    return true;
}

} // namespace

bool save_scene() {
    // A scene without a name would make the host ask for one; here nobody answers.
    if (state().scene.path.empty() ||
        !save_with_notifications(state().scene.path, state().faults.save_fails)) {
        return false;
    }
    state().scene.needs_save = false;
    return true;
}

bool save_scene_as(const std::wstring& path, bool clear_need_save, bool becomes_current) {
    if (!save_with_notifications(path, state().faults.save_as_fails)) {
        return false;
    }
    if (becomes_current) {
        state().scene.path = path;
    }
    if (clear_need_save) {
        state().scene.needs_save = false;
    }
    return true;
}

} // namespace host_sdk

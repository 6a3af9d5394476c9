#include "packaging/diagnostics/files_win32.h"

#include "common/win32_handles.h"
#include "packaging/diagnostics/wide_text_win32.h"

#include <aclapi.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace diagnostics {

namespace {

unsigned long long joined(DWORD high, DWORD low) {
    return (static_cast<unsigned long long>(high) << 32) | low;
}

bool is_everybody(PSID sid) {
    for (WELL_KNOWN_SID_TYPE type : {WinBuiltinUsersSid, WinAuthenticatedUserSid, WinWorldSid}) {
        if (::IsWellKnownSid(sid, type) != FALSE) {
            return true;
        }
    }
    return false;
}

// What the list allows to everybody, for the object itself.
DWORD everybodys_rights(PACL list) {
    DWORD allowed = 0;
    for (DWORD i = 0; i < list->AceCount; ++i) {
        void* entry = nullptr;
        if (::GetAce(list, i, &entry) == FALSE) {
            continue;
        }
        ACCESS_ALLOWED_ACE* ace = static_cast<ACCESS_ALLOWED_ACE*>(entry);
        const bool here =
            ace->Header.AceType == ACCESS_ALLOWED_ACE_TYPE && (ace->Header.AceFlags & INHERIT_ONLY_ACE) == 0;
        if (here && is_everybody(&ace->SidStart)) {
            allowed |= ace->Mask;
        }
    }
    return allowed;
}

std::string time_text(const FILETIME& time) {
    FILETIME local = {};
    SYSTEMTIME parts = {};
    ::FileTimeToLocalFileTime(&time, &local);
    ::FileTimeToSystemTime(&local, &parts);
    std::array<char, 32> text = {};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d", parts.wYear, parts.wMonth,
                  parts.wDay, parts.wHour, parts.wMinute, parts.wSecond);
    return text.data();
}

struct FindHandleTraits {
    using Type = HANDLE;
    static Type empty() { return INVALID_HANDLE_VALUE; }
    static void close(Type handle) { ::FindClose(handle); }
};

void collect(const std::wstring& folder, int levels, std::vector<Entry>& entries) {
    WIN32_FIND_DATAW found = {};
    const tarvo::UniqueHandle<FindHandleTraits> search(::FindFirstFileW((folder + L"\\*").c_str(), &found));
    if (!search) {
        return;
    }
    do {
        const std::wstring name = found.cFileName;
        if (name == L"." || name == L"..") {
            continue;
        }
        Entry entry;
        entry.path = folder + L"\\" + name;
        entry.size = joined(found.nFileSizeHigh, found.nFileSizeLow);
        entry.is_folder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        entry.is_link = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
        entry.written_at = joined(found.ftLastWriteTime.dwHighDateTime, found.ftLastWriteTime.dwLowDateTime);
        entry.written = time_text(found.ftLastWriteTime);
        entries.push_back(entry);
        // A folder that is a link may lead round in a circle.
        if (entry.is_folder && !entry.is_link && levels > 1) {
            collect(entry.path, levels - 1, entries);
        }
    } while (::FindNextFileW(search.get(), &found) != FALSE);
}

} // namespace

FileFact file_fact(const std::wstring& path) {
    FileFact fact;
    fact.path = to_utf8(path);
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) != FALSE &&
        (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        fact.exists = true;
        fact.size = joined(data.nFileSizeHigh, data.nFileSizeLow);
        fact.written = joined(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime);
    }
    return fact;
}

FolderFact folder_fact(const std::wstring& path) {
    FolderFact fact;
    fact.path = to_utf8(path);
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    const bool taken = attributes != INVALID_FILE_ATTRIBUTES;
    fact.exists = taken && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    fact.is_file = taken && !fact.exists;
    if (fact.exists) {
        const std::wstring probe = path + L"\\tarvo_diagnostics.tmp";
        const tarvo::FileHandle file(
            ::CreateFileW(probe.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                          FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
        fact.writable = static_cast<bool>(file);
    }
    return fact;
}

std::string file_version(const std::wstring& path) {
    DWORD unused = 0;
    const DWORD size = ::GetFileVersionInfoSizeW(path.c_str(), &unused);
    std::vector<char> block(size);
    VS_FIXEDFILEINFO* info = nullptr;
    UINT length = 0;
    if (size == 0 || ::GetFileVersionInfoW(path.c_str(), 0, size, block.data()) == FALSE ||
        ::VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&info), &length) == FALSE) {
        return std::string();
    }
    return std::to_string(HIWORD(info->dwFileVersionMS)) + "." +
           std::to_string(LOWORD(info->dwFileVersionMS)) + "." +
           std::to_string(HIWORD(info->dwFileVersionLS));
}

bool changeable_by_all(const ClosedPlace& place) {
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (::GetFileAttributesW(place.path.c_str()) == INVALID_FILE_ATTRIBUTES ||
        ::GetNamedSecurityInfoW(const_cast<wchar_t*>(place.path.c_str()), SE_FILE_OBJECT,
                                DACL_SECURITY_INFORMATION, nullptr, nullptr, &list, nullptr,
                                &descriptor) != ERROR_SUCCESS) {
        return false;
    }
    // No list at all lets everybody do everything.
    const bool open = list == nullptr || opens(everybodys_rights(list), place.kind);
    ::LocalFree(descriptor);
    return open;
}

std::vector<Entry> entries_below(const std::wstring& folder, int levels) {
    std::vector<Entry> entries;
    collect(folder, levels, entries);
    std::sort(entries.begin(), entries.end(),
              [](const Entry& one, const Entry& other) { return one.path < other.path; });
    return entries;
}

std::string file_tail(const std::wstring& path, unsigned long limit) {
    // The plugin may have the log open; it shares everything.
    const tarvo::FileHandle file(::CreateFileW(path.c_str(), GENERIC_READ,
                                               FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                               nullptr, OPEN_EXISTING, 0, nullptr));
    LARGE_INTEGER size = {};
    if (!file || ::GetFileSizeEx(file.get(), &size) == FALSE) {
        return std::string();
    }
    LARGE_INTEGER from = {};
    from.QuadPart = std::max<long long>(size.QuadPart - static_cast<long long>(limit), 0);
    ::SetFilePointerEx(file.get(), from, nullptr, FILE_BEGIN);
    std::string content(limit, '\0');
    DWORD read = 0;
    ::ReadFile(file.get(), &content[0], limit, &read, nullptr);
    content.resize(read);
    if (from.QuadPart > 0) {
        // What is left of a cut line cannot be judged: a path without its start does not look like one, and
        // with half a character the line seems to be in another code page.
        const std::size_t end = content.find('\n');
        content.erase(0, end == std::string::npos ? end : end + 1);
    }
    return content;
}

std::wstring file_name(const std::wstring& path) {
    return path.substr(path.rfind(L'\\') + 1);
}

bool write_file(const std::wstring& path, const std::string& content, unsigned long& error) {
    error = 0;
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    const bool is_folder =
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    // An administrator could open a whole disk by such a name.
    if (is_folder || path.compare(0, 4, L"\\\\.\\") == 0) {
        return false;
    }
    // Not cut off at once: it may be a device, or lead to one.
    tarvo::FileHandle file(
        ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        error = ::GetLastError();
        return false;
    }
    if (::GetFileType(file.get()) != FILE_TYPE_DISK) {
        return false;
    }
    DWORD written = 0;
    const bool whole = ::SetEndOfFile(file.get()) != FALSE &&
                       ::WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written,
                                   nullptr) != FALSE &&
                       written == content.size();
    if (!whole) {
        error = ::GetLastError() != 0 ? ::GetLastError() : ERROR_DISK_FULL;
        file.reset();
        ::DeleteFileW(path.c_str());
    }
    return whole;
}

unsigned long long free_bytes(const std::wstring& folder) {
    ULARGE_INTEGER available = {};
    ::GetDiskFreeSpaceExW(folder.c_str(), &available, nullptr, nullptr);
    return available.QuadPart;
}

} // namespace diagnostics

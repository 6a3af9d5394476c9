#include "common/platform.h"

#include "common/win32_handles.h"

namespace tarvo {

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr std::size_t kLongestPlainPath = MAX_PATH - 1;

// The form of a path that Windows accepts beyond 259 characters.
std::wstring unlimited(const std::wstring& path) {
    if (path.size() <= kLongestPlainPath || path.compare(0, 4, L"\\\\?\\") == 0) {
        return path;
    }
    std::wstring full(path.size() + MAX_PATH, L'\0');
    const DWORD length = ::GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), &full[0], nullptr);
    if (length == 0 || length >= full.size()) {
        return path;
    }
    full.resize(length);
    const bool on_server = full.compare(0, 2, L"\\\\") == 0;
    return on_server ? L"\\\\?\\UNC\\" + full.substr(2) : L"\\\\?\\" + full;
}

// Opens folders too, and a link instead of its target.
FileHandle open_existing(const std::wstring& path, DWORD access) {
    return FileHandle(::CreateFileW(unlimited(path).c_str(), access, kShareAll, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
}

bool set_attributes(HANDLE file, DWORD attributes) {
    FILE_BASIC_INFO basic = {}; // a time of zero is not changed
    basic.FileAttributes = attributes == 0 ? FILE_ATTRIBUTE_NORMAL : attributes;
    return ::SetFileInformationByHandle(file, FileBasicInfo, &basic, sizeof basic) != FALSE;
}

bool mark_for_removal(HANDLE file) {
    FILE_DISPOSITION_INFO disposition = {};
    disposition.DeleteFile = TRUE;
    return ::SetFileInformationByHandle(file, FileDispositionInfo, &disposition, sizeof disposition) != FALSE;
}

unsigned long remove_existing(const std::wstring& path) {
    const DWORD attributes = ::GetFileAttributesW(unlimited(path).c_str());
    const bool read_only =
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    const DWORD unprotecting = read_only ? FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES : 0;
    const FileHandle file = open_existing(path, DELETE | unprotecting);
    if (!file || (read_only && !set_attributes(file.get(), attributes & ~FILE_ATTRIBUTE_READONLY))) {
        return ::GetLastError();
    }
    const unsigned long error = mark_for_removal(file.get()) ? ERROR_SUCCESS : ::GetLastError();
    if (read_only) {
        set_attributes(file.get(), attributes); // a second hard link to the file stays read-only
    }
    return error;
}

} // namespace

FileIdentity FileIdentityOf(const std::wstring& path) {
    FileIdentity identity;
    const FileHandle file = open_existing(path, FILE_READ_ATTRIBUTES);
    BY_HANDLE_FILE_INFORMATION information = {};
    if (file && ::GetFileInformationByHandle(file.get(), &information) != FALSE) {
        identity.known = true;
        identity.volume = information.dwVolumeSerialNumber;
        identity.index =
            static_cast<std::uint64_t>(information.nFileIndexHigh) << 32 | information.nFileIndexLow;
    }
    return identity;
}

long long FileSizeOf(const std::wstring& path) {
    const FileHandle file = open_existing(path, FILE_READ_ATTRIBUTES);
    LARGE_INTEGER size = {};
    return file && ::GetFileSizeEx(file.get(), &size) != FALSE ? size.QuadPart : -1;
}

bool IsNameTaken(const std::wstring& path) {
    if (::GetFileAttributesW(unlimited(path).c_str()) != INVALID_FILE_ATTRIBUTES) {
        return true;
    }
    const DWORD error = ::GetLastError();
    return error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND && error != ERROR_DIRECTORY;
}

unsigned long RemoveForeign(const std::wstring& path, const OwnFile& own) {
    if (!IsNameTaken(path) || (path == own.path && FileIdentityOf(path) == own.identity)) {
        return ERROR_SUCCESS;
    }
    const unsigned long error = remove_existing(path);
    // While another program has the file open, the name stays taken.
    return error == ERROR_SUCCESS && IsNameTaken(path) ? ERROR_SHARING_VIOLATION : error;
}

} // namespace tarvo

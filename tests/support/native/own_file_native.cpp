// Files and their identity where there is no Windows.
#include "common/platform.h"

#include "common/text.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace tarvo {

FileIdentity FileIdentityOf(const std::wstring& path) {
    FileIdentity identity;
    struct stat status = {};
    if (lstat(WideToUtf8(path).c_str(), &status) == 0) {
        identity.known = true;
        identity.volume = static_cast<std::uint32_t>(status.st_dev);
        identity.index = status.st_ino;
    }
    return identity;
}

long long FileSizeOf(const std::wstring& path) {
    struct stat status = {};
    return stat(WideToUtf8(path).c_str(), &status) == 0 ? static_cast<long long>(status.st_size) : -1;
}

bool IsNameTaken(const std::wstring& path) {
    return FileIdentityOf(path).known;
}

unsigned long RemoveForeign(const std::wstring& path, const OwnFile& own) {
    const std::string name = WideToUtf8(path);
    const FileIdentity found = FileIdentityOf(path);
    if (!found.known || (path == own.path && found == own.identity)) {
        return 0;
    }
    const bool removed = unlink(name.c_str()) == 0 || rmdir(name.c_str()) == 0;
    return removed ? 0 : static_cast<unsigned long>(errno);
}

} // namespace tarvo

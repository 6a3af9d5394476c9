#include "standin/stage/file_fault.h"

#include "standin/base/files_win32.h"

namespace stage {

namespace {

std::wstring any_file_of(const std::wstring& path) {
    const std::wstring folder = base::folder_of(path);
    if (base::name_of(path) != L"*") {
        return path;
    }
    const std::vector<std::wstring> names = base::list_names(folder);
    return names.empty() ? std::wstring() : base::joined(folder, names.front());
}

} // namespace

void FileFault::begin(const std::string& action, const std::wstring& file, const std::wstring& aside) {
    file_ = any_file_of(file);
    if ((action == "vanish" || action == "replace") && ::MoveFileW(file_.c_str(), aside.c_str()) != FALSE) {
        aside_ = aside;
        replaced_ = action == "replace" && base::write_file(file_, "in the way");
    } else if (action == "lock") {
        lock_.reset(::CreateFileW(file_.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    } else if (action == "read_only") {
        read_only_ = ::SetFileAttributesW(file_.c_str(), FILE_ATTRIBUTE_READONLY) != FALSE;
    }
}

void FileFault::restore() {
    lock_.reset();
    if (read_only_) {
        ::SetFileAttributesW(file_.c_str(), FILE_ATTRIBUTE_NORMAL);
    }
    if (replaced_) {
        base::remove_tree(file_);
    }
    if (!aside_.empty() && ::MoveFileW(aside_.c_str(), file_.c_str()) == FALSE) {
        base::remove_tree(aside_);
    }
    read_only_ = false;
    replaced_ = false;
    aside_.clear();
}

} // namespace stage

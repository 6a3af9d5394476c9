// A file of the plugin's, or of the scene's, that another program takes away or holds for a while. Needs
// windows.h.
#pragma once

#include "common/win32_handles.h"

#include <string>

namespace stage {

class FileFault {
public:
    FileFault() = default;
    ~FileFault() { restore(); }
    FileFault(const FileFault&) = delete;
    FileFault& operator=(const FileFault&) = delete;

    // `action`: "vanish" (the file or the folder is elsewhere), "replace" (the same, and a file of the
    // folder's name is there), "lock" (open and shared with nobody), "read_only". Nothing happens when it is
    // not there. A name "*" stands for any file of that folder. `aside` is a path for what vanishes.
    void begin(const std::string& action, const std::wstring& file, const std::wstring& aside);

    // Undoes the fault. A file that was created in its place meanwhile stays.
    void restore();

private:
    std::wstring file_;
    std::wstring aside_;
    bool read_only_ = false;
    bool replaced_ = false;
    tarvo::FileHandle lock_;
};

} // namespace stage

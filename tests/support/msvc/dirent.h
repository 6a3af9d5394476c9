// The four names of <dirent.h> that the tests use, for a compiler whose library has none. Names only, of one
// folder, in ASCII.
#pragma once

#include <windows.h>

#include <string>

struct dirent {
    char d_name[MAX_PATH];
};

struct DIR {
    HANDLE search;
    WIN32_FIND_DATAA data;
    bool has_data;
    dirent entry;
};

inline DIR* opendir(const char* folder) {
    DIR* made = new DIR();
    made->search = ::FindFirstFileA((std::string(folder) + "\\*").c_str(), &made->data);
    made->has_data = made->search != INVALID_HANDLE_VALUE;
    if (!made->has_data) {
        delete made;
        return nullptr;
    }
    return made;
}

inline const dirent* readdir(DIR* folder) {
    if (!folder->has_data) {
        return nullptr;
    }
    ::lstrcpynA(folder->entry.d_name, folder->data.cFileName, MAX_PATH);
    folder->has_data = ::FindNextFileA(folder->search, &folder->data) != FALSE;
    return &folder->entry;
}

inline int closedir(DIR* folder) {
    ::FindClose(folder->search);
    delete folder;
    return 0;
}

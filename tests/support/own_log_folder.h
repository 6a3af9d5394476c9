// A log folder that only one test uses: the process-wide stores keep their files in the usual one open, and
// Windows moves no file that is open. The value of "lowerversion" makes the folder's name.
#pragma once

#include "common/platform.h"
#include "tests/support/test_folder.h"

#include <cstdio>
#include <string>
#include <utility>

#ifdef _WIN32
#include <direct.h>
#else
#include <unistd.h>
#endif

namespace support {

// As long as it lives, loggers are made for the folder "log" + `suffix`; `channel` has no file there yet.
class OwnLogFolder {
public:
    OwnLogFolder(const std::string& suffix, std::string channel)
        : folder_(plugin_folder() + "/log" + suffix), channel_(std::move(channel)),
          ini_(plugin_folder() + "/script/qfx_plugin.ini") {
        tarvo::CreateFolder(tarvo::CommonAppDataFolder() + tarvo::kPluginFolder + L"/script");
        write_file(ini_, "[general]\nlowerversion=" + suffix + "\n");
        remove_files();
    }
    // Loggers made for it must be gone by then.
    ~OwnLogFolder() {
        std::remove(ini_.c_str());
        remove_files();
        if (folder_ != plugin_folder() + "/log") {
            remove_folder();
        }
    }
    OwnLogFolder(const OwnLogFolder&) = delete;
    OwnLogFolder& operator=(const OwnLogFolder&) = delete;

    const std::string& folder() const { return folder_; }

    // 0: the current file.
    std::string file(int number = 0) const {
        return folder_ + "\\" + channel_ + (number == 0 ? "" : std::to_string(number)) + ".log";
    }

    bool has(int number) const { return tarvo::PathExists(file(number)); }

    // The folder must hold nothing.
    bool remove_folder() const { return remove_folder(folder_); }

private:
    static bool remove_folder(const std::string& path) {
#ifdef _WIN32
        return ::_rmdir(path.c_str()) == 0;
#else
        return ::rmdir(path.c_str()) == 0;
#endif
    }

    // A test that failed may have left a folder under a file's name.
    void remove_files() const {
        constexpr int kMostFiles = 6;
        for (int number = 0; number <= kMostFiles; ++number) {
            if (std::remove(file(number).c_str()) != 0) {
                remove_folder(file(number));
            }
        }
    }

    std::string folder_;
    std::string channel_;
    std::string ini_;
};

} // namespace support

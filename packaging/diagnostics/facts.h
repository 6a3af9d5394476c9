// What the diagnostics found out about an installation, before anything is made of it. Texts are UTF-8.
#pragma once

#include "packaging/diagnostics/client_answer.h"
#include "packaging/diagnostics/last_submission.h"
#include "packaging/diagnostics/manifest.h"
#include "packaging/diagnostics/module_image.h"

#include <string>
#include <vector>

namespace diagnostics {

struct FileFact {
    std::string path;
    bool exists = false;
    unsigned long long size = 0;
    unsigned long long written = 0; // in the file system's own units
};

struct SevenZipFact {
    bool started = false;
    bool ended = false; // within the time limit
    unsigned long exit_code = 0;
    std::string first_line;
};

struct FolderFact {
    std::string path;
    bool exists = false;
    bool is_file = false;  // a file has the folder's name
    bool writable = false; // a file could be made in it just now
};

struct Facts {
    std::string windows;     // "10.0.19045"
    std::string host;        // folder of 3ds Max 2019; empty: not registered
    std::string data_folder; // C:\ProgramData\Tarvo Rendering
    bool has_data_folder = false;
    InstalledFiles installed;
    FileFact module;
    std::string module_version; // empty: no version resource
    ModuleImage module_image;
    FileFact package_contents;
    FileFact prepare_script;
    FileFact analysis_source;       // .ms
    FileFact analysis_encrypted;    // .mse
    bool analysis_is_stale = false; // the .mse was made from something else than the .ms that is there
    std::vector<FileFact> virus_scripts;
    FileFact ini;
    std::string ip;
    std::string port_text;
    int port = 0;
    std::string lower_version;
    FileFact seven_zip;
    FileFact seven_zip_library;
    SevenZipFact seven_zip_run;
    std::vector<std::string> in_the_way;     // files that Windows would start in place of 7-Zip
    std::vector<FolderFact> written_folders; // the plugin writes there as the user
    std::vector<std::string> open_to_all;    // files and folders that must not be, but are
    ClientFact client;
    LastSubmission last;
    unsigned long long free_bytes = 0;
};

} // namespace diagnostics

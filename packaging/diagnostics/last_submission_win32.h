// Finds what the last submission left, and lists what is stored.
#pragma once

#include "packaging/diagnostics/cleanup.h"
#include "packaging/diagnostics/files_win32.h"
#include "packaging/diagnostics/last_submission.h"

#include <functional>
#include <string>
#include <vector>

namespace diagnostics {

// Documents and packed scenes, with the folder they lie in. Nothing of a folder that is a link.
struct Stored {
    std::vector<StoredFile> files;
    std::vector<Entry> entries; // the same files
};
Stored stored_files(const std::wstring& data);

// The text of a submit document; empty when it cannot be read.
std::string document_text(const std::wstring& path);

// `log_folder`: where the plugin writes its logs. `before_test` is called when an archive is to be tested.
LastSubmission last_submission(const std::wstring& data, const std::wstring& log_folder,
                               const std::function<void()>& before_test);

} // namespace diagnostics

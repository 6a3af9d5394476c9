#include "packaging/diagnostics/cleanup_win32.h"

#include "common/win32_handles.h"
#include "packaging/diagnostics/last_submission_win32.h"
#include "packaging/diagnostics/wide_text_win32.h"

#include <windows.h>

namespace diagnostics {

namespace {

constexpr unsigned long long kMegabyte = 1024ULL * 1024;

unsigned long long now() {
    FILETIME time = {};
    ::GetSystemTimeAsFileTime(&time);
    return static_cast<unsigned long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

// Shared with nobody: what a program has open cannot be opened like this. Deleted by the same handle, so that
// nothing else can take the name in between. A link is opened itself, not what it leads to.
DWORD remove_unless_open(const std::wstring& path) {
    const tarvo::FileHandle file(::CreateFileW(path.c_str(), DELETE, 0, nullptr, OPEN_EXISTING,
                                               FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (!file) {
        return ::GetLastError();
    }
    FILE_DISPOSITION_INFO disposition = {};
    disposition.DeleteFile = TRUE;
    return ::SetFileInformationByHandle(file.get(), FileDispositionInfo, &disposition, sizeof disposition) !=
                   FALSE
               ? ERROR_SUCCESS
               : ::GetLastError();
}

struct Counts {
    unsigned removed = 0;
    unsigned long long bytes = 0;
    unsigned kept = 0;
    unsigned failed = 0;
};

std::string newest_scene(const Stored& stored) {
    const std::size_t document = newest_document(stored.files);
    DocumentFact fact;
    if (document != kNone) {
        read_document(document_text(stored.entries[document].path), fact);
    }
    return fact.scene;
}

} // namespace

bool clean(const std::wstring& data, unsigned days,
           const std::function<void(Message, const std::vector<Argument>&)>& say) {
    const Stored stored = stored_files(data);
    const unsigned long long today = now();
    const std::vector<Fate> fates = plan_cleaning(stored.files, newest_scene(stored), today, days);
    Counts counts;
    for (std::size_t i = 0; i < fates.size(); ++i) {
        const Entry& entry = stored.entries[i];
        const std::string path = to_utf8(entry.path);
        if (fates[i] == Fate::kept_newest) {
            say(Message::kept_newest, {{path}});
            ++counts.kept;
        }
        if (fates[i] != Fate::removed) {
            continue;
        }
        const DWORD error = remove_unless_open(entry.path);
        if (error == ERROR_SUCCESS) {
            say(Message::removed, {{path},
                                   {std::to_string(age_in_days(entry.written_at, today))},
                                   {std::to_string(entry.size)}});
            ++counts.removed;
            counts.bytes += entry.size;
        } else if (error == ERROR_SHARING_VIOLATION) {
            say(Message::kept_open, {{path}});
            ++counts.kept;
        } else {
            say(Message::not_removed, {{path}, {std::to_string(error)}});
            ++counts.failed;
        }
    }
    say(Message::cleaned, {{std::to_string(counts.removed)},
                           {std::to_string(counts.bytes / kMegabyte)},
                           {std::to_string(counts.kept)},
                           {std::to_string(counts.failed)}});
    return counts.failed == 0;
}

} // namespace diagnostics

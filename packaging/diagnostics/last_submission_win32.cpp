#include "packaging/diagnostics/last_submission_win32.h"

#include "packaging/diagnostics/programs_win32.h"
#include "packaging/diagnostics/wide_text_win32.h"

#include <windows.h>

namespace diagnostics {

namespace {

constexpr unsigned long kDocumentBytes = 64 * 1024 * 1024;
constexpr unsigned long kLastLines = 64 * 1024;
constexpr const wchar_t* kChannels[] = {L"qfx_data", L"qfx_ui", L"qfx_http"};

void add_files(const std::wstring& folder, bool is_archive, Stored& stored) {
    const DWORD attributes = ::GetFileAttributesW(folder.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        return;
    }
    for (const Entry& entry : entries_below(folder, 1)) {
        if (!entry.is_folder) {
            StoredFile file;
            file.name = to_utf8(file_name(entry.path));
            file.is_archive = is_archive;
            file.written = entry.written_at;
            stored.files.push_back(file);
            stored.entries.push_back(entry);
        }
    }
}

std::string last_line(const std::string& text) {
    const std::size_t last = text.find_last_not_of("\r\n");
    if (last == std::string::npos) {
        return std::string();
    }
    const std::size_t before = text.find_last_of("\r\n", last);
    const std::size_t begin = before == std::string::npos ? 0 : before + 1;
    return text_to_utf8(text.substr(begin, last + 1 - begin));
}

void find_archive(const Stored& stored, std::size_t document, LastSubmission& last) {
    ArchiveFact& archive = last.archive;
    std::size_t index = kNone;
    if (document != kNone && last.document.readable) {
        index = archive_of(stored.files, stored.files[document], last.document.scene);
        archive.of_document = index != kNone;
    }
    if (index == kNone) {
        index = newest_archive(stored.files);
    }
    archive.exists = index != kNone;
    if (archive.exists) {
        archive.name = stored.files[index].name;
        archive.written = stored.entries[index].written;
        archive.size = stored.entries[index].size;
    }
}

} // namespace

Stored stored_files(const std::wstring& data) {
    Stored stored;
    add_files(data + L"\\json", false, stored);
    add_files(data + L"\\compress", true, stored);
    return stored;
}

std::string document_text(const std::wstring& path) {
    return file_tail(path, kDocumentBytes);
}

LastSubmission last_submission(const std::wstring& data, const std::wstring& log_folder,
                               const std::function<void()>& before_test) {
    LastSubmission last;
    const Stored stored = stored_files(data);
    const std::size_t document = newest_document(stored.files);
    if (document != kNone) {
        last.document.exists = true;
        last.document.written = stored.entries[document].written;
        last.document.size = stored.entries[document].size;
        read_document(document_text(stored.entries[document].path), last.document);
    }
    find_archive(stored, document, last);
    const std::wstring seven_zip = data + L"\\7-Zip\\7z.exe";
    if (last.archive.exists && file_fact(seven_zip).exists) {
        before_test();
        last.archive.test =
            test_archive(seven_zip, data + L"\\compress\\" + from_utf8(last.archive.name), last.archive.said);
    }
    for (const wchar_t* channel : kChannels) {
        const std::wstring file = log_folder + L"\\" + channel + L".log";
        last.channels.push_back({to_utf8(channel), last_line(file_tail(file, kLastLines))});
    }
    return last;
}

} // namespace diagnostics

// The folders that the plugin writes to, what others may change, and the space that is left.
#include "packaging/diagnostics/findings.h"

namespace diagnostics {

namespace {

constexpr unsigned long long kMegabyte = 1024ULL * 1024;
constexpr unsigned long long kTooLittleMb = 500;
constexpr unsigned long long kLittleMb = 5000;

void judge_folder(const FolderFact& folder, Findings& findings) {
    const std::vector<Argument> path = {{folder.path}};
    if (folder.is_file) {
        findings.problem({Message::folder_is_file, path}, {Message::cure_folder_is_file, path});
    } else if (!folder.exists) {
        findings.warning({Message::folder_absent, path}, {Message::cure_folder_absent, {}});
    } else if (!folder.writable) {
        findings.problem({Message::folder_locked, path}, {Message::cure_rights, {}});
    } else {
        findings.fine(Message::folder_writable, path);
    }
}

void judge_space(unsigned long long free_bytes, Findings& findings) {
    const unsigned long long megabytes = free_bytes / kMegabyte;
    const std::vector<Argument> text = {{std::to_string(megabytes)}};
    if (megabytes < kTooLittleMb) {
        findings.problem({Message::space_low, text}, {Message::cure_space_full, {}});
    } else if (megabytes < kLittleMb) {
        findings.warning({Message::space_low, text}, {Message::cure_space_low, {}});
    } else {
        findings.fine(Message::space, text);
    }
}

} // namespace

void judge_folders(const Facts& facts, Findings& findings) {
    if (facts.has_data_folder) {
        for (const FolderFact& folder : facts.written_folders) {
            judge_folder(folder, findings);
        }
    }
    for (const std::string& path : facts.open_to_all) {
        findings.problem({Message::open_to_all, {{path}}}, {Message::cure_rights, {}});
    }
    judge_space(facts.free_bytes, findings);
}

} // namespace diagnostics

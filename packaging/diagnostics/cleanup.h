// Which old documents and packed scenes may go.
#pragma once

#include <string>
#include <vector>

namespace diagnostics {

struct StoredFile {
    std::string name; // without its folder, UTF-8
    bool is_archive = false;
    unsigned long long written = 0; // FILETIME: 100 nanoseconds
};

enum class Fate { stays, kept_newest, removed };

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

// Indices into `files`; kNone when there is none. Only files that bear names of the plugin count.
std::size_t newest_document(const std::vector<StoredFile>& files);
std::size_t newest_archive(const std::vector<StoredFile>& files);

// The packed scene that belongs to a document: the newest of the scene's name that is not younger. A scene is
// packed before its document is written.
std::size_t archive_of(const std::vector<StoredFile>& files, const StoredFile& document,
                       const std::string& scene);

unsigned long long age_in_days(unsigned long long written, unsigned long long now);

// One fate for each file. The newest document, its packed scene and the newest packed scene are never
// removed; nor is a file whose name is none of the plugin's.
std::vector<Fate> plan_cleaning(const std::vector<StoredFile>& files, const std::string& newest_scene,
                                unsigned long long now, unsigned days);

} // namespace diagnostics

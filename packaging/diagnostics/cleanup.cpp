#include "packaging/diagnostics/cleanup.h"

#include "packaging/diagnostics/last_submission.h"

namespace diagnostics {

namespace {

constexpr unsigned long long kDay = 24ULL * 60 * 60 * 10000000;
constexpr const char* kPartial = ".tmp";

bool is_ours(const StoredFile& file) {
    return file.is_archive ? is_archive_name(file.name) : is_document_name(file.name);
}

bool is_whole_archive(const StoredFile& file) {
    return file.is_archive && is_ours(file) && file.name.find(kPartial) == std::string::npos;
}

template <typename Wanted>
std::size_t newest(const std::vector<StoredFile>& files, Wanted wanted) {
    std::size_t found = kNone;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (wanted(files[i]) && (found == kNone || files[i].written > files[found].written)) {
            found = i;
        }
    }
    return found;
}

} // namespace

std::size_t newest_document(const std::vector<StoredFile>& files) {
    return newest(files, [](const StoredFile& file) { return !file.is_archive && is_ours(file); });
}

std::size_t newest_archive(const std::vector<StoredFile>& files) {
    return newest(files, is_whole_archive);
}

std::size_t archive_of(const std::vector<StoredFile>& files, const StoredFile& document,
                       const std::string& scene) {
    const std::string stem = scene_stem(scene);
    return newest(files, [&](const StoredFile& file) {
        return is_whole_archive(file) && file.written <= document.written && archive_stem(file.name) == stem;
    });
}

unsigned long long age_in_days(unsigned long long written, unsigned long long now) {
    return now > written ? (now - written) / kDay : 0;
}

std::vector<Fate> plan_cleaning(const std::vector<StoredFile>& files, const std::string& newest_scene,
                                unsigned long long now, unsigned days) {
    const std::size_t document = newest_document(files);
    const std::size_t its_archive =
        document == kNone ? kNone : archive_of(files, files[document], newest_scene);
    const std::size_t archive = newest_archive(files);
    std::vector<Fate> fates;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const bool old = is_ours(files[i]) && age_in_days(files[i].written, now) >= days;
        const bool is_newest = i == document || i == its_archive || i == archive;
        fates.push_back(!old ? Fate::stays : is_newest ? Fate::kept_newest : Fate::removed);
    }
    return fates;
}

} // namespace diagnostics

#include "submit/scene_archive.h"

#include "common/own_file.h"
#include "common/text.h"
#include "host/host.h"
#include "resources/resource_ids.h"

#include <algorithm>

namespace tarvo {

namespace {

// Windows' limits in UTF-16 units: a file's name; a command line, less its closing zero and the two quotation
// marks that the system may put around the program's path.
constexpr std::wstring::size_type kLongestFileName = 255;
constexpr std::wstring::size_type kLongestCommandLine = 32767 - 1 - 2;

struct RefusalTexts {
    ArchiveRefusal refusal;
    unsigned text_id;
    const char* log_text;
};

constexpr RefusalTexts kRefusals[] = {
    {ArchiveRefusal::unusable_name, IDS_SCENE_NAME_UNUSABLE,
     "The scene is not packed: before the extension its name is empty or ends with a blank or a full stop."},
    {ArchiveRefusal::impossible_character, IDS_SCENE_PATH_CHARACTERS,
     "The scene is not packed: its path has half of a surrogate pair, a character that no file name can "
     "have, or steps up to another folder."},
    {ArchiveRefusal::too_long, IDS_SCENE_NAME_TOO_LONG,
     "The scene is not packed: its name or its path is too long."},
    {ArchiveRefusal::name_taken, IDS_ARCHIVE_NAME_TAKEN,
     "The scene is not packed: what lies under the archive's name cannot be removed, error code is "},
};

const RefusalTexts& texts_of(ArchiveRefusal refusal) {
    for (const RefusalTexts& row : kRefusals) {
        if (row.refusal == refusal) {
            return row;
        }
    }
    return kRefusals[0];
}

// 7-Zip ends an argument at a quotation mark, takes '*' and '?' as wildcards, and takes the text after a
// colon as the name of a file's second stream. No file has such a name, but the user can type one.
bool has_impossible_character(const std::wstring& path) {
    const std::wstring::size_type start = path.compare(0, 4, L"\\\\?\\") == 0 ? 4 : 0;
    for (std::wstring::size_type at = start; at < path.size(); ++at) {
        const bool drive_colon = path[at] == L':' && at == start + 1;
        const bool forbidden = std::wstring(L"\"*:<>?|").find(path[at]) != std::wstring::npos;
        if (path[at] < L' ' || (forbidden && !drive_colon)) {
            return true;
        }
    }
    return false;
}

} // namespace

ArchiveRefusal FindArchiveRefusal(const PluginConfig& config, const std::wstring& host_path) {
    const std::wstring stem = Utf8ToWide(ArchiveStem(config.sceneFile));
    const std::wstring archive = Utf8ToWide(config.archivePath);
    if (!IsUsableArchiveStem(stem)) {
        return ArchiveRefusal::unusable_name;
    }
    const bool lost_a_surrogate = HasLoneSurrogate(host_path) && WideToUtf8(host_path) == config.sceneFile;
    // The stem of a path with backslashes keeps its slashes, so ".." could lead out of the compress folder. A
    // drive's colon right before the name ("D:b.max") would make the rest of the archive's name a file's
    // second stream.
    const bool leaves_folder =
        (L"/" + stem + L"/").find(L"/../") != std::wstring::npos || stem.find(L':') != std::wstring::npos;
    if (lost_a_surrogate || leaves_folder || has_impossible_character(Utf8ToWide(config.sceneFile))) {
        return ArchiveRefusal::impossible_character;
    }
    const std::wstring::size_type file_name =
        archive.size() - std::min(archive.size(), archive.rfind(L'/') + 1);
    if (file_name > kLongestFileName || PackCommandLine(config).size() > kLongestCommandLine) {
        return ArchiveRefusal::too_long;
    }
    return ArchiveRefusal::none;
}

unsigned ArchiveRefusalText(const PluginConfig& config) {
    const ArchiveRefusal refusal = FindArchiveRefusal(config, SceneFilePath());
    const bool taken = refusal == ArchiveRefusal::none && IsNameTaken(Utf8ToWide(config.archivePath));
    return texts_of(taken ? ArchiveRefusal::name_taken : refusal).text_id;
}

const char* ArchiveRefusalLogText(ArchiveRefusal refusal) {
    return texts_of(refusal).log_text;
}

} // namespace tarvo

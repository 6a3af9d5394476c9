#include "submit/scene_archive.h"

#include "common/platform.h"
#include "common/text.h"
#include "host/host.h"
#include "resources/resource_ids.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace tarvo {

namespace {

constexpr wchar_t kTagAlphabet[] = L"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
constexpr int kTagAlphabetLength = 62;
constexpr int kTagLength = 6;
static_assert(sizeof kTagAlphabet / sizeof kTagAlphabet[0] == kTagAlphabetLength + 1,
              "62 characters and a zero");

constexpr char kSwitches[] = " a -mx=3 -mmt=2 -t7z";
constexpr const wchar_t* kConsoleSwitch = L" -sccUTF-8";

template <class Text>
Text quoted(const Text& path) {
    const Text quote(1, '"');
    return Text(1, ' ') + quote + path + quote;
}

// 7-Zip prints each name in the OEM code page. Where that page has characters of two bytes, 7-Zip was seen to
// end with "Internal Error #282228" at a name that the page lacks; UTF-8 lacks none.
std::wstring console_switch(const std::wstring& arguments, const std::wstring& narrow_arguments) {
    const bool needed = arguments != narrow_arguments && HasDoubleByteConsole();
    return needed ? kConsoleSwitch : std::wstring();
}

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

bool refused(SceneData& scene, ArchiveRefusal refusal, const std::string& error = std::string()) {
    scene.log().Write(ArchiveRefusalLogText(refusal) + error, kError);
    return false;
}

} // namespace

// Unlike in FileNameStart, a backslash wins over a slash (C-22).
std::string ArchiveStem(const std::string& scene_file) {
    std::string::size_type separator = scene_file.rfind('\\');
    if (separator == std::string::npos) {
        separator = scene_file.rfind('/');
    }
    const std::string name = scene_file.substr(separator == std::string::npos ? 0 : separator + 1);
    return name.substr(0, name.rfind('.'));
}

std::wstring ArchiveTag(long long seconds) {
    // Reseeded on every call: two archives of one second have the same tag (C-32). When the scene's name is
    // the same too, 7-Zip adds to the earlier archive.
    std::srand(static_cast<unsigned>(seconds));
    std::wstring tag;
    for (int i = 0; i < kTagLength; ++i) {
        tag += kTagAlphabet[std::rand() % kTagAlphabetLength];
    }
    return tag;
}

std::wstring ArchivePath(const std::wstring& folder, const std::wstring& stem, const std::wstring& tag) {
    return folder + L"/" + stem + L"_" + tag + L".7z";
}

std::string PackArguments(const std::string& archive, const std::string& scene) {
    return kSwitches + quoted(archive) + quoted(scene);
}

std::wstring PackCommandLine(const PluginConfig& config) {
    const std::wstring narrow = LocaleToWide(config.packArguments);
    if (config.archivePath.empty()) {
        return config.sevenZipExe + narrow;
    }
    // Not from packArguments: 7-Zip takes the '?' of a lost character as a wildcard.
    const std::wstring switches(std::begin(kSwitches), std::end(kSwitches) - 1);
    const std::wstring paths = quoted(Utf8ToWide(config.archivePath)) + quoted(Utf8ToWide(config.sceneFile));
    return config.sevenZipExe + switches + console_switch(switches + paths, narrow) + paths;
}

bool IsUsableArchiveStem(const std::wstring& stem) {
    return !stem.empty() && stem.back() != L' ' && stem.back() != L'.';
}

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

bool PrepareSceneArchive(SceneData& scene, std::string, std::string, std::wstring, PluginConfig& config) {
    if (!PathExists(config.compressDir)) {
        CreateFolder(config.compressDir);
    }
    const std::wstring stem = Utf8ToWide(ArchiveStem(config.sceneFile));
    const std::wstring archive = ArchivePath(config.compressDir, stem, ArchiveTag(SecondsSinceEpoch()));
    config.archivePath = WideToUtf8(archive);
    config.packArguments = PackArguments(Utf8ToAnsi(config.archivePath), Utf8ToAnsi(config.sceneFile));

    const ArchiveRefusal refusal = FindArchiveRefusal(config, SceneFilePath());
    if (refusal != ArchiveRefusal::none) {
        return refused(scene, refusal);
    }
    // Another program can guess the tag and leave an archive with a password: 7-Zip would ask for it on a
    // hidden console, and the host would wait without end.
    const unsigned long error = RemoveForeign(archive, scene.made_archive);
    return error == 0 || refused(scene, ArchiveRefusal::name_taken, std::to_string(error));
}

} // namespace tarvo

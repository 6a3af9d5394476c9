#include "submit/scene_archive.h"

#include "common/platform.h"
#include "common/text.h"

#include <cstdlib>
#include <utility>

namespace tarvo {

namespace {

constexpr wchar_t kTagAlphabet[] = L"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
constexpr int kTagAlphabetLength = 62;
constexpr int kTagLength = 6;
static_assert(sizeof kTagAlphabet / sizeof kTagAlphabet[0] == kTagAlphabetLength + 1,
              "62 characters and a zero");

} // namespace

// Unlike FileNameStart, the backslash counts first (C-22).
std::string ArchiveStem(const std::string& scene_file) {
    std::string::size_type separator = scene_file.rfind('\\');
    if (separator == std::string::npos) {
        separator = scene_file.rfind('/');
    }
    const std::string::size_type start = separator == std::string::npos ? 0 : separator + 1;
    const std::string::size_type dot = scene_file.rfind('.');
    if (dot == std::string::npos || dot < start) {
        return scene_file.substr(start);
    }
    return scene_file.substr(start, dot - start);
}

std::wstring ArchiveTag(long long seconds) {
    // Reseeded on every call: two archives of one second share the tag (C-32). When the scene's name is the
    // same too, the later one is added to the earlier one's file.
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
    return " a -mx=3 -mmt=2 -t7z \"" + archive + "\" \"" + scene + "\"";
}

bool IsUsableArchiveStem(const std::wstring& stem) {
    return !stem.empty() && stem.back() != L' ' && stem.back() != L'.';
}

bool PrepareSceneArchive(SceneData&, std::string, std::string arguments, std::wstring, PluginConfig& config) {
    if (!PathExists(config.compressDir)) {
        CreateFolder(config.compressDir);
    }
    const std::string ansi_scene = Utf8ToAnsi(config.sceneFile);
    const std::wstring stem = LocaleToWide(Utf8ToAnsi(ArchiveStem(config.sceneFile)));
    const std::wstring archive = ArchivePath(config.compressDir, stem, ArchiveTag(SecondsSinceEpoch()));
    config.archivePath = WideToUtf8(archive);
    arguments = PackArguments(Utf8ToAnsi(config.archivePath), ansi_scene);
    config.packArguments = std::move(arguments);
    return IsUsableArchiveStem(stem);
}

} // namespace tarvo

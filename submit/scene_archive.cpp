#include "submit/scene_archive.h"

#include "common/own_file.h"
#include "common/platform.h"
#include "common/text.h"
#include "host/host.h"

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

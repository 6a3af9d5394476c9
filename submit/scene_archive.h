// Names the scene archive, refuses a scene that cannot be packed, and runs 7-Zip.
#pragma once

#include "scene/scene_data.h"
#include "submit/plugin_config.h"

#include <string>

namespace tarvo {

// The file name of a path without its extension. A backslash ends the folder; a slash only without one
// (C-22).
std::string ArchiveStem(const std::string& scene_file);

// Six characters from the C runtime's generator seeded with `seconds`: the same second gives the same tag.
std::wstring ArchiveTag(long long seconds);

std::wstring ArchivePath(const std::wstring& folder, const std::wstring& stem, const std::wstring& tag);

// The arguments after the program's path, byte for byte, the leading blank included.
std::string PackArguments(const std::string& archive, const std::string& scene);

// 7-Zip's whole command line. Takes both paths from the UTF-8 fields: `packArguments` lacks what the ANSI
// code page or the locale lacks. Otherwise the same as sevenZipExe + `packArguments`.
std::wstring PackCommandLine(const PluginConfig& config);

// False for a name that is empty or ends with a blank or a full stop: the client could not unpack it.
bool IsUsableArchiveStem(const std::wstring& stem);

// Why a scene cannot be packed.
enum class ArchiveRefusal { none, unusable_name, impossible_character, too_long, name_taken };

// Checks the texts alone: never name_taken. `host_path` is the host's own path: sceneFile is UTF-8 and has
// U+FFFD where the path has half of a surrogate pair.
ArchiveRefusal FindArchiveRefusal(const PluginConfig& config, const std::wstring& host_path);

// Why PrepareSceneArchive refused: a string-table number.
unsigned ArchiveRefusalText(const PluginConfig& config);

// The same for the log. For name_taken the system's error follows.
const char* ArchiveRefusalLogText(ArchiveRefusal refusal);

// Creates the compress folder, fills archivePath and packArguments of `config` (also when it returns false),
// and removes a file of the archive's name that this process did not make. False when the scene cannot be
// packed: the log then has an ERROR line, and ArchiveRefusalText the text for the user. The three texts are
// copies that it discards.
bool PrepareSceneArchive(SceneData& scene, std::string scene_file, std::string arguments, std::wstring guid,
                         PluginConfig& config);

// Runs 7-Zip hidden and waits for it without a time limit. Reports the outcome to the log only.
void RunSevenZip(SceneData& scene, std::string scene_file, const PluginConfig& config);

} // namespace tarvo

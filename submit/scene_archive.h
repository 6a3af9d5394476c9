// Naming and packing the scene archive with the 7-Zip command-line program.
#pragma once

#include "scene/scene_data.h"
#include "submit/plugin_config.h"

#include <string>

namespace tarvo {

// The part of a path that names the archive: after the last backslash (or, without one, the last slash),
// before the last dot of the file name.
std::string ArchiveStem(const std::string& scene_file);

// Six characters out of 62, from the C runtime's generator, which it seeds with `seconds`: the same second
// gives the same tag.
std::wstring ArchiveTag(long long seconds);

std::wstring ArchivePath(const std::wstring& folder, const std::wstring& stem, const std::wstring& tag);

// Byte for byte what stands behind the program's path, the leading blank included.
std::string PackArguments(const std::string& archive, const std::string& scene);

// False for a name that is empty or ends with a blank or a full stop: the client could not unpack it.
bool IsUsableArchiveStem(const std::wstring& stem);

// Makes the compress folder, fills archivePath and packArguments of `config` (also when the answer is false),
// and says whether the name is acceptable. The three texts are copies that it discards.
bool PrepareSceneArchive(SceneData& scene, std::string scene_file, std::string arguments, std::wstring guid,
                         PluginConfig& config);

// Runs 7-Zip hidden and waits for it without a time limit. Nothing is reported: a missing archive shows on
// the client's side.
void RunSevenZip(SceneData& scene, std::string scene_file, const PluginConfig& config);

} // namespace tarvo

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

// 7-Zip's whole command line, with both paths as they are: `packArguments` lacks what the ANSI code page or
// the locale lacks. Where it lacks nothing, this is the program's path and `packArguments`; so it is too for
// a record without an archive's path.
std::wstring PackCommandLine(const PluginConfig& config);

// False for a name that is empty or ends with a blank or a full stop: the client could not unpack it.
bool IsUsableArchiveStem(const std::wstring& stem);

// Makes the compress folder, fills archivePath and packArguments of `config` (also when the answer is false),
// takes away what lies under the archive's name and was not made by this process, and says whether the scene
// can be packed. On false the log has an ERROR line, and ArchiveRefusalText the text for the user. The three
// texts are copies that it discards.
bool PrepareSceneArchive(SceneData& scene, std::string scene_file, std::string arguments, std::wstring guid,
                         PluginConfig& config);

// Runs 7-Zip hidden and waits for it without a time limit. Only the log tells what came of it; a missing
// archive shows on the client's side.
void RunSevenZip(SceneData& scene, std::string scene_file, const PluginConfig& config);

} // namespace tarvo

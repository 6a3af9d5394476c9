// Why a scene cannot be packed, found before 7-Zip is started.
#pragma once

#include "submit/plugin_config.h"

#include <string>

namespace tarvo {

enum class ArchiveRefusal { none, unusable_name, impossible_character, too_long, name_taken };

// Looks at the texts alone: never name_taken. `host_path` is the path as the host gives it: sceneFile is
// UTF-8 and has U+FFFD where the path has half of a surrogate pair.
ArchiveRefusal FindArchiveRefusal(const PluginConfig& config, const std::wstring& host_path);

// Why PrepareSceneArchive refused: a string-table number.
unsigned ArchiveRefusalText(const PluginConfig& config);

// The same for the log. For name_taken the system's error follows.
const char* ArchiveRefusalLogText(ArchiveRefusal refusal);

} // namespace tarvo

// Records what the module takes from the system and releases, the processes it starts, and what it opens in
// the shell (which is recorded only). Needs windows.h.
#pragma once

#include "standin/stage/transcript.h"

#include <windows.h>

#include <string>

namespace stage {

// Replaces the module's imports and forgets what an earlier module has not released. The transcript must
// outlive the module.
void install_resource_watch(HMODULE module, Transcript& transcript);

// What the module has not released: {"kind", "detail"} each.
Json::Value open_resources();

// The module's next call of this function fails: "WinHttpReadData" or "CopyFileW".
void fail_next_call(const std::string& function);

} // namespace stage

// Watches what the module takes from the system and gives back, the processes it starts and what it opens in
// the shell (which is recorded and not opened). Needs windows.h.
#pragma once

#include "standin/stage/ledger.h"
#include "standin/stage/transcript.h"

#include <windows.h>

namespace stage {

// Replaces the module's imports; the transcript and the ledger must outlive the module. One watch at a time.
void install_resource_watch(HMODULE module, Transcript& transcript, Ledger& ledger);

// The module's next WinHttpReadData fails with ERROR_WINHTTP_CONNECTION_ERROR.
void fail_next_http_read();
// The module's next CopyFileW fails with ERROR_DISK_FULL.
void fail_next_file_copy();

} // namespace stage

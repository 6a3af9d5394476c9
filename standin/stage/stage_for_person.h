// The stage for a person: a window with the menu bar, the scene open, the client waiting for jobs. Needs
// windows.h.
#pragma once

#include "standin/stage/command_line.h"

namespace stage {

// Returns when the window was closed; the answer is the program's exit code.
int run_for_person(const Options& options);

} // namespace stage

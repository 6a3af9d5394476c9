// One scenario played again and again in one process, with another fault each time. Needs windows.h.
#pragma once

#include "standin/stage/command_line.h"

#include <json/value.h>

#include <windows.h>

namespace stage {

class StageRun;

// Plays the scenario once for each fault of the list in `options.faults` and writes OUT/results.jsonl, one
// line for each; a file OUT/stop.txt ends it after the fault at hand. `began` gets each run, so that a crash
// handler can end it. The answer is the program's exit code.
int sweep_faults(const Options& options, const Json::Value& scenario, void (*began)(StageRun*));

// What takes long and is not what fails: no waiting, and 7-Zip's work on the same scene is not done twice. To
// be installed before everything else.
void install_shortcuts(HMODULE module);

} // namespace stage

// Lets one call of one imported function fail, in the module, the way tests/faults/imports.txt says. Needs
// windows.h.
#pragma once

#include <json/value.h>

#include <windows.h>

#include <functional>

namespace stage {

// `fault`: "function" and "call", the number of its call from 1; "kind":
//   "fail"   the call is not made and answers "result", with "error" (GetLastError) and "errno"
//   "after"  the call is made and answers so all the same
//   "short"  the call is made for half of what its third argument counts
//   "throw"  the call throws
//   "clock"  from this call on the function is "days" off
//   "file"   the call is made; just before it, `on_file` is called
//   "refuse" the host refuses the call, which is one of its interfaces', and answers so
//   "full"   the disk is full from the "call"-th write on: that one is done for half, the later ones fail as
//            their entries in "writes" say, and 7-Zip fails
//   "mixed"  one in "call" calls of all that is watched fails, as its entry in "watched" says, at distances
//            that differ and are the same in each run
// With "count" alone nothing fails and the report has the places of the calls. The functions to count are
// "watched". To be installed before the other watches, which then see what the module sees.
void install_fault_injector(HMODULE module, const Json::Value& fault, const std::function<void()>& on_file);

// A call into the host, counted by its recorder. The one that is wanted throws, or the answer is false: the
// host refuses it.
bool host_call_goes_on(const char* name);

// Whether the module can write nothing any more.
bool disk_is_full();

// Nothing fails and nothing is counted from now on.
void end_faults();

// "hit": whether the call came; "stack": from where, as offsets in the module, innermost first; "calls":
// function → how often it was called; "places": with "count", function → a number for the place of each call.
Json::Value fault_report();

} // namespace stage

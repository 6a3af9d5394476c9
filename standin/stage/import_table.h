// Puts functions of ours in the place of functions that a loaded module imports. Needs windows.h.
#pragma once

#include <windows.h>

#include <functional>

namespace stage {

using AnyFunction = void (*)();

struct ImportPatch {
    const char* name;
    AnyFunction replacement;
    AnyFunction* original; // gets the imported function; stays null when the module does not import it
};

// True when the module imports the function and its entry was replaced.
bool replace_import(HMODULE module, const ImportPatch& patch);

// Calls `visit` with the name and the address of each import; what it returns, unless null, replaces the
// function.
void visit_imports(HMODULE module, const std::function<AnyFunction(const char*, AnyFunction)>& visit);

} // namespace stage

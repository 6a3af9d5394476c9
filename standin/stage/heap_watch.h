// Counts the module's blocks on the heap of its C runtime, by replacing its imports. Does not see allocations
// inside the runtime and on the host's heap. Needs windows.h.
#pragma once

#include <windows.h>

#include <cstddef>

namespace stage {

struct HeapUse {
    std::size_t blocks = 0;
    std::size_t bytes = 0; // as asked for
};

// Replaces the module's imports. One watch at a time; it must outlive the module.
void install_heap_watch(HMODULE module);

// What the module has allocated since the watch began and not yet released.
HeapUse heap_use();

// The process's private memory in KB; 0 on error.
std::size_t process_memory_kb();

} // namespace stage

// Counts what the module has on the heap of its C runtime, by standing between the two. Allocations that the
// runtime makes by itself, and those of the host's heap, are not seen. Needs windows.h.
#pragma once

#include <windows.h>

#include <cstddef>

namespace stage {

struct HeapUse {
    std::size_t blocks = 0;
    std::size_t bytes = 0; // as asked for
};

// Replaces the module's imports. One watch at a time; it may not end before the module.
void install_heap_watch(HMODULE module);

// What is allocated since the watch began and not yet released.
HeapUse heap_use();

// The process's own memory in KB, as the system counts it; 0 when it does not say.
std::size_t process_memory_kb();

} // namespace stage

#include "standin/stage/heap_watch.h"

#include "standin/stage/import_table.h"

#include <cstdlib>
#include <mutex>
#include <unordered_map>

#include <psapi.h>

namespace stage {

namespace {

// The module also releases blocks that are older than the watch; they do not count.
struct Blocks {
    std::mutex mutex;
    std::unordered_map<const void*, std::size_t> sizes;
    std::size_t bytes = 0;
};

// Never destroyed: the module may release a block while the process ends.
Blocks& blocks() {
    static Blocks* const all = new Blocks;
    return *all;
}

AnyFunction g_malloc = nullptr;
AnyFunction g_calloc = nullptr;
AnyFunction g_realloc = nullptr;
AnyFunction g_free = nullptr;

void* taken(void* block, std::size_t bytes) {
    if (block != nullptr) {
        const std::lock_guard<std::mutex> lock(blocks().mutex);
        blocks().sizes[block] = bytes;
        blocks().bytes += bytes;
    }
    return block;
}

void released(const void* block) {
    const std::lock_guard<std::mutex> lock(blocks().mutex);
    const auto found = blocks().sizes.find(block);
    if (found != blocks().sizes.end()) {
        blocks().bytes -= found->second;
        blocks().sizes.erase(found);
    }
}

void* __cdecl watched_malloc(std::size_t bytes) {
    return taken(reinterpret_cast<decltype(&std::malloc)>(g_malloc)(bytes), bytes);
}

void* __cdecl watched_calloc(std::size_t count, std::size_t size) {
    return taken(reinterpret_cast<decltype(&std::calloc)>(g_calloc)(count, size), count * size);
}

// A failed realloc leaves the old block allocated.
void* __cdecl watched_realloc(void* block, std::size_t bytes) {
    void* const moved = reinterpret_cast<decltype(&std::realloc)>(g_realloc)(block, bytes);
    if (moved != nullptr || bytes == 0) {
        released(block);
    }
    return taken(moved, bytes);
}

// Removed from the record first: another thread may get the same address as soon as it is free.
void __cdecl watched_free(void* block) {
    released(block);
    reinterpret_cast<decltype(&std::free)>(g_free)(block);
}

template <class Function>
AnyFunction any(Function function) {
    return reinterpret_cast<AnyFunction>(function);
}

} // namespace

void install_heap_watch(HMODULE module) {
    const ImportPatch patches[] = {
        {"malloc", any(&watched_malloc), &g_malloc},
        {"calloc", any(&watched_calloc), &g_calloc},
        {"realloc", any(&watched_realloc), &g_realloc},
        {"free", any(&watched_free), &g_free},
    };
    for (const ImportPatch& patch : patches) {
        replace_import(module, patch);
    }
}

HeapUse heap_use() {
    const std::lock_guard<std::mutex> lock(blocks().mutex);
    HeapUse use;
    use.blocks = blocks().sizes.size();
    use.bytes = blocks().bytes;
    return use;
}

std::size_t process_memory_kb() {
    constexpr std::size_t bytes_in_kb = 1024;
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof counters;
    return ::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters) != FALSE
               ? counters.PagefileUsage / bytes_in_kb
               : 0;
}

} // namespace stage

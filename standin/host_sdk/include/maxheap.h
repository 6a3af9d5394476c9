// The host's heap: every class whose objects cross between host and plug-in derives from MaxHeapOperators.
#pragma once

#include "standin_export.h"

#include <cstddef>
#include <new>

class UtilExport MaxHeapOperators {
public:
    static void* operator new(std::size_t size);
    static void* operator new(std::size_t size, const std::nothrow_t&) noexcept;
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void* operator new[](std::size_t size);
    static void operator delete(void* block) noexcept;
    static void operator delete(void* block, const std::nothrow_t&) noexcept;
    static void operator delete(void*, void*) noexcept {}
    static void operator delete[](void* block) noexcept;
};

// Owned pointers to the two interfaces of structured storage. Needs windows.h.
#pragma once

#include "common/win32_handles.h"

#include <windows.h>

#include <objidl.h>

namespace max_file {

template <class Interface>
struct ComPointerTraits {
    using Type = Interface*;
    static Type empty() { return nullptr; }
    static void close(Type pointer) { pointer->Release(); }
};

using StoragePointer = tarvo::UniqueHandle<ComPointerTraits<IStorage>>;
using StreamPointer = tarvo::UniqueHandle<ComPointerTraits<IStream>>;

} // namespace max_file

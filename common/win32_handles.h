// The kinds of Windows handles that the plugin owns. Needs windows.h.
#pragma once

#include "common/handle.h"

#include <windows.h>

namespace tarvo {

// For what CreateProcess, OpenThread and their like return: the empty value is null.
struct KernelHandleTraits {
    using Type = HANDLE;
    static Type empty() { return nullptr; }
    static void close(Type handle) { ::CloseHandle(handle); }
};
using KernelHandle = UniqueHandle<KernelHandleTraits>;

// For CreateFile: the empty value is INVALID_HANDLE_VALUE.
struct FileHandleTraits {
    using Type = HANDLE;
    static Type empty() { return INVALID_HANDLE_VALUE; }
    static void close(Type handle) { ::CloseHandle(handle); }
};
using FileHandle = UniqueHandle<FileHandleTraits>;

struct ActivationContextTraits {
    using Type = HANDLE;
    static Type empty() { return INVALID_HANDLE_VALUE; }
    static void close(Type handle) { ::ReleaseActCtx(handle); }
};
using ActivationContextHandle = UniqueHandle<ActivationContextTraits>;

} // namespace tarvo

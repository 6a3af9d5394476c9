// Owned handles: one move-only template, an alias for each kind of handle. There is no implicit conversion:
// `get()` lends the handle, `release()` gives it away. Needs windows.h.
#pragma once

#include <windows.h>

namespace tarvo {

// Traits: `Type`, `static Type empty()`, `static void close(Type)`.
template <class Traits>
class UniqueHandle {
public:
    using Type = typename Traits::Type;

    UniqueHandle() : handle_(Traits::empty()) {}
    explicit UniqueHandle(Type handle) : handle_(handle) {}
    UniqueHandle(UniqueHandle&& other) noexcept : handle_(other.release()) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept {
        if (this != &other) {
            reset(other.release());
        }
        return *this;
    }
    UniqueHandle(const UniqueHandle&) = delete;
    UniqueHandle& operator=(const UniqueHandle&) = delete;
    ~UniqueHandle() { reset(); }

    Type get() const { return handle_; }
    explicit operator bool() const { return handle_ != Traits::empty(); }

    Type release() {
        Type handle = handle_;
        handle_ = Traits::empty();
        return handle;
    }

    void reset(Type handle = Traits::empty()) {
        if (handle_ != Traits::empty()) {
            Traits::close(handle_);
        }
        handle_ = handle;
    }

private:
    Type handle_;
};

// For what CreateProcess, OpenThread and similar calls return.
struct KernelHandleTraits {
    using Type = HANDLE;
    static Type empty() { return nullptr; }
    static void close(Type handle) { ::CloseHandle(handle); }
};
using KernelHandle = UniqueHandle<KernelHandleTraits>;

// For CreateFile.
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

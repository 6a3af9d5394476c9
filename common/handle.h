// Owned handles. One move-only template; each kind of handle is an alias with its own empty value and its own
// way to close. There is no implicit conversion: `get()` lends the handle, `release()` gives it away.
#pragma once

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

} // namespace tarvo

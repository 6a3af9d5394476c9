#include "host_state.h"

#include "maxheap.h"

#include <cstdlib>

namespace {

long g_counted = 0;
int g_host_scopes = 0;

// Precedes every block. The mark tells a block of this heap from any other memory.
struct alignas(16) BlockHead {
    std::size_t mark;
    bool counted;
};

const std::size_t kMark = 0x4B4C4248u;

void* allocate(std::size_t size) noexcept {
    void* memory = std::malloc(sizeof(BlockHead) + size);
    if (memory == nullptr) {
        return nullptr;
    }
    BlockHead* head = static_cast<BlockHead*>(memory);
    head->mark = kMark;
    head->counted = g_host_scopes == 0;
    g_counted += head->counted ? 1 : 0;
    return head + 1;
}

void* allocate_or_throw(std::size_t size) {
    void* block = allocate(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void release(void* block) noexcept {
    if (block == nullptr) {
        return;
    }
    BlockHead* head = static_cast<BlockHead*>(block) - 1;
    if (head->mark != kMark) {
        std::abort(); // deleted twice, or from another heap
    }
    head->mark = 0;
    g_counted -= head->counted ? 1 : 0;
    std::free(head);
}

} // namespace

namespace host_sdk {

HostOwnScope::HostOwnScope() {
    ++g_host_scopes;
}
HostOwnScope::~HostOwnScope() {
    --g_host_scopes;
}

long live_heap_objects() {
    return g_counted;
}

} // namespace host_sdk

void* MaxHeapOperators::operator new(std::size_t size) {
    return allocate_or_throw(size);
}
void* MaxHeapOperators::operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void* MaxHeapOperators::operator new[](std::size_t size) {
    return allocate_or_throw(size);
}
void MaxHeapOperators::operator delete(void* block) noexcept {
    release(block);
}
void MaxHeapOperators::operator delete(void* block, const std::nothrow_t&) noexcept {
    release(block);
}
void MaxHeapOperators::operator delete[](void* block) noexcept {
    release(block);
}

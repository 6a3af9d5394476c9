// Loads, uses and unloads the module many times in one process: nothing leaks.
#include "tests/product/module/box_answerer.h"
#include "tests/product/module/data_folder.h"
#include "tests/product/module/module_fixture.h"

namespace {

constexpr int kWarmUp = 20;
constexpr int kTimes = 200;
constexpr int kWithBoxesEvery = 20;
// The host keeps each callback that was activated, and a start activates two.
constexpr long kCallbacksPerStart = 2;
// This compiler links the runtime library statically. On unloading it does not free its thread data and its
// reserve for exceptions. Measured with a library that only locks a mutex and throws.
constexpr int kRuntimeHandlesPerLoad = 4;
constexpr DWORD kRuntimeSlotsPerLoad = 1;
constexpr std::size_t kRuntimeBytesPerLoad = 76 * 1024;

// Added up page by page: not every Windows fills in the process counters.
std::size_t committed_bytes() {
    std::size_t total = 0;
    MEMORY_BASIC_INFORMATION region = {};
    const char* place = nullptr;
    while (::VirtualQuery(place, &region, sizeof region) != 0) {
        total += region.State == MEM_COMMIT ? region.RegionSize : 0;
        place = static_cast<const char*>(region.BaseAddress) + region.RegionSize;
    }
    return total;
}

// Handles are small multiples of four; tested one by one, for the same reason.
int open_handles() {
    int count = 0;
    for (ULONG_PTR value = 4; value < 0x8000; value += 4) {
        DWORD flags = 0;
        count += ::GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != FALSE ? 1 : 0;
    }
    return count;
}

DWORD next_thread_slot() {
    const DWORD slot = ::TlsAlloc();
    ::TlsFree(slot);
    return slot;
}

// Global window classes and those of the module itself.
int classes_seen_by(HMODULE module) {
    int count = 0;
    for (unsigned atom = 0xC000; atom <= 0xFFFF; ++atom) {
        WNDCLASSEXW description = {};
        description.cbSize = sizeof description;
        const LPCWSTR name = reinterpret_cast<LPCWSTR>(static_cast<ULONG_PTR>(atom));
        count += ::GetClassInfoExW(module, name, &description) != FALSE ? 1 : 0;
    }
    return count;
}

void run_both_actions() {
    BoxAnswerer answerer;
    EXPECT_TRUE(host_sdk::execute_action(kTableId, kOpenDialog));
    EXPECT_TRUE(host_sdk::execute_action(kTableId, kShowAbout));
    EXPECT_EQ(2u, answerer.seen().size());
}

void live_once(bool with_boxes) {
    const LoadedModule module;
    ASSERT_NE(nullptr, module.handle());
    EXPECT_EQ(1, module.initialize());
    GUP* plugin = module.create_plugin();
    EXPECT_EQ(0u, plugin->Start());
    host_sdk::broadcast_notification(kSystemStartup);
    if (with_boxes) {
        run_both_actions();
        EXPECT_EQ(classes_seen_by(::GetModuleHandleW(nullptr)), classes_seen_by(module.handle()));
    }
    plugin->Stop();
    plugin->DeleteThis();
    host_sdk::reset();
    EXPECT_EQ(1, module.shut_down());
}

class ModuleReload : public HostTest {
protected:
    void live(int times) {
        for (int time = 0; time < times; ++time) {
            live_once(time % kWithBoxesEvery == 0);
            ASSERT_EQ(nullptr, ::GetModuleHandleW(kModuleName));
        }
    }
};

TEST_F(ModuleReload, TwoHundredReloadsLeakNothing) {
    host_sdk::set_call_recorder(nullptr);
    live(kWarmUp);
    const std::size_t bytes = committed_bytes();
    const int handles = open_handles();
    ASSERT_GT(handles, 0);
    const DWORD slot = next_thread_slot();
    const int classes = classes_seen_by(::GetModuleHandleW(nullptr));
    const long objects = host_sdk::live_heap_objects();
    live(kTimes);
    EXPECT_EQ(objects + kCallbacksPerStart * kTimes, host_sdk::live_heap_objects());
    EXPECT_LE(open_handles(), handles + kRuntimeHandlesPerLoad * kTimes);
    EXPECT_EQ(classes, classes_seen_by(::GetModuleHandleW(nullptr)));
    EXPECT_LE(next_thread_slot(), slot + kRuntimeSlotsPerLoad * kTimes);
    EXPECT_LT(committed_bytes(), bytes + kRuntimeBytesPerLoad * kTimes + 512 * 1024);
}

TEST_F(ModuleReload, UnloadingClosesTheLog) {
    live_once(true);
    const std::wstring log = plugin_folder() + L"\\log\\qfx_data.log";
    HANDLE alone = ::CreateFileW(log.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_NE(INVALID_HANDLE_VALUE, alone) << "error " << ::GetLastError();
    ::CloseHandle(alone);
}

TEST_F(ModuleReload, LoadingAloneCallsNothingInTheHost) {
    {
        const LoadedModule module;
        EXPECT_EQ(1, module.initialize());
        module.class_at(0);
        EXPECT_EQ(1, module.shut_down());
    }
    EXPECT_TRUE(calls_.lines.empty());
    EXPECT_EQ(0, new_heap_objects());
    EXPECT_EQ(nullptr, ::GetModuleHandleW(kModuleName));
}

} // namespace

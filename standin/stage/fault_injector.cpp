#include "standin/stage/fault_injector.h"

#include "standin/stage/import_table.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <deque>
#include <map>
#include <random>
#include <stdexcept>
#include <string>

namespace stage {

namespace {

using Word = std::uint64_t;

constexpr unsigned kWholeStack = 32;
constexpr unsigned kFramesOfPlace = 6; // calls with these in common are from the same place

struct Wanted {
    std::string function;
    unsigned call = 0;
    std::string kind;
    Word result = 0;
    DWORD error = 0;
    int c_error = 0;
    int days = 0;
};

struct Slot {
    std::string name;
    AnyFunction original = nullptr;
    Wanted failure; // when faults are mixed, or the disk is full
    bool writes = false;
    unsigned calls = 0;
    std::map<std::string, unsigned> places; // by stack
    Json::Value called_from = Json::Value(Json::arrayValue);
};

std::deque<Slot> g_slots; // their numbers are in the gates
Wanted g_wanted;
Wanted g_failure;      // of the call that fails now
unsigned g_one_in = 0; // 0: faults are not mixed
unsigned g_until_next = 0;
std::minstd_rand g_distances;
unsigned g_mixed_faults = 0;
unsigned g_writes = 0;
std::function<void()> g_on_file;
Slot* g_failing = nullptr;
const std::uint8_t* g_base = nullptr;
std::size_t g_size = 0;
bool g_active = false;
bool g_counting = false;
bool g_hit = false;
std::string g_stack;
std::map<std::string, unsigned> g_host_calls;

// The innermost callers inside the module, as offsets.
std::string stack_of_module(unsigned wanted) {
    constexpr ULONG kDepth = 32;
    void* frames[kDepth] = {};
    const USHORT count = ::RtlCaptureStackBackTrace(0, kDepth, frames, nullptr);
    std::string stack;
    for (USHORT i = 0; i < count && wanted > 0; ++i) {
        const auto offset = static_cast<std::size_t>(static_cast<std::uint8_t*>(frames[i]) - g_base);
        if (offset < g_size) {
            --wanted;
            stack += (stack.empty() ? "" : " ") + std::to_string(offset);
        }
    }
    return stack;
}

Word answer() {
    ::SetLastError(g_failure.error);
    if (g_failure.c_error != 0) {
        errno = g_failure.c_error;
    }
    return g_failure.result;
}

Word failing() {
    return answer();
}

[[noreturn]] void throwing() {
    throw std::runtime_error("the host throws");
}

// As many arguments as any import has; reading past those of a call is harmless.
using Call = Word (*)(Word, Word, Word, Word, Word, Word, Word, Word, Word, Word, Word, Word);

Word failing_after(Word a, Word b, Word c, Word d, Word e, Word f, Word g, Word h, Word i, Word j, Word k,
                   Word l) {
    reinterpret_cast<Call>(g_failing->original)(a, b, c, d, e, f, g, h, i, j, k, l);
    return answer();
}

constexpr std::int64_t kSecondsOfDay = 24 * 60 * 60;

void move(SYSTEMTIME& time) {
    FILETIME file_time = {};
    ::SystemTimeToFileTime(&time, &file_time);
    ULARGE_INTEGER ticks = {};
    ticks.LowPart = file_time.dwLowDateTime;
    ticks.HighPart = file_time.dwHighDateTime;
    ticks.QuadPart += static_cast<ULONGLONG>(g_failure.days * kSecondsOfDay * 10000000);
    file_time = {ticks.LowPart, ticks.HighPart};
    ::FileTimeToSystemTime(&file_time, &time);
}

Word wrong_local_time(Word time) {
    reinterpret_cast<decltype(&::GetLocalTime)>(g_failing->original)(reinterpret_cast<SYSTEMTIME*>(time));
    move(*reinterpret_cast<SYSTEMTIME*>(time));
    return 0;
}

Word wrong_seconds(Word given) {
    const auto now = reinterpret_cast<Word (*)(Word)>(g_failing->original)(given);
    return now + static_cast<Word>(g_failure.days * kSecondsOfDay);
}

template <class Function>
AnyFunction any(Function function) {
    return reinterpret_cast<AnyFunction>(function);
}

// From 1 to nearly twice the average.
unsigned next_distance() {
    return 1 + static_cast<unsigned>(g_distances()) % (2 * g_one_in - 1);
}

bool is_mixed_in(const Slot& slot) {
    if (--g_until_next > 0) {
        return false;
    }
    g_until_next = next_distance();
    ++g_mixed_faults;
    g_failure = slot.failure;
    return true;
}

bool finds_full_disk(const Slot& slot) {
    if (!slot.writes || ++g_writes < g_wanted.call) {
        return false;
    }
    g_failure = slot.failure;
    const bool counts_bytes = slot.name == "fwrite" || slot.name == "_write";
    if (g_writes == g_wanted.call && counts_bytes) {
        g_failure.kind = "short";
    }
    return true;
}

// Whether this call fails; then g_failure says how.
bool is_wanted(const Slot& slot) {
    if (g_one_in != 0) {
        return is_mixed_in(slot);
    }
    if (g_wanted.kind == "full") {
        return finds_full_disk(slot);
    }
    const bool now = slot.calls == g_wanted.call || (g_wanted.kind == "clock" && slot.calls > g_wanted.call);
    if (!now || slot.name != g_wanted.function) {
        return false;
    }
    g_failure = g_wanted;
    return true;
}

AnyFunction hit(Slot& slot, Word* arguments) {
    g_failing = &slot;
    if (!g_hit) {
        g_hit = true;
        g_stack = stack_of_module(kWholeStack);
    }
    const std::string& kind = g_failure.kind;
    if (kind == "clock") {
        return slot.name == "GetLocalTime" ? any(&wrong_local_time) : any(&wrong_seconds);
    }
    if (kind == "short") {
        arguments[2] /= 2;
    } else if (kind == "file") {
        g_on_file();
    }
    return kind == "fail"    ? any(&failing)
           : kind == "after" ? any(&failing_after)
           : kind == "throw" ? any(&throwing)
                             : slot.original;
}

} // namespace

extern "C" {

// Where the gate goes on to; `arguments` are the first four and may be changed.
AnyFunction stage_fault_decide(unsigned number, Word* arguments) {
    Slot& slot = g_slots[number];
    if (!g_active) {
        return slot.original;
    }
    const DWORD error = ::GetLastError();
    const int c_error = errno;
    ++slot.calls;
    if (g_counting) {
        const unsigned next = static_cast<unsigned>(slot.places.size());
        slot.called_from.append(slot.places.emplace(stack_of_module(kFramesOfPlace), next).first->second);
    }
    const AnyFunction next = is_wanted(slot) ? hit(slot, arguments) : slot.original;
    errno = c_error;
    ::SetLastError(error);
    return next;
}

void stage_fault_gate();
}

// Keeps the argument registers, asks where to go, and goes there with the stack as the module left it.
asm(R"(
    .text
    .globl stage_fault_gate
    .seh_proc stage_fault_gate
stage_fault_gate:
    subq $0x88, %rsp
    .seh_stackalloc 0x88
    .seh_endprologue
    movq %rcx, 0x20(%rsp)
    movq %rdx, 0x28(%rsp)
    movq %r8, 0x30(%rsp)
    movq %r9, 0x38(%rsp)
    movups %xmm0, 0x40(%rsp)
    movups %xmm1, 0x50(%rsp)
    movups %xmm2, 0x60(%rsp)
    movups %xmm3, 0x70(%rsp)
    movl %r10d, %ecx
    leaq 0x20(%rsp), %rdx
    call stage_fault_decide
    movq 0x20(%rsp), %rcx
    movq 0x28(%rsp), %rdx
    movq 0x30(%rsp), %r8
    movq 0x38(%rsp), %r9
    movups 0x40(%rsp), %xmm0
    movups 0x50(%rsp), %xmm1
    movups 0x60(%rsp), %xmm2
    movups 0x70(%rsp), %xmm3
    addq $0x88, %rsp
    jmp *%rax
    .seh_endproc
)");

namespace {

// Loads the slot's number and jumps to the common part. The code stays for as long as the process.
AnyFunction make_gate(unsigned number) {
    constexpr std::size_t kMost = 512;
    constexpr std::size_t kBytes = 32;
    static auto* const code = static_cast<std::uint8_t*>(
        ::VirtualAlloc(nullptr, kMost * kBytes, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
    if (code == nullptr || number >= kMost) {
        return nullptr;
    }
    std::uint8_t* const gate = code + number * kBytes;
    const AnyFunction common = &stage_fault_gate;
    const std::uint8_t text[] = {0x41, 0xBA, 0,   0, 0, 0,             // mov r10d, number
                                 0x49, 0xBB, 0,   0, 0, 0, 0, 0, 0, 0, // mov r11, common
                                 0x41, 0xFF, 0xE3};                    // jmp r11
    std::memcpy(gate, text, sizeof text);
    std::memcpy(gate + 2, &number, sizeof number);
    std::memcpy(gate + 8, &common, sizeof common);
    return reinterpret_cast<AnyFunction>(gate);
}

std::size_t image_size(HMODULE module) {
    const auto* base = reinterpret_cast<const std::uint8_t*>(module);
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    return reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew)->OptionalHeader.SizeOfImage;
}

Wanted wanted_of(const Json::Value& fault) {
    Wanted wanted;
    wanted.function = fault.get("function", "").asString();
    wanted.call = fault.get("call", 0).asUInt();
    wanted.kind = fault.get("kind", "").asString();
    wanted.result = static_cast<Word>(fault.get("result", 0).asInt64());
    wanted.error = static_cast<DWORD>(fault.get("error", 0).asUInt());
    wanted.c_error = fault.get("errno", 0).asInt();
    wanted.days = fault.get("days", 0).asInt();
    return wanted;
}

} // namespace

void install_fault_injector(HMODULE module, const Json::Value& fault, const std::function<void()>& on_file) {
    g_slots.clear();
    g_host_calls.clear();
    g_stack.clear();
    g_hit = false;
    g_wanted = wanted_of(fault);
    g_one_in = g_wanted.kind == "mixed" ? g_wanted.call : 0;
    g_distances.seed(1);
    g_until_next = g_one_in == 0 ? 0 : next_distance();
    g_mixed_faults = 0;
    g_writes = 0;
    g_counting = fault.get("count", false).asBool();
    g_on_file = on_file;
    g_base = reinterpret_cast<const std::uint8_t*>(module);
    g_size = image_size(module);
    visit_imports(module, [&fault](const char* name, AnyFunction imported) -> AnyFunction {
        if (!fault["watched"].isMember(name)) {
            return nullptr;
        }
        g_slots.emplace_back();
        g_slots.back().name = name;
        g_slots.back().original = imported;
        g_slots.back().writes = fault["writes"].isMember(name);
        g_slots.back().failure = wanted_of(fault[g_one_in != 0 ? "watched" : "writes"][name]);
        return make_gate(static_cast<unsigned>(g_slots.size() - 1));
    });
    g_active = true;
}

bool host_call_goes_on(const char* name) {
    if (!g_active || ++g_host_calls[name] != g_wanted.call || g_wanted.function != name) {
        return true;
    }
    g_hit = true;
    g_stack = stack_of_module(kWholeStack);
    if (g_wanted.kind == "throw") {
        throwing();
    }
    return false;
}

bool disk_is_full() {
    return g_active && g_wanted.kind == "full" && g_writes >= g_wanted.call;
}

void end_faults() {
    g_active = false;
}

Json::Value fault_report() {
    Json::Value report(Json::objectValue);
    report["hit"] = g_hit;
    report["stack"] = g_stack;
    report["mixed"] = g_mixed_faults;
    for (const Slot& slot : g_slots) {
        report["calls"][slot.name] = slot.calls;
        if (g_counting) {
            report["places"][slot.name] = slot.called_from;
        }
    }
    for (const auto& call : g_host_calls) {
        report["host_calls"][call.first] = call.second;
    }
    return report;
}

} // namespace stage

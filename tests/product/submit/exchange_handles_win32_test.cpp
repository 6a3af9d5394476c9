// Many exchanges in a row: every handle is closed, whatever the client does, and nothing leaks.
#include "tests/support/client_link_fixture.h"
#include "tests/support/patched_import.h"
#include "tests/support/raw_server.h"

#include <winhttp.h>

#include <psapi.h>

#include <algorithm>
#include <cstdint>

namespace {

using support::ClientLink;
using support::kBody;
using support::PatchedImport;
using support::RawServer;
using support::say;

constexpr int kWarmUp = 40;
constexpr int kExchanges = 200;

// Open handles in the order of opening.
std::vector<HINTERNET> g_open;
int g_sessions = 0;
int g_connections = 0;
int g_requests = 0;
int g_closed = 0;
int g_closed_unknown = 0;

template <typename Function>
Function real(const char* name) {
    return reinterpret_cast<Function>(::GetProcAddress(::GetModuleHandleW(L"winhttp.dll"), name));
}

HINTERNET noted(HINTERNET handle, int& count) {
    if (handle != nullptr) {
        g_open.push_back(handle);
        ++count;
    }
    return handle;
}

HINTERNET WINAPI count_session(LPCWSTR agent, DWORD access, LPCWSTR proxy, LPCWSTR bypass, DWORD flags) {
    return noted(real<decltype(&::WinHttpOpen)>("WinHttpOpen")(agent, access, proxy, bypass, flags),
                 g_sessions);
}
HINTERNET WINAPI count_connection(HINTERNET session, LPCWSTR server, INTERNET_PORT port, DWORD reserved) {
    return noted(real<decltype(&::WinHttpConnect)>("WinHttpConnect")(session, server, port, reserved),
                 g_connections);
}
HINTERNET WINAPI count_request(HINTERNET connection, LPCWSTR verb, LPCWSTR object, LPCWSTR version,
                               LPCWSTR referrer, LPCWSTR* types, DWORD flags) {
    return noted(real<decltype(&::WinHttpOpenRequest)>("WinHttpOpenRequest")(connection, verb, object,
                                                                             version, referrer, types, flags),
                 g_requests);
}
BOOL WINAPI count_close(HINTERNET handle) {
    const auto found = std::find(g_open.begin(), g_open.end(), handle);
    if (found == g_open.end()) {
        ++g_closed_unknown;
    } else {
        g_open.erase(found);
        ++g_closed;
    }
    return real<decltype(&::WinHttpCloseHandle)>("WinHttpCloseHandle")(handle);
}

// The connection is closed after each answer, so that the library keeps none for the next exchange.
std::string last_reply(const std::string& body) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

struct Usage {
    std::uintptr_t lowest_free_handle = 0; // rises by four for each leaked handle
    SIZE_T bytes = 0;
};

Usage usage_now() {
    Usage usage;
    const HANDLE probe = ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
    usage.lowest_free_handle = reinterpret_cast<std::uintptr_t>(probe);
    ::CloseHandle(probe);
    PROCESS_MEMORY_COUNTERS memory = {};
    ::K32GetProcessMemoryInfo(::GetCurrentProcess(), &memory, sizeof memory);
    usage.bytes = memory.PagefileUsage;
    return usage;
}

class ExchangeHandles : public ClientLink {
protected:
    ExchangeHandles() {
        g_open.clear();
        g_sessions = g_connections = g_requests = g_closed = g_closed_unknown = 0;
    }

    void exchange(int port) {
        config.clientPort = port;
        boxes.shown.clear();
        tarvo::PostToClient(config, kBody, owner());
    }

    // Cycles through the ways in which a client can reply.
    void exchange_number(int number) {
        const std::string replies[] = {last_reply("{\"ret\":10001}"), last_reply("no JSON"), std::string(),
                                       last_reply(std::string(5000, '[')), "HTTP/1.1 200 OK\r\n"};
        const std::string& reply = replies[static_cast<std::size_t>(number) % 5];
        RawServer server([&reply](SOCKET connection) { say(connection, reply); });
        exchange(server.port());
    }

    const PatchedImport sessions{"winhttp.dll", "WinHttpOpen", reinterpret_cast<void*>(&count_session)};
    const PatchedImport connections{"winhttp.dll", "WinHttpConnect",
                                    reinterpret_cast<void*>(&count_connection)};
    const PatchedImport requests{"winhttp.dll", "WinHttpOpenRequest",
                                 reinterpret_cast<void*>(&count_request)};
    const PatchedImport closes{"winhttp.dll", "WinHttpCloseHandle", reinterpret_cast<void*>(&count_close)};
};

TEST_F(ExchangeHandles, EverythingOpenedIsClosed) {
    ASSERT_TRUE(sessions.installed() && connections.installed() && requests.installed() &&
                closes.installed());
    for (int number = 0; number < kExchanges; ++number) {
        exchange_number(number);
        ASSERT_TRUE(g_open.empty()) << "exchange " << number;
    }
    EXPECT_EQ(g_sessions, kExchanges);
    EXPECT_EQ(g_connections, kExchanges);
    EXPECT_EQ(g_requests, kExchanges);
    EXPECT_EQ(g_closed, 3 * kExchanges);
    EXPECT_EQ(g_closed_unknown, 0);
}

TEST_F(ExchangeHandles, ClosedPortLeavesNoHandleOpen) {
    constexpr int kCalls = 5;
    for (int number = 0; number < kCalls; ++number) {
        exchange(support::free_port());
    }
    EXPECT_TRUE(g_open.empty());
    EXPECT_EQ(g_closed, 3 * kCalls);
}

// A leak grows in every round. A single growth is no leak: the library's pool adds a thread, or the system
// replaces small pages by a large one.
TEST_F(ExchangeHandles, HandlesAndMemoryDoNotGrow) {
    constexpr std::uintptr_t kSpareHandles = 20 * 4;
    constexpr SIZE_T kSpareBytes = 1024 * 1024; // 5 KB for each exchange
    constexpr int kRounds = 3;
    for (int number = 0; number < kWarmUp; ++number) {
        exchange_number(number);
    }
    std::string seen;
    bool handles_flat = false;
    bool bytes_flat = false;
    for (int round = 0; round < kRounds && !(handles_flat && bytes_flat); ++round) {
        const Usage before = usage_now();
        ASSERT_GT(before.lowest_free_handle, 0u);
        ASSERT_GT(before.bytes, 0u);
        for (int number = 0; number < kExchanges; ++number) {
            exchange_number(number);
        }
        const Usage after = usage_now();
        handles_flat = handles_flat || after.lowest_free_handle <= before.lowest_free_handle + kSpareHandles;
        bytes_flat = bytes_flat || after.bytes <= before.bytes + kSpareBytes;
        seen += " handle " + std::to_string(before.lowest_free_handle) + " to " +
                std::to_string(after.lowest_free_handle) + ", bytes " + std::to_string(before.bytes) +
                " to " + std::to_string(after.bytes) + ";";
    }
    EXPECT_TRUE(handles_flat) << seen;
    EXPECT_TRUE(bytes_flat) << seen;
}

} // namespace

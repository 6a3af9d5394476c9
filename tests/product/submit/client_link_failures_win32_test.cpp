// The exchange with a client that does everything right, while one step on this side fails.
#include "tests/support/client_link_fixture.h"
#include "tests/support/patched_import.h"
#include "tests/support/raw_server.h"

#include <winhttp.h>

namespace {

using support::ClientLink;
using support::http_reply;
using support::kNotParsed;
using support::kRead;
using support::PatchedImport;
using support::RawServer;
using support::say;
using tarvo::Text;

// Replacements for the library's functions. Each fails with a code of its own.
constexpr DWORD kBrokenCode = 4711;
std::vector<HINTERNET> g_closed;

BOOL fail() {
    ::SetLastError(kBrokenCode);
    return FALSE;
}

HINTERNET WINAPI no_session(LPCWSTR, DWORD, LPCWSTR, LPCWSTR, DWORD) {
    fail();
    return nullptr;
}
HINTERNET WINAPI no_connection(HINTERNET, LPCWSTR, INTERNET_PORT, DWORD) {
    fail();
    return nullptr;
}
HINTERNET WINAPI no_request(HINTERNET, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR*, DWORD) {
    fail();
    return nullptr;
}
BOOL WINAPI no_headers(HINTERNET, LPCWSTR, DWORD, DWORD) {
    return fail();
}
BOOL WINAPI no_query_option(HINTERNET, DWORD, LPVOID, LPDWORD) {
    return fail();
}
BOOL WINAPI no_set_option(HINTERNET, DWORD, LPVOID, DWORD) {
    return fail();
}
BOOL WINAPI no_query_data(HINTERNET, LPDWORD) {
    return fail();
}
BOOL WINAPI no_read(HINTERNET, LPVOID, DWORD, LPDWORD) {
    return fail();
}

DWORD g_flags_set = 0;
BOOL WINAPI keep_flags(HINTERNET, DWORD option, LPVOID value, DWORD size) {
    if (option == WINHTTP_OPTION_SECURITY_FLAGS && size == sizeof g_flags_set) {
        g_flags_set = *static_cast<DWORD*>(value);
    }
    return TRUE;
}

using CloseFunction = BOOL(WINAPI*)(HINTERNET);
CloseFunction real_close() {
    return reinterpret_cast<CloseFunction>(
        ::GetProcAddress(::GetModuleHandleW(L"winhttp.dll"), "WinHttpCloseHandle"));
}
BOOL WINAPI count_close(HINTERNET handle) {
    g_closed.push_back(handle);
    return real_close()(handle);
}

using ConnectFunction = HINTERNET(WINAPI*)(HINTERNET, LPCWSTR, INTERNET_PORT, DWORD);
std::vector<HINTERNET> g_opened;
HINTERNET WINAPI keep_connect(HINTERNET session, LPCWSTR server, INTERNET_PORT port, DWORD reserved) {
    const ConnectFunction connect = reinterpret_cast<ConnectFunction>(
        ::GetProcAddress(::GetModuleHandleW(L"winhttp.dll"), "WinHttpConnect"));
    const HINTERNET connection = connect(session, server, port, reserved);
    g_opened = {session, connection};
    return connection;
}

// As on Windows, which refuses an empty server name. Wine takes it for this machine.
HINTERNET WINAPI refuse_empty_name(HINTERNET session, LPCWSTR server, INTERNET_PORT port, DWORD reserved) {
    if (server == nullptr || *server == L'\0') {
        fail();
        return nullptr;
    }
    return keep_connect(session, server, port, reserved);
}

// The state when the document is removed.
std::vector<std::string> g_lines_at_removal;
std::size_t g_mark = 0;
std::size_t g_boxes_at_removal = 0;
TestBoxes* g_boxes = nullptr;
int note_removal(const wchar_t* path) {
    g_lines_at_removal = support::log_lines_since("qfx_http", g_mark);
    g_boxes_at_removal = g_boxes->shown.size();
    return ::DeleteFileW(path) != FALSE ? 0 : -1;
}

// The state when the box is shown.
std::vector<std::string> g_lines_at_box;
bool g_document_at_box = false;
std::wstring g_document;

// Recorded arguments; the real function is called only where its result matters.
std::wstring g_header;
DWORD g_header_flags = 0;
BOOL WINAPI keep_header(HINTERNET, LPCWSTR headers, DWORD length, DWORD flags) {
    g_header.assign(headers, length);
    g_header_flags = flags;
    return TRUE;
}

template <class Function>
Function real_function(const char* name) {
    return reinterpret_cast<Function>(::GetProcAddress(::GetModuleHandleW(L"winhttp.dll"), name));
}

struct SessionCall {
    std::wstring agent;
    DWORD access = 0;
    bool names_proxy = false;
    DWORD flags = 0;
};
SessionCall g_session;
HINTERNET WINAPI keep_session(LPCWSTR agent, DWORD access, LPCWSTR proxy, LPCWSTR bypass, DWORD flags) {
    g_session = {agent, access, proxy != nullptr || bypass != nullptr, flags};
    using Open = HINTERNET(WINAPI*)(LPCWSTR, DWORD, LPCWSTR, LPCWSTR, DWORD);
    return real_function<Open>("WinHttpOpen")(agent, access, proxy, bypass, flags);
}

struct RequestCall {
    std::wstring verb;
    bool names_more = false; // a path, a version, a referrer or what is accepted
    DWORD flags = 0;
};
RequestCall g_request;
HINTERNET WINAPI keep_request(HINTERNET connection, LPCWSTR verb, LPCWSTR path, LPCWSTR version,
                              LPCWSTR referrer, LPCWSTR* accepted, DWORD flags) {
    g_request = {verb, path != nullptr || version != nullptr || referrer != nullptr || accepted != nullptr,
                 flags};
    using Open = HINTERNET(WINAPI*)(HINTERNET, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR*, DWORD);
    return real_function<Open>("WinHttpOpenRequest")(connection, verb, path, version, referrer, accepted,
                                                     flags);
}

class BrokenLink : public ClientLink {
protected:
    BrokenLink() {
        g_closed.clear();
        g_opened.clear();
        g_flags_set = 0;
    }

    // Posts to a client that accepts everything, with one function replaced.
    void post_with(const char* function, void* replacement) {
        RawServer server([](SOCKET connection) { say(connection, http_reply("{\"ret\":10001}")); });
        const PatchedImport count("winhttp.dll", "WinHttpCloseHandle", reinterpret_cast<void*>(&count_close));
        const PatchedImport patch("winhttp.dll", function, replacement);
        ASSERT_TRUE(count.installed());
        ASSERT_TRUE(patch.installed());
        post(server.port());
    }

    static std::string line(const char* text) { return "[ERROR] " + (text + std::to_string(kBrokenCode)); }
};

TEST_F(BrokenLink, SessionFailureEndsTheExchange) {
    post_with("WinHttpOpen", reinterpret_cast<void*>(&no_session));
    expect_given_up();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0], line("Http hSession failed! ErrorCode: "));
    EXPECT_EQ(lines[1], line("Http connect error! ErrorCode: "));
    EXPECT_TRUE(g_closed.empty());
}

TEST_F(BrokenLink, ConnectionFailureEndsTheExchange) {
    post_with("WinHttpConnect", reinterpret_cast<void*>(&no_connection));
    expect_given_up();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], line("Http connect error! ErrorCode: "));
    EXPECT_EQ(g_closed.size(), 1u);
}

TEST_F(BrokenLink, EmptyAddressEndsTheExchange) {
    config.clientIp.clear();
    post_with("WinHttpConnect", reinterpret_cast<void*>(&refuse_empty_name));
    expect_given_up();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], line("Http connect error! ErrorCode: "));
}

TEST_F(BrokenLink, FailureShowsTheBoxThenLogsThenRemovesTheDocument) {
    g_mark = support::log_mark("qfx_http");
    g_boxes = &boxes;
    g_document = config.jsonPath;
    boxes.on_show = [](const TestBox&) {
        g_lines_at_box = support::log_lines_since("qfx_http", g_mark);
        g_document_at_box = tarvo::PathExists(g_document);
    };
    const PatchedImport removal("msvcrt.dll", "_wremove", reinterpret_cast<void*>(&note_removal));
    ASSERT_TRUE(removal.installed());
    post_with("WinHttpConnect", reinterpret_cast<void*>(&no_connection));
    expect_given_up();
    EXPECT_EQ(g_lines_at_box, std::vector<std::string>{line("Http connect error! ErrorCode: ")});
    EXPECT_TRUE(g_document_at_box);
    EXPECT_EQ(g_lines_at_removal, lines);
    EXPECT_EQ(g_boxes_at_removal, 1u);
}

TEST_F(BrokenLink, RequestFailureEndsTheExchange) {
    post_with("WinHttpOpenRequest", reinterpret_cast<void*>(&no_request));
    expect_given_up();
    EXPECT_EQ(lines.size(), 2u);
    EXPECT_EQ(g_closed.size(), 2u);
}

TEST_F(BrokenLink, HeaderAndOptionFailuresAreLoggedAndIgnored) {
    const struct {
        const char* function;
        void* replacement;
    } steps[] = {
        {"WinHttpAddRequestHeaders", reinterpret_cast<void*>(&no_headers)},
        {"WinHttpQueryOption", reinterpret_cast<void*>(&no_query_option)},
        {"WinHttpSetOption", reinterpret_cast<void*>(&no_set_option)},
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(step.function);
        boxes.shown.clear();
        post_with(step.function, step.replacement);
        expect_box(IDS_REPLY_ACCEPTED, L"");
        EXPECT_EQ(lines,
                  (std::vector<std::string>{line((step.function + std::string("error, code is ")).c_str()),
                                            kRead, "[INFO] Submit successfully."}));
        EXPECT_TRUE(document_kept());
    }
}

TEST_F(BrokenLink, UnknownReplySizeReadsNothing) {
    post_with("WinHttpQueryDataAvailable", reinterpret_cast<void*>(&no_query_data));
    expect_box(IDS_REPLY_NOT_PARSED, Text(IDS_CAPTION));
    EXPECT_EQ(lines, (std::vector<std::string>{line("WinHttpQueryDataAvailableerror, code is "), kRead,
                                               kNotParsed}));
    EXPECT_TRUE(document_kept());
}

TEST_F(BrokenLink, ReadFailureShowsABoxAndKeepsTheDocument) {
    post_with("WinHttpReadData", reinterpret_cast<void*>(&no_read));
    expect_box(IDS_REPLY_NOT_READ, Text(IDS_CAPTION));
    EXPECT_EQ(lines, std::vector<std::string>{line("Http read data failed! ErrorCode: ")});
    EXPECT_TRUE(document_kept());
}

TEST_F(BrokenLink, CertificateFlagsAreSet) {
    post_with("WinHttpSetOption", reinterpret_cast<void*>(&keep_flags));
    EXPECT_EQ(g_flags_set & 0x3200u, 0x3200u);
    expect_accepted();
}

TEST_F(BrokenLink, HeaderIsAddedWithoutReplacingOthers) {
    post_with("WinHttpAddRequestHeaders", reinterpret_cast<void*>(&keep_header));
    EXPECT_EQ(g_header, L"Content-Type: application/json;charset=utf-8");
    EXPECT_EQ(g_header_flags, static_cast<DWORD>(WINHTTP_ADDREQ_FLAG_ADD));
    expect_accepted();
}

// Without a named proxy the machine's proxy settings are used.
TEST_F(BrokenLink, SessionUsesTheDefaultProxyAndIsSynchronous) {
    post_with("WinHttpOpen", reinterpret_cast<void*>(&keep_session));
    EXPECT_EQ(g_session.agent, L"A WinHTTP Program For Marrowby/1.0");
    EXPECT_EQ(g_session.access, static_cast<DWORD>(WINHTTP_ACCESS_TYPE_DEFAULT_PROXY));
    EXPECT_FALSE(g_session.names_proxy);
    EXPECT_EQ(g_session.flags, 0u); // synchronous
    expect_accepted();
}

TEST_F(BrokenLink, RequestIsUnencryptedAndHasNoPath) {
    post_with("WinHttpOpenRequest", reinterpret_cast<void*>(&keep_request));
    EXPECT_EQ(g_request.verb, L"POST");
    EXPECT_FALSE(g_request.names_more);
    EXPECT_EQ(g_request.flags, 0u); // not encrypted
    expect_accepted();
}

TEST_F(BrokenLink, HandlesCloseInOrder) {
    post_with("WinHttpConnect", reinterpret_cast<void*>(&keep_connect));
    expect_accepted();
    ASSERT_EQ(g_opened.size(), 2u);
    ASSERT_EQ(g_closed.size(), 3u);
    EXPECT_EQ(g_closed[1], g_opened[1]);
    EXPECT_EQ(g_closed[2], g_opened[0]);
}

} // namespace

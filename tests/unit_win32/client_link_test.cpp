// The exchange with the client over a real socket, and every step of it failing.
#include "submit/client_link.h"

#include "common/platform.h"
#include "common/string_table.h"
#include "common/text.h"
#include "resources/resource_ids.h"
#include "submit/http_log.h"
#include "tests/support/patched_import.h"
#include "tests/support/raw_server.h"
#include "tests/support/test_boxes.h"
#include "tests/support/test_folder.h"
#include "tests/support/wide_file.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <winhttp.h>

#include <vector>

namespace {

using tarvo::PluginConfig;
using tarvo::PostToClient;
using tarvo::Text;
using tarvo_test::http_reply;
using tarvo_test::PatchedImport;
using tarvo_test::RawServer;
using tarvo_test::say;

const std::string kRead = "[INFO] Http read data successfully.";
const std::string kNotParsed = "[ERROR] Get response data failed: parse the data from client failed!";
const std::string kSendFailed =
    "[ERROR] The data failed to send, please confirm whether the client has been login, Error Code is: ";
const std::string kBody = "{\n   \"scenePath\" : \"C:\\\\a.max\"\n}\n";

class ClientLink : public ::testing::Test {
protected:
    ClientLink() {
        tarvo_test::plugin_folder();
        folder = tarvo::common_app_data_folder() + L"/Tarvo Rendering/json";
        tarvo::create_folder(folder);
        config.clientIp = L"127.0.0.1";
        config.jsonPath = folder + L"/document.json";
        tarvo_test::write_wide_file(config.jsonPath, "{}");
    }
    ~ClientLink() override { ::DeleteFileW(config.jsonPath.c_str()); }

    static tarvo::WindowHandle owner() { return reinterpret_cast<tarvo::WindowHandle>(0x4321); }

    void post(int port) {
        config.clientPort = port;
        const std::size_t mark = tarvo_test::log_mark("qfx_http");
        PostToClient(config, kBody, boxes, owner());
        lines = tarvo_test::log_lines_since("qfx_http", mark);
    }

    bool document_kept() const { return tarvo::path_exists(config.jsonPath); }

    void expect_box(unsigned text_id, const std::wstring& caption) const {
        ASSERT_EQ(boxes.shown.size(), 1u);
        const TestBox& box = boxes.shown.front();
        EXPECT_EQ(box.owner, owner());
        EXPECT_EQ(box.text, Text(text_id));
        EXPECT_EQ(box.caption, caption);
        EXPECT_EQ(box.style, 0u);
        EXPECT_EQ(box.language, tarvo::BoxLanguage(Text(IDS_LANGUAGE_SWITCH)));
    }

    // The end of every failed exchange.
    void expect_given_up() const {
        expect_box(IDS_SEND_FAILED, Text(IDS_CAPTION));
        ASSERT_GE(lines.size(), 2u);
        EXPECT_EQ(lines[lines.size() - 2].substr(0, kSendFailed.size()), kSendFailed);
        EXPECT_GT(lines[lines.size() - 2].size(), kSendFailed.size());
        EXPECT_EQ(lines.back(), "[INFO] Due to client did not land, remove the json file: " +
                                    tarvo::WideToLocale(config.jsonPath));
        EXPECT_FALSE(document_kept());
    }

    void expect_not_parsed() const {
        expect_box(IDS_REPLY_NOT_PARSED, Text(IDS_CAPTION));
        ASSERT_GE(lines.size(), 2u);
        EXPECT_EQ(lines.front(), kRead);
        EXPECT_EQ(lines.back(), kNotParsed);
        EXPECT_TRUE(document_kept());
    }

    void expect_accepted() const {
        expect_box(IDS_REPLY_ACCEPTED, L"");
        EXPECT_EQ(lines, (std::vector<std::string>{kRead, "[INFO] Submit successfully."}));
        EXPECT_TRUE(document_kept());
    }

    std::wstring folder;
    PluginConfig config;
    TestBoxes boxes;
    std::vector<std::string> lines;
};

TEST_F(ClientLink, LastErrorLineIsRunTogether) {
    tarvo::HttpLog log;
    const std::size_t mark = tarvo_test::log_mark("qfx_http");
    ::SetLastError(12029);
    tarvo::LogLastError("WinHttpSendRequest", log);
    EXPECT_EQ(tarvo_test::log_lines_since("qfx_http", mark),
              std::vector<std::string>{"[ERROR] WinHttpSendRequesterror, code is 12029"});
}

TEST_F(ClientLink, RequestOnTheWire) {
    RawServer server([](SOCKET connection) { say(connection, http_reply("{\"ret\":10001}")); });
    post(server.port());
    const std::string& head = server.head();
    EXPECT_EQ(head.substr(0, head.find("\r\n")), "POST / HTTP/1.1");
    EXPECT_NE(head.find("\r\nContent-Type: application/json;charset=utf-8"), std::string::npos) << head;
    EXPECT_NE(head.find("\r\nUser-Agent: A WinHTTP Program For Marrowby/1.0"), std::string::npos) << head;
    EXPECT_NE(head.find("\r\nContent-Length: " + std::to_string(kBody.size())), std::string::npos) << head;
    EXPECT_EQ(server.body(), kBody);
    expect_accepted();
}

TEST_F(ClientLink, RefusedByTheClient) {
    RawServer server([](SOCKET connection) { say(connection, http_reply("{\"ret\":10006}")); });
    post(server.port());
    expect_box(IDS_REPLY_NO_DOCUMENT, Text(IDS_CAPTION));
    EXPECT_EQ(lines, (std::vector<std::string>{kRead, "[ERROR] he Analysis file is not exist!"}));
    EXPECT_TRUE(document_kept());
}

TEST_F(ClientLink, NobodyListens) {
    post(tarvo_test::free_port());
    expect_given_up();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines.front(), "[ERROR] WinHttpSendRequesterror, code is 12029");
}

// Windows refuses the connect, Wine the send; the user sees the same.
TEST_F(ClientLink, NoAddress) {
    config.clientIp.clear();
    post(0);
    expect_given_up();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_TRUE(lines.front().find("[ERROR] Http connect error! ErrorCode: ") == 0 ||
                lines.front().find("[ERROR] WinHttpSendRequesterror, code is ") == 0)
        << lines.front();
}

TEST_F(ClientLink, DocumentInAFolderThatTheCodePageLacks) {
    const std::wstring own_folder = folder + L"/\x0531\x0532";
    ::DeleteFileW(config.jsonPath.c_str());
    tarvo::create_folder(own_folder);
    config.jsonPath = own_folder + L"/document.json";
    tarvo_test::write_wide_file(config.jsonPath, "{}");
    post(tarvo_test::free_port());
    expect_given_up();
    ::RemoveDirectoryW(own_folder.c_str());
}

TEST_F(ClientLink, ClientTakesTheCallAndHangsUp) {
    RawServer server([](SOCKET) {});
    post(server.port());
    expect_given_up();
}

TEST_F(ClientLink, ClientAnswersNoHttp) {
    RawServer server([](SOCKET connection) { say(connection, "hello\r\n\r\n"); });
    post(server.port());
    ASSERT_EQ(boxes.shown.size(), 1u);
    EXPECT_FALSE(lines.empty());
}

TEST_F(ClientLink, ReplyInTwoPiecesIsCutAfterTheFirst) {
    RawServer server([](SOCKET connection) {
        const std::string reply = http_reply("{\"ret\":10001}");
        say(connection, reply.substr(0, reply.size() - 6));
        ::Sleep(500);
        say(connection, reply.substr(reply.size() - 6));
    });
    post(server.port());
    expect_not_parsed();
}

TEST_F(ClientLink, HeadersFirstThenTheWholeReply) {
    RawServer server([](SOCKET connection) {
        const std::string body = "{\"ret\":10001}";
        const std::string reply = http_reply(body);
        say(connection, reply.substr(0, reply.size() - body.size()));
        ::Sleep(300);
        say(connection, body);
    });
    post(server.port());
    expect_accepted();
}

TEST_F(ClientLink, RepliesThatAreNoCode) {
    for (const char* reply : {"", "not JSON", "{\"ret\":\"10001\"}", "[10001]"}) {
        SCOPED_TRACE(reply);
        boxes.shown.clear();
        RawServer server([reply](SOCKET connection) { say(connection, http_reply(reply)); });
        post(server.port());
        expect_not_parsed();
    }
}

TEST_F(ClientLink, UnknownCodeShowsNothing) {
    RawServer server([](SOCKET connection) { say(connection, http_reply("{\"ret\":10010}")); });
    post(server.port());
    EXPECT_TRUE(boxes.shown.empty());
    EXPECT_EQ(lines, std::vector<std::string>{kRead});
    EXPECT_TRUE(document_kept());
}

TEST_F(ClientLink, LongReplyIsReadUpTo2047Bytes) {
    RawServer server([](SOCKET connection) {
        say(connection, http_reply("{\"ret\":10001}" + std::string(6000, ' ') + "no JSON"));
    });
    post(server.port());
    expect_accepted();
}

TEST_F(ClientLink, ReplyEndsAtTheFirstZeroByte) {
    RawServer server(
        [](SOCKET connection) { say(connection, http_reply(std::string("{\"ret\":10001}\0 no JSON", 22))); });
    post(server.port());
    expect_accepted();
}

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

TEST_F(BrokenLink, SessionCannotBeOpened) {
    post_with("WinHttpOpen", reinterpret_cast<void*>(&no_session));
    expect_given_up();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0], line("Http hSession failed! ErrorCode: "));
    EXPECT_EQ(lines[1], line("Http connect error! ErrorCode: "));
    EXPECT_TRUE(g_closed.empty());
}

TEST_F(BrokenLink, ConnectionCannotBeMade) {
    post_with("WinHttpConnect", reinterpret_cast<void*>(&no_connection));
    expect_given_up();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], line("Http connect error! ErrorCode: "));
    EXPECT_EQ(g_closed.size(), 1u);
}

TEST_F(BrokenLink, RequestCannotBeOpened) {
    post_with("WinHttpOpenRequest", reinterpret_cast<void*>(&no_request));
    expect_given_up();
    EXPECT_EQ(lines.size(), 2u);
    EXPECT_EQ(g_closed.size(), 2u);
}

TEST_F(BrokenLink, HeaderAndOptionFailuresAreLoggedAndPassedOver) {
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

TEST_F(BrokenLink, UnknownAmountReadsNothing) {
    post_with("WinHttpQueryDataAvailable", reinterpret_cast<void*>(&no_query_data));
    expect_box(IDS_REPLY_NOT_PARSED, Text(IDS_CAPTION));
    EXPECT_EQ(lines, (std::vector<std::string>{line("WinHttpQueryDataAvailableerror, code is "), kRead,
                                               kNotParsed}));
    EXPECT_TRUE(document_kept());
}

TEST_F(BrokenLink, ReplyCannotBeRead) {
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

TEST_F(BrokenLink, HandlesCloseInOrder) {
    post_with("WinHttpConnect", reinterpret_cast<void*>(&keep_connect));
    expect_accepted();
    ASSERT_EQ(g_opened.size(), 2u);
    ASSERT_EQ(g_closed.size(), 3u);
    EXPECT_EQ(g_closed[1], g_opened[1]);
    EXPECT_EQ(g_closed[2], g_opened[0]);
}

} // namespace

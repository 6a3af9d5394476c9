// The exchange with the client over a real socket.
#include "tests/support/client_link_fixture.h"
#include "tests/support/raw_server.h"

namespace {

using support::ClientLink;
using support::http_reply;
using support::kBody;
using support::kRead;
using support::RawServer;
using support::say;
using support::wait_for_hang_up;
using tarvo::Text;

TEST_F(ClientLink, LastErrorLineHasNoBlankAfterTheFunctionName) {
    tarvo::Logger log(tarvo::kHttpChannel);
    const std::size_t mark = support::log_mark("qfx_http");
    ::SetLastError(12029);
    tarvo::LogLastError("WinHttpSendRequest", log);
    EXPECT_EQ(support::log_lines_since("qfx_http", mark),
              std::vector<std::string>{"[ERROR] WinHttpSendRequesterror, code is 12029"});
}

TEST_F(ClientLink, RequestIsAPostWithItsHeadersAndBody) {
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

TEST_F(ClientLink, RefusalShowsABoxAndKeepsTheDocument) {
    RawServer server([](SOCKET connection) { say(connection, http_reply("{\"ret\":10006}")); });
    post(server.port());
    expect_box(IDS_REPLY_NO_DOCUMENT, Text(IDS_CAPTION));
    EXPECT_EQ(lines, (std::vector<std::string>{kRead, "[ERROR] he Analysis file is not exist!"}));
    EXPECT_TRUE(document_kept());
}

TEST_F(ClientLink, ClosedPortEndsTheExchange) {
    post(support::free_port());
    expect_given_up();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines.front(), "[ERROR] WinHttpSendRequesterror, code is 12029");
}

// See docs/threat-model.md: the paths are sent to the target of the redirect.
TEST_F(ClientLink, TemporaryRedirectForwardsTheWholeRequest) {
    RawServer elsewhere([](SOCKET connection) { say(connection, http_reply("{\"ret\":10001}")); });
    const std::string address = "http://127.0.0.1:" + std::to_string(elsewhere.port()) + "/";
    RawServer server([&address](SOCKET connection) {
        say(connection, "HTTP/1.1 307 Temporary Redirect\r\nLocation: " + address +
                            "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    });
    post(server.port());
    EXPECT_EQ(elsewhere.body(), kBody);
    expect_accepted();
}

TEST_F(ClientLink, DocumentInAFolderOutsideTheCodePageIsRemoved) {
    const std::wstring own_folder = folder + L"/\x0531\x0532";
    ::DeleteFileW(config.jsonPath.c_str());
    tarvo::CreateFolder(own_folder);
    config.jsonPath = own_folder + L"/document.json";
    support::write_wide_file(config.jsonPath, "{}");
    post(support::free_port());
    expect_given_up();
    ::RemoveDirectoryW(own_folder.c_str());
}

TEST_F(ClientLink, ConnectionClosedWithoutAReplyEndsTheExchange) {
    RawServer server([](SOCKET) {});
    post(server.port());
    expect_given_up();
}

TEST_F(ClientLink, ReplyThatIsNoHttpShowsABoxAndIsLogged) {
    RawServer server([](SOCKET connection) { say(connection, "hello\r\n\r\n"); });
    post(server.port());
    ASSERT_EQ(boxes.shown.size(), 1u);
    EXPECT_FALSE(lines.empty());
}

TEST_F(ClientLink, OnlyTheFirstPieceOfAReplyIsRead) {
    RawServer server([](SOCKET connection) {
        const std::string reply = http_reply("{\"ret\":10001}");
        say(connection, reply.substr(0, reply.size() - 6));
        // Sent after the plugin has closed the connection, so it is too late on any machine.
        wait_for_hang_up(connection);
        say(connection, reply.substr(reply.size() - 6));
    });
    post(server.port());
    expect_not_parsed();
}

TEST_F(ClientLink, BodySentAfterTheHeadersIsRead) {
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

TEST_F(ClientLink, ReplyWithoutACodeIsNotParsed) {
    for (const char* reply : {"", "not JSON", "{\"ret\":\"10001\"}", "[10001]"}) {
        SCOPED_TRACE(reply);
        boxes.shown.clear();
        RawServer server([reply](SOCKET connection) { say(connection, http_reply(reply)); });
        post(server.port());
        expect_not_parsed();
    }
}

TEST_F(ClientLink, UnknownCodeShowsNothing) {
    RawServer server([](SOCKET connection) { say(connection, http_reply("{\"ret\":99999}")); });
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

TEST_F(ClientLink, LastByteOfTheBufferIsNotFilled) {
    const std::string code = "{\"ret\":10001}";
    for (const std::size_t size : {2047u, 2048u}) {
        SCOPED_TRACE(size);
        boxes.shown.clear();
        const std::string reply = std::string(size - code.size(), ' ') + code;
        RawServer server([&reply](SOCKET connection) { say(connection, http_reply(reply)); });
        post(server.port());
        if (size == 2047u) {
            expect_accepted();
        } else {
            expect_not_parsed();
        }
    }
}

TEST_F(ClientLink, ReplyEndsAtTheFirstZeroByte) {
    RawServer server(
        [](SOCKET connection) { say(connection, http_reply(std::string("{\"ret\":10001}\0 no JSON", 22))); });
    post(server.port());
    expect_accepted();
}

TEST_F(ClientLink, ContentTypeOfTheReplyDoesNotMatter) {
    RawServer server([](SOCKET connection) {
        say(connection, "HTTP/1.1 200 OK\r\nContent-Type: image/png\r\nContent-Length: 13\r\n"
                        "Connection: close\r\n\r\n{\"ret\":10001}");
    });
    post(server.port());
    expect_accepted();
}

} // namespace

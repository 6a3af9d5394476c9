// The desktop client's stand-in as a program: requests go through a real socket, and the tests read its
// record.
#include "common/json_text.h"
#include "common/text.h"
#include "tests/support/child_program.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using namespace support;
using tarvo::KernelHandle;
using tarvo::WideToUtf8;

constexpr const char* kGoodHead = "POST / HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n"
                                  "Content-Type: application/json;charset=utf-8\r\n"
                                  "User-Agent: A WinHTTP Program For Marrowby/1.0\r\n";

std::string with_body(const std::string& head, const std::string& body) {
    return head + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

class ClientProgram : public testing::Test {
protected:
    void SetUp() override {
        WSADATA data = {};
        ASSERT_EQ(0, ::WSAStartup(MAKEWORD(2, 2), &data));
        static int number = 0;
        wchar_t temp[MAX_PATH] = {};
        ::GetTempPathW(MAX_PATH, temp);
        // Windows reuses process ids, so the name has the time too.
        folder_ = std::wstring(temp) + L"client test \x5854 " + std::to_wstring(::GetCurrentProcessId()) +
                  L" " + std::to_wstring(::GetTickCount64()) + L" " + std::to_wstring(++number);
        ASSERT_TRUE(::CreateDirectoryW(folder_.c_str(), nullptr))
            << system_error("CreateDirectoryW", folder_, ::GetLastError());
    }

    void TearDown() override {
        if (client_) {
            ::TerminateProcess(client_.get(), 0);
            EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(client_.get(), kPatienceMs));
        }
        // The system closes the files of an ended process a little after it reports the end.
        eventually([this] { return base::remove_tree(folder_); }, 5000);
        ::WSACleanup();
    }

    std::wstring in_folder(const std::wstring& name) const { return folder_ + L"\\" + name; }

    // The exit code; printed() looks at the output.
    int run_client(const std::wstring& arguments) const {
        return exit_code_of(start(module_folder() + L"\\client.exe", arguments, in_folder(L"output")));
    }

    bool printed(const std::string& text) const {
        return read_wide(in_folder(L"output")).find(text) != std::string::npos;
    }

    std::wstring seven_zip() const {
        const wchar_t* folder = ::_wgetenv(L"TARVO_SEVEN_ZIP");
        return std::wstring(folder != nullptr ? folder : L".") + L"/7z.exe";
    }

    // Starts the client on a free port and waits until it listens.
    void start_client(const std::wstring& options) {
        port_ = 0;
        ::DeleteFileW(in_folder(L"ready").c_str());
        ::DeleteFileW(in_folder(L"stop").c_str());
        client_ = start(module_folder() + L"\\client.exe",
                        L"--port 0 --ready \"" + in_folder(L"ready") + L"\" --record \"" +
                            in_folder(L"record") + L"\" --stop \"" + in_folder(L"stop") +
                            L"\" --seven-zip \"" + seven_zip() + L"\" " + options,
                        in_folder(L"output"));
        ASSERT_TRUE(static_cast<bool>(client_)) << "client.exe must be in the folder of the test program";
        ASSERT_TRUE(eventually([this] {
            port_ = std::atoi(read_wide(in_folder(L"ready")).c_str());
            return port_ != 0;
        })) << "the client did not write its port within the limit; it printed: "
            << read_wide(in_folder(L"output"));
    }

    void stop_client() {
        write_wide(in_folder(L"stop"), "");
        EXPECT_EQ(0, exit_code_of(client_)) << "the stop file ends it";
    }

    Json::Value last_record() const {
        std::string text = read_wide(in_folder(L"record"));
        EXPECT_TRUE(!text.empty() && text.back() == '\n');
        text = text.substr(0, text.size() - (text.empty() ? 0 : 1));
        Json::Value record;
        EXPECT_TRUE(tarvo::ParseJson(text.substr(text.rfind('\n') + 1), record)) << text;
        return record;
    }

    static std::string failed_checks(const Json::Value& record) {
        std::string failed;
        for (const Json::Value& check : record["checks"]) {
            failed += check["ok"].asBool() ? std::string() : check["check"].asString() + " ";
        }
        return failed;
    }

    // A job as the plugin leaves it: scene, submit document, archive.
    void make_job() {
        scene_ = in_folder(L"\x5854\x697C.max");
        write_wide(scene_, std::string(100000, 's') + "end");
        pack(L"job.7z", L"\"" + scene_ + L"\"");
        Json::Value document;
        document["name"] = WideToUtf8(scene_);
        document["cameras"][0]["name"] = "Camera01";
        document["cameras"][1]["name"] = WideToUtf8(L"\x76F8\x673A");
        write_wide(in_folder(L"job.json"), tarvo::StyledJson(document));
        job_["scenePath"] = WideToUtf8(scene_);
        job_["filePath"] = WideToUtf8(in_folder(L"job.json"));
        job_["maxVersion"] = "3ds Max 2019";
        job_["compressPath"] = WideToUtf8(folder_ + L"/job.7z");
    }

    void pack(const std::wstring& archive, const std::wstring& items) {
        const KernelHandle process =
            start(seven_zip(), L"a \"" + in_folder(archive) + L"\" " + items, in_folder(L"packing"));
        ASSERT_TRUE(static_cast<bool>(process)) << "TARVO_SEVEN_ZIP must name the folder with 7z.exe";
        ASSERT_EQ(0, exit_code_of(process)) << read_wide(in_folder(L"packing"));
    }

    std::string failed_after(const std::string& head, const std::string& body) {
        ask(port_, with_body(head, body));
        return failed_checks(last_record());
    }

    std::string failed_with(const char* member, const Json::Value& value) {
        Json::Value changed = job_;
        changed[member] = value;
        return failed_after(kGoodHead, tarvo::StyledJson(changed));
    }

    std::wstring folder_;
    std::wstring scene_;
    Json::Value job_;
    KernelHandle client_;
    int port_ = 0;
};

TEST_F(ClientProgram, GoodJobPassesEveryCheck) {
    make_job();
    start_client(L"--reply 10009");
    const Reply reply = ask(port_, with_body(kGoodHead, tarvo::StyledJson(job_)));
    EXPECT_EQ("{\"ret\":10009}", reply.body());
    EXPECT_EQ(0u, reply.text.find("HTTP/1.1 200 "));

    EXPECT_TRUE(printed("listening on 127.0.0.1:" + std::to_string(port_)));
    EXPECT_TRUE(printed("\"ret\\\":10009}"));
    const Json::Value record = last_record();
    EXPECT_EQ("", failed_checks(record));
    EXPECT_EQ(16u, record["checks"].size());
    EXPECT_TRUE(record["ok"].asBool());
    EXPECT_EQ(1, record["number"].asInt());
    EXPECT_EQ("POST", record["method"].asString());
    EXPECT_EQ(tarvo::StyledJson(job_), record["body"].asString());
    EXPECT_EQ("A WinHTTP Program For Marrowby/1.0", record["headers"]["User-Agent"].asString());
    EXPECT_EQ("{\"ret\":10009}", record["answer"]["body"].asString());
    const Json::Value& job = record["job"];
    EXPECT_EQ(WideToUtf8(scene_), job["scene"].asString());
    EXPECT_EQ(WideToUtf8(L"\x5854\x697C.max"), job["archiveEntry"].asString());
    EXPECT_EQ(100003, job["archiveEntrySize"].asInt());
    EXPECT_EQ(2u, job["cameras"].size());
    EXPECT_EQ(WideToUtf8(L"\x76F8\x673A"), job["cameras"][1].asString());
}

TEST_F(ClientProgram, WrongRequestFailsTheCheckOfThatPart) {
    make_job();
    start_client(L"");
    const std::string body = tarvo::StyledJson(job_);
    const std::string head = kGoodHead;
    EXPECT_EQ("method ", failed_after("PUT" + head.substr(4), body));
    EXPECT_EQ("path ", failed_after("POST /job" + head.substr(6), body));
    std::string other = head;
    EXPECT_EQ("content-type ", failed_after(other.replace(other.find("utf-8"), 5, "UTF-8"), body));
    other = head;
    EXPECT_EQ("user-agent ", failed_after(other.replace(other.find("/1.0"), 4, "/1.1"), body));
    EXPECT_EQ("body ", failed_after(head, "not JSON"));
    EXPECT_EQ("body ", failed_after(head, "[1]"));
    EXPECT_EQ("body ", failed_after(head, std::string(3000, '[')));
    EXPECT_EQ("body ", failed_after(head, body + "more"));
    EXPECT_EQ("body-members body ", failed_after(head, "{}"));
    EXPECT_EQ("body-members body ", failed_after(head, "{\"filePath\":\"a\",\"compressPath\":\"b\","
                                                       "\"maxVersion\":\"c\",\"scenePath\":\"d\"}"));
    EXPECT_EQ("body-members body ", failed_with("more", "a fifth member"));
    EXPECT_EQ("body ", failed_with("maxVersion", 2019));
}

TEST_F(ClientProgram, WrongFileFailsTheCheckOfThatFile) {
    make_job();
    start_client(L"");
    const std::string none = WideToUtf8(in_folder(L"none"));
    EXPECT_EQ("scene document-name archive-entry ", failed_with("scenePath", none));
    EXPECT_EQ("document ", failed_with("filePath", none));
    EXPECT_EQ("archive ", failed_with("compressPath", none));
    EXPECT_EQ("archive ", failed_with("compressPath", WideToUtf8(folder_)));

    write_wide(in_folder(L"broken.json"), "{\"name\":");
    EXPECT_EQ("document-json ", failed_with("filePath", WideToUtf8(in_folder(L"broken.json"))));
    write_wide(in_folder(L"other.json"), "{\"name\":\"other.max\"}");
    EXPECT_EQ("document-name ", failed_with("filePath", WideToUtf8(in_folder(L"other.json"))));
    EXPECT_EQ(0u, last_record()["job"]["cameras"].size());

    std::string broken = read_wide(in_folder(L"job.7z"));
    broken[40] = static_cast<char>(broken[40] ^ 0x55);
    write_wide(in_folder(L"broken.7z"), broken);
    EXPECT_EQ("archive-test ", failed_with("compressPath", WideToUtf8(in_folder(L"broken.7z"))));
    pack(L"two.7z", L"\"" + scene_ + L"\" \"" + in_folder(L"job.json") + L"\"");
    EXPECT_EQ("archive-entry ", failed_with("compressPath", WideToUtf8(in_folder(L"two.7z"))));
    write_wide(scene_, "saved again after the packing");
    EXPECT_EQ("archive-entry-size ", failed_with("maxVersion", "3ds Max 2019"));
}

TEST_F(ClientProgram, HttpModeSendsItsAnswer) {
    const struct {
        const wchar_t* options;
        const char* start;
        const char* body;
    } cases[] = {
        {L"", "HTTP/1.1 200 ", "{\"ret\":10001}"},
        {L"--body \"{ \\\"ret\\\" : 7 }\"", "HTTP/1.1 200 ", "{ \"ret\" : 7 }"},
        {L"--reply -1 --mode status-500", "HTTP/1.1 500 ", "{\"ret\":-1}"},
        {L"--mode empty", "HTTP/1.1 200 ", ""},
        {L"--mode garbage", "HTTP/1.1 200 ", "<html>this is not what you asked for</html>"},
        {L"--mode chunked", "HTTP/1.1 200 ", "4\r\n{\"re\r\n4\r\nt\":1\r\n4\r\n0001\r\n1\r\n}\r\n0\r\n\r\n"},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(WideToUtf8(one.options));
        start_client(one.options);
        const Reply reply = ask(port_, with_body(kGoodHead, "{}"));
        EXPECT_EQ(0u, reply.text.find(one.start)) << reply.text;
        EXPECT_EQ(one.body, reply.body());
        stop_client();
    }
}

TEST_F(ClientProgram, FaultModeSendsItsBrokenAnswer) {
    const struct {
        const wchar_t* options;
        const char* body;
        bool has_head;
    } cases[] = {
        {L"--mode close", "", false},
        {L"--mode silence --delay 100", "", false},
        {L"--mode close-after-header", "", true},
        {L"--mode bytes --reply 10003", "{\"ret\":10003}", true},
        {L"--mode no-length", "{\"ret\":10001}", true},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(WideToUtf8(one.options));
        start_client(one.options);
        const Reply reply = ask(port_, with_body(kGoodHead, "{}"));
        EXPECT_EQ(one.has_head, reply.text.find("HTTP/1.1 200 OK\r\n") == 0) << reply.text;
        EXPECT_EQ(one.has_head && std::wstring(one.options).find(L"no-length") == std::wstring::npos,
                  reply.text.find("Content-Length: 13\r\n") != std::string::npos);
        EXPECT_EQ(one.body, reply.body());
        stop_client();
        EXPECT_EQ(1, last_record()["number"].asInt());
    }
}

TEST_F(ClientProgram, ModePiecesWaitsASecondBetweenThePackets) {
    start_client(L"--mode pieces");
    Reply reply;
    // A busy machine may read the first piece late; then the test asks again.
    for (int attempt = 0; attempt < 5 && reply.last_ms < reply.first_ms + 900; ++attempt) {
        reply = ask(port_, with_body(kGoodHead, "{}"));
        EXPECT_EQ("{\"ret\":10001}", reply.body());
        EXPECT_GE(reply.last_ms, 900u);
    }
    EXPECT_GE(reply.last_ms, reply.first_ms + 900);
}

TEST_F(ClientProgram, DelayPassesBeforeTheAnswer) {
    start_client(L"--delay 700");
    // The two programs' clocks tick in steps of 16 milliseconds.
    EXPECT_GE(ask(port_, with_body(kGoodHead, "{}")).first_ms, 700u - 2 * 16u);
}

TEST_F(ClientProgram, ModeBigSendsTenMegabytes) {
    start_client(L"--mode big");
    EXPECT_GT(ask(port_, with_body(kGoodHead, "{}")).body().size(), 10u * 1024 * 1024);
}

TEST_F(ClientProgram, ServesAgainAfterARequestThatIsNotHttp) {
    for (const wchar_t* mode : {L"--mode reply", L"--mode no-length"}) {
        SCOPED_TRACE(WideToUtf8(mode));
        start_client(mode);
        ask(port_, "\x01\x02\x03\r\n\r\n");
        EXPECT_EQ("{\"ret\":10001}", ask(port_, with_body(kGoodHead, "{}")).body());
        stop_client();
    }
}

TEST_F(ClientProgram, KilledBeforeTheAnswerKeepsTheRecord) {
    start_client(L"--delay 60000");
    const KernelHandle sender(::CreateThread(
        nullptr, 0,
        [](void* port) -> DWORD {
            ask(*static_cast<int*>(port), with_body(kGoodHead, "{}"));
            return 0;
        },
        &port_, 0, nullptr));
    EXPECT_TRUE(eventually([this] {
        const std::string record = read_wide(in_folder(L"record"));
        return !record.empty() && record.back() == '\n';
    }));
    ::TerminateProcess(client_.get(), 1);
    ::WaitForSingleObject(sender.get(), kPatienceMs);
    EXPECT_EQ("{}", last_record()["body"].asString());
}

TEST_F(ClientProgram, TakenPortIsRefused) {
    start_client(L"");
    const std::wstring port = L"--port " + std::to_wstring(port_);
    EXPECT_EQ(1, run_client(port));
    EXPECT_TRUE(printed("cannot listen on 127.0.0.1:" + std::to_string(port_)));
}

TEST_F(ClientProgram, WrongOptionIsRefused) {
    const struct {
        const wchar_t* options;
        const char* problem;
    } cases[] = {
        {L"--prot 1", "--prot"},
        {L"--port", "--port"},
        {L"--port 65536", "65536"},
        {L"--reply yes", "yes"},
        {L"--mode refuse", "unknown mode refuse"},
        {L"--reply 1 --body text", "excludes"},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(2, run_client(one.options)) << one.problem;
        EXPECT_TRUE(printed(one.problem)) << read_wide(in_folder(L"output"));
    }
    EXPECT_EQ(0, run_client(L"--help"));
    EXPECT_TRUE(printed("close-after-header"));
}

TEST_F(ClientProgram, UnwritableFileIsNamed) {
    for (const wchar_t* option : {L"--record", L"--ready"}) {
        const std::wstring file = in_folder(L"none\\file");
        EXPECT_EQ(1, run_client(option + std::wstring() + L" \"" + file + L"\""));
        EXPECT_TRUE(printed("'" + WideToUtf8(file) + "'")) << WideToUtf8(option);
    }
}

} // namespace

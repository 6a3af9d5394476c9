// An exchange with the client as the tests see it: the box, the log lines, and what became of the document.
#pragma once

#include "common/platform.h"
#include "common/string_table.h"
#include "common/text.h"
#include "resources/resource_ids.h"
#include "submit/client_link.h"
#include "tests/support/quiet_output.h"
#include "tests/support/test_boxes.h"
#include "tests/support/test_folder.h"
#include "tests/support/wide_file.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

namespace support {

const std::string kRead = "[INFO] Http read data successfully.";
const std::string kNotParsed = "[ERROR] Get response data failed: parse the data from client failed!";
const std::string kSendFailed =
    "[ERROR] The data failed to send, please confirm whether the client has been login, Error Code is: ";
const std::string kBody = "{\n   \"scenePath\" : \"C:\\\\a.max\"\n}\n";

class ClientLink : public ::testing::Test {
protected:
    ClientLink() {
        plugin_folder();
        folder = tarvo::CommonAppDataFolder() + L"/Tarvo Rendering/json";
        tarvo::CreateFolder(folder);
        config.clientIp = L"127.0.0.1";
        config.jsonPath = folder + L"/document.json";
        write_wide_file(config.jsonPath, "{}");
    }
    ~ClientLink() override { ::DeleteFileW(config.jsonPath.c_str()); }

    static tarvo::WindowHandle owner() { return reinterpret_cast<tarvo::WindowHandle>(0x4321); }

    void post(int port) {
        config.clientPort = port;
        const std::size_t mark = log_mark("qfx_http");
        tarvo::PostToClient(config, kBody, owner());
        lines = log_lines_since("qfx_http", mark);
    }

    bool document_kept() const { return tarvo::PathExists(config.jsonPath); }

    void expect_box(unsigned text_id, const std::wstring& caption) const {
        ASSERT_EQ(boxes.shown.size(), 1u);
        const TestBox& box = boxes.shown.front();
        EXPECT_EQ(box.owner, owner());
        EXPECT_EQ(box.text, tarvo::Text(text_id));
        EXPECT_EQ(box.caption, caption);
        EXPECT_EQ(box.style, 0u);
        EXPECT_EQ(box.language, tarvo::BoxLanguage(tarvo::Text(IDS_LANGUAGE_SWITCH)));
    }

    // The end of every failed exchange.
    void expect_given_up() const {
        expect_box(IDS_SEND_FAILED, tarvo::Text(IDS_CAPTION));
        ASSERT_GE(lines.size(), 2u);
        EXPECT_EQ(lines[lines.size() - 2].substr(0, kSendFailed.size()), kSendFailed);
        EXPECT_GT(lines[lines.size() - 2].size(), kSendFailed.size());
        EXPECT_EQ(lines.back(), "[INFO] Due to client did not land, remove the json file: " +
                                    tarvo::WideToLocale(config.jsonPath));
        EXPECT_FALSE(document_kept());
    }

    void expect_not_parsed() const {
        expect_box(IDS_REPLY_NOT_PARSED, tarvo::Text(IDS_CAPTION));
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
    tarvo::PluginConfig config;
    TestBoxes boxes;
    std::vector<std::string> lines;

private:
    QuietOutput quiet_;
};

} // namespace support

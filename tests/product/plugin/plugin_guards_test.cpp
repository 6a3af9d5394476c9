// Calls by the host while texts cannot be loaded or memory has run out: one log line with the place, and a
// result that the host can use.
#include "plugin/action_table.h"
#include "plugin/plugin_object.h"
#include "tests/product/plugin/plugin_fixture.h"
#include "tests/support/patched_import.h"
#include "tests/support/test_folder.h"

#include <new>
#include <stdexcept>

namespace {

int WINAPI throwing_load_string(HINSTANCE, UINT, LPWSTR, int) {
    throw std::runtime_error("from the texts");
}

void* no_memory(std::size_t) {
    throw std::bad_alloc();
}

class PluginGuards : public PluginTest {
protected:
    using Lines = std::vector<std::string>;

    void SetUp() override {
        PluginTest::SetUp();
        support::plugin_folder();
        mark_ = support::log_mark("qfx_data");
    }

    // Runs `call` while LoadStringW throws.
    template <class Call>
    static auto without_texts(Call call) -> decltype(call()) {
        const support::PatchedImport patch("user32.dll", "LoadStringW",
                                           reinterpret_cast<void*>(&throwing_load_string));
        EXPECT_TRUE(patch.installed());
        return call();
    }

    Lines new_lines() const { return support::log_lines_since("qfx_data", mark_); }

    static std::string line(const char* place) {
        return "[ERROR] An exception was stopped in " + std::string(place) + ": from the texts";
    }

private:
    std::size_t mark_ = 0;
};

TEST_F(PluginGuards, ExceptionInStartKeepsThePlugin) {
    EXPECT_EQ(static_cast<DWORD>(GUPRESULT_KEEP), without_texts([this] { return plugin_->Start(); }));
    EXPECT_EQ(
        (Lines{line("RemoveEarlierMenus"), line("InstallActionTable"),
               "[ERROR] The plugin's menu was not made: the host has no main menu bar or no action table."}),
        new_lines());
}

TEST_F(PluginGuards, ExceptionInStopStillRemovesTheHandler) {
    start();
    without_texts([this] {
        plugin_->Stop();
        return 0;
    });
    EXPECT_EQ(Lines{line("Stop")}, new_lines());
    EXPECT_EQ(0, host_sdk::notification_handler_count(80));
}

TEST_F(PluginGuards, ExceptionInTheDestructorIsLogged) {
    without_texts([this] {
        end();
        return 0;
    });
    EXPECT_EQ(Lines{line("~Tarvo_Rendering")}, new_lines());
}

TEST_F(PluginGuards, ExceptionInANotificationIsLoggedAndKeepsTheMenu) {
    start();
    without_texts([] {
        host_sdk::broadcast_notification(80);
        return 0;
    });
    EXPECT_EQ(Lines{line("OnSystemStartup")}, new_lines());
    EXPECT_EQ(3, item_count(title()));
}

TEST_F(PluginGuards, ExceptionInAnActionCountsAsHandled) {
    tarvo::Tarvo_ActionCallback callback;
    EXPECT_EQ(TRUE, without_texts([&callback] { return callback.ExecuteAction(1498); }));
    EXPECT_EQ(Lines{line("ExecuteAction")}, new_lines());
}

TEST_F(PluginGuards, ExceptionInGetMenuTextGivesNoText) {
    TSTR name(L"a table");
    tarvo::Tarvo_ActionTable table(name);
    MSTR text(L"before");
    EXPECT_EQ(FALSE, without_texts([&] { return table.GetMenuText(1497, text); }));
    EXPECT_EQ(Lines{line("GetMenuText")}, new_lines());
}

TEST_F(PluginGuards, ExceptionGivesEmptyClassNames) {
    tarvo::Tarvo_RenderingClassDesc fresh;
    EXPECT_STREQ(L"", without_texts([&fresh] { return fresh.ClassName(); }));
    EXPECT_STREQ(L"", without_texts([&fresh] { return fresh.Category(); }));
    EXPECT_EQ((Lines{line("ClassName"), line("Category")}), new_lines());
}

TEST_F(PluginGuards, OutOfMemoryCreatesNoObject) {
    tarvo::Tarvo_RenderingClassDesc fresh;
    const support::PatchedImport patch("host_standin.dll", "_ZN16MaxHeapOperatorsnwEy",
                                       reinterpret_cast<void*>(&no_memory));
    ASSERT_TRUE(patch.installed());
    EXPECT_EQ(nullptr, fresh.Create(FALSE));
    ASSERT_EQ(1u, new_lines().size());
    EXPECT_EQ(0u, new_lines()[0].find("[ERROR] An exception was stopped in Create: "));
}

} // namespace

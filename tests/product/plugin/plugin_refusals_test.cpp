// A host that answers null while the plugin's menu is made.
#include "tests/product/plugin/plugin_fixture.h"
#include "tests/support/test_folder.h"

namespace {

class PluginRefusals : public PluginTest {};

TEST_F(PluginRefusals, RefusedMenuIsLoggedAndCreatedOnStartUpNotification) {
    const std::size_t mark = support::log_mark("qfx_data");
    calls_.refused = "GetIMenu";
    start();
    EXPECT_EQ(std::vector<std::string>({"[ERROR] The host gave no menu."}),
              support::log_lines_since("qfx_data", mark));
    EXPECT_EQ(L"", host_sdk::describe_menus());
    calls_.refused.clear();
    host_sdk::broadcast_notification(80);
    EXPECT_EQ(own_menu(), host_sdk::describe_menus());
}

TEST_F(PluginRefusals, HostWithoutANewMenuItemIsLogged) {
    const std::size_t mark = support::log_mark("qfx_data");
    calls_.refused = "GetIMenuItem";
    start();
    const std::vector<std::string> lines = support::log_lines_since("qfx_data", mark);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ("[ERROR] The host gave no menu item.", lines.front());
}

TEST_F(PluginRefusals, ExceptionWhileTheTableIsActivatedAgainIsLogged) {
    const std::size_t mark = support::log_mark("qfx_data");
    calls_.throws_in = "IActionManager::FindTable";
    start();
    const std::vector<std::string> lines = support::log_lines_since("qfx_data", mark);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ("[ERROR] An exception was stopped in ActivateInstalledTable: from the host", lines.front());
}

} // namespace

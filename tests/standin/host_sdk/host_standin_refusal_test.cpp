#include "tests/product/plugin/host_fixture.h"

#include <max.h>

#include <actiontable.h>
#include <imenuman.h>
#include <imenus.h>

namespace {

const MenuContextId kContext = 77;

class StandinRefusals : public HostTest {
protected:
    Interface& core() { return *GetCOREInterface(); }
    IMenuManager& menus() { return *core().GetMenuManager(); }
    IActionManager& actions() { return *core().GetActionManager(); }

    // What `call` answers while the host refuses the calls of that name.
    template <class Call>
    auto refused(const char* name, Call call) -> decltype(call()) {
        calls_.refused = name;
        const auto answer = call();
        calls_.refused.clear();
        return answer;
    }
};

TEST_F(StandinRefusals, TheCoreAnswersNullOrNothing) {
    host_sdk::set_scene(L"C:\\scenes\\Hall.max", true);
    Interface& host = core();
    EXPECT_EQ(nullptr, refused("Interface::GetMenuManager", [&] { return host.GetMenuManager(); }));
    EXPECT_EQ(nullptr, refused("Interface::GetActionManager", [&] { return host.GetActionManager(); }));
    EXPECT_EQ(FALSE, refused("Interface::FileSave", [&] { return host.FileSave(); }));
    EXPECT_EQ(0, refused("Interface::SaveToFile",
                         [&] { return host.SaveToFile(L"C:\\scenes\\Other.max", TRUE, TRUE); }));
    EXPECT_TRUE(host_sdk::scene_needs_save());
    EXPECT_STREQ(L"", refused("Interface::GetCurFileName", [&] { return host.GetCurFileName(); }).data());
    EXPECT_STREQ(L"", refused("Interface::GetCurFilePath", [&] { return host.GetCurFilePath(); }).data());
    EXPECT_STREQ(L"Hall.max", host.GetCurFileName().data());
    host_sdk::set_main_window(::GetDesktopWindow());
    EXPECT_EQ(nullptr, refused("Interface::GetMAXHWnd", [&] { return host.GetMAXHWnd(); }));
}

TEST_F(StandinRefusals, TheMenuManagerAnswersFalseOrNull) {
    IMenuManager& manager = menus();
    IMenu* menu = GetIMenu();
    menu->SetTitle(MSTR(L"Menu"));
    EXPECT_FALSE(refused("IMenuManager::RegisterMenu", [&] { return manager.RegisterMenu(menu, 0); }));
    EXPECT_EQ(nullptr, manager.FindMenu(L"Menu"));
    ASSERT_TRUE(manager.RegisterMenu(menu, 0));
    EXPECT_EQ(nullptr, refused("IMenuManager::FindMenu", [&] { return manager.FindMenu(L"Menu"); }));
    EXPECT_FALSE(refused("IMenuManager::UnRegisterMenu", [&] { return manager.UnRegisterMenu(menu); }));
    EXPECT_EQ(menu, manager.FindMenu(L"Menu"));
    EXPECT_FALSE(refused("IMenuManager::RegisterMenuBarContext",
                         [&] { return manager.RegisterMenuBarContext(kContext, L"Context"); }));
    EXPECT_EQ(nullptr, manager.GetContext(kContext));
    ASSERT_TRUE(manager.RegisterMenuBarContext(kContext, L"Context"));
    EXPECT_EQ(nullptr, refused("IMenuManager::GetContext", [&] { return manager.GetContext(kContext); }));
    EXPECT_EQ(nullptr, refused("IMenuManager::GetMainMenuBar", [&] { return manager.GetMainMenuBar(); }));
    menu->AddItem(GetIMenuItem(), -1);
    EXPECT_EQ(0, refused("IMenu::NumItems", [&] { return menu->NumItems(); }));
    EXPECT_EQ(1, menu->NumItems());
}

TEST_F(StandinRefusals, TheActionManagerAnswersFalseOrNull) {
    IActionManager& manager = actions();
    EXPECT_EQ(FALSE, refused("IActionManager::RegisterActionContext",
                             [&] { return manager.RegisterActionContext(5, L"Context"); }));
    EXPECT_EQ(L"", host_sdk::action_context_name(5));
    TSTR name(L"Table");
    auto* table = new ActionTable(1000, 5, name, nullptr, 0, nullptr, ::GetModuleHandleW(nullptr));
    manager.RegisterActionTable(table);
    EXPECT_EQ(nullptr, refused("IActionManager::FindTable", [&] { return manager.FindTable(1000); }));
    ActionCallback callback;
    EXPECT_EQ(FALSE, refused("IActionManager::ActivateActionTable",
                             [&] { return manager.ActivateActionTable(&callback, 1000); }));
    ASSERT_EQ(TRUE, manager.ActivateActionTable(&callback, 1000));
    EXPECT_EQ(FALSE, refused("IActionManager::DeactivateActionTable",
                             [&] { return manager.DeactivateActionTable(&callback, 1000); }));
    EXPECT_EQ(1, host_sdk::active_callback_count(1000));
    EXPECT_EQ(TRUE, manager.DeactivateActionTable(&callback, 1000));
}

} // namespace

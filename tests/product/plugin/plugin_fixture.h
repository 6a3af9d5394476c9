// The plugin object in a freshly started host.
#pragma once

#include "common/string_table.h"
#include "plugin/plugin_object.h"
#include "resources/resource_ids.h"
#include "tests/product/plugin/host_fixture.h"

class PluginTest : public HostTest {
protected:
    static std::wstring title() { return tarvo::Text(IDS_MENU_TITLE); }

    // The menu bar with the plugin's three entries and nothing else.
    static std::wstring own_menu() {
        const std::wstring before = title() + L" > ";
        return before + tarvo::Text(IDS_ACTION_OPEN) + L"\n" + before + L"---\n" + before +
               tarvo::Text(IDS_ACTION_ABOUT) + L"\n";
    }

    static IMenuManager& menus() { return *GetCOREInterface()->GetMenuManager(); }

    static int item_count(const std::wstring& of_title) {
        IMenu* menu = menus().FindMenu(of_title.c_str());
        return menu == nullptr ? -1 : menu->NumItems();
    }

    static IMenu* add_menu(const std::wstring& with_title, int separators) {
        IMenu* menu = GetIMenu();
        menu->SetTitle(MSTR(with_title.c_str()));
        menus().RegisterMenu(menu);
        for (int i = 0; i < separators; ++i) {
            IMenuItem* item = GetIMenuItem();
            item->ActAsSeparator();
            menu->AddItem(item);
        }
        IMenuItem* entry = GetIMenuItem();
        entry->SetSubMenu(menu);
        menus().GetMainMenuBar()->AddItem(entry);
        menus().UpdateMenuBar();
        return menu;
    }

    void start() { EXPECT_EQ(static_cast<DWORD>(GUPRESULT_KEEP), plugin_->Start()); }

    void end() {
        plugin_->DeleteThis();
        plugin_ = nullptr;
    }

    void SetUp() override {
        HostTest::SetUp();
        plugin_ = new tarvo::Tarvo_Rendering;
    }

    void TearDown() override {
        if (plugin_ != nullptr) {
            end();
        }
        HostTest::TearDown();
    }

    GUP* plugin_ = nullptr;
};

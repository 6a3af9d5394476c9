// The two actions, as the menu and a shortcut run them, with real boxes and a real dialog on the screen.
#include "tests/product/module/box_answerer.h"
#include "tests/product/module/module_fixture.h"

namespace {

class MainWindow {
public:
    MainWindow()
        : window_(::CreateWindowExW(0, L"STATIC", L"Host", WS_OVERLAPPEDWINDOW, 0, 0, 400, 300, nullptr,
                                    nullptr, ::GetModuleHandleW(nullptr), nullptr)) {
        host_sdk::set_main_window(window_);
    }
    ~MainWindow() {
        host_sdk::set_main_window(nullptr);
        ::DestroyWindow(window_);
    }
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    HWND get() const { return window_; }

private:
    HWND window_;
};

// Called only when the plugin's callbacks have not handled the action.
class LastResort : public ActionCallback {
public:
    BOOL ExecuteAction(int command_id) override {
        asked.push_back(command_id);
        return TRUE;
    }

    std::vector<int> asked;
};

class ModuleActions : public ModuleTest {
protected:
    void expect_about_box(const std::vector<SeenBox>& boxes) {
        ASSERT_EQ(1u, boxes.size());
        EXPECT_EQ(text(13), boxes[0].text);
        EXPECT_EQ(text(30), boxes[0].caption);
        EXPECT_EQ(nullptr, boxes[0].owner);
        EXPECT_EQ(1, boxes[0].buttons);
    }

    void expect_client_box(const std::vector<SeenBox>& boxes, HWND main_window) {
        ASSERT_EQ(1u, boxes.size());
        EXPECT_EQ(text(81), boxes[0].text);
        EXPECT_EQ(text(49), boxes[0].caption);
        EXPECT_NE(nullptr, boxes[0].owner);
        EXPECT_EQ(main_window, boxes[0].owner_of_owner);
        EXPECT_TRUE(boxes[0].owner_has_cameras);
        EXPECT_EQ(1, boxes[0].buttons);
        EXPECT_FALSE(::IsWindow(boxes[0].owner));
    }
};

TEST_F(ModuleActions, ShortcutAndMenuShowTheAboutBox) {
    MainWindow main_window;
    start();
    forget_calls();
    for (const bool by_menu : {false, true}) {
        BoxAnswerer answerer;
        EXPECT_TRUE(by_menu ? host_sdk::execute_menu_command(host_sdk::kFirstMenuCommand + 1)
                            : host_sdk::execute_action(kTableId, kShowAbout));
        expect_about_box(answerer.seen());
    }
    expect_calls({});
}

// Without an ini file the client is not set up: the dialog says so and ends.
TEST_F(ModuleActions, ShortcutAndMenuOpenTheDialog) {
    MainWindow main_window;
    start();
    for (const bool by_menu : {false, true}) {
        forget_calls();
        BoxAnswerer answerer;
        EXPECT_TRUE(by_menu ? host_sdk::execute_menu_command(host_sdk::kFirstMenuCommand)
                            : host_sdk::execute_action(kTableId, kOpenDialog));
        expect_client_box(answerer.seen(), main_window.get());
        expect_calls({L"Interface::GetMAXHWnd()"});
        EXPECT_TRUE(::IsWindowEnabled(main_window.get()));
    }
}

TEST_F(ModuleActions, DialogOpensWithoutAMainWindow) {
    start();
    BoxAnswerer answerer;
    EXPECT_TRUE(host_sdk::execute_action(kTableId, kOpenDialog));
    expect_client_box(answerer.seen(), nullptr);
}

// The plugin's callbacks report unknown commands as handled too, so no third callback is called.
TEST_F(ModuleActions, EveryCommandCountsAsHandled) {
    const int unknown = 4711;
    ActionDescription descriptions[] = {
        {kShowAbout, 0, 0, 0}, {kOpenDialog, 0, 0, 0}, {unknown, 0, 0, 0}, {0, 0, 0, 0}, {-1, 0, 0, 0}};
    TSTR name(L"Somebody's");
    // A table of the same id with further commands is registered before the plugin's table.
    actions().RegisterActionTable(new ActionTable(kTableId, kActionContext, name, nullptr, 5, descriptions,
                                                  ::GetModuleHandleW(nullptr)));
    LastResort last;
    EXPECT_TRUE(actions().ActivateActionTable(&last, kTableId));
    start();
    EXPECT_EQ(3, host_sdk::active_callback_count(kTableId));
    forget_calls();
    BoxAnswerer answerer;
    for (const int command : {unknown, 0, -1}) {
        EXPECT_TRUE(host_sdk::execute_action(kTableId, command));
    }
    EXPECT_TRUE(answerer.seen().empty());
    EXPECT_TRUE(last.asked.empty());
    expect_calls({});
    BoxAnswerer second;
    EXPECT_TRUE(host_sdk::execute_action(kTableId, kShowAbout));
    expect_about_box(second.seen());
    EXPECT_TRUE(last.asked.empty());
    host_sdk::reset();
}

TEST_F(ModuleActions, TableHasItsIdsAndTexts) {
    start();
    ActionTable* table = actions().FindTable(kTableId);
    ASSERT_NE(nullptr, table);
    EXPECT_EQ(kTableId, table->GetId());
    EXPECT_EQ(kActionContext, table->GetContextId());
    EXPECT_EQ(text(6), table->GetName().data());
    EXPECT_EQ(2, table->Count());
    struct {
        int command;
        UINT text;
    } const cases[] = {{kOpenDialog, 6}, {kShowAbout, 12}};
    for (const auto& action : cases) {
        ActionItem* item = table->GetAction(action.command);
        ASSERT_NE(nullptr, item);
        MSTR description, short_name, category, menu;
        item->GetDescriptionText(description);
        item->GetShortText(short_name);
        item->GetCategoryText(category);
        EXPECT_TRUE(table->GetMenuText(action.command, menu));
        for (const MSTR* given : {&description, &short_name, &category, &menu}) {
            EXPECT_EQ(text(action.text), given->data());
        }
    }
    MSTR untouched(L"as before");
    EXPECT_FALSE(table->GetMenuText(4711, untouched));
    EXPECT_STREQ(L"as before", untouched.data());
}

} // namespace

// The Windows menu that a frame shows. Every update builds a new one from the main menu bar.
#include "actions.h"
#include "host_state.h"
#include "menus.h"

namespace host_sdk {

namespace {

struct MenuCommand {
    ActionTableId table_id;
    int command_id;
};

struct MenuBar {
    HMENU handle = nullptr;
    std::vector<MenuCommand> commands; // the first one has the id kFirstMenuCommand
    void (*listener)(void*) = nullptr;
    void* listener_context = nullptr;
};

MenuBar& bar() {
    static MenuBar* one = new MenuBar;
    return *one;
}

// A menu file may hold a menu that contains itself.
const int kDeepestMenu = 8;

HMENU build(const Menu& menu, HMENU handle, int depth);

void append_item(HMENU handle, const MenuItem& item, int depth) {
    const std::wstring text = item.shown_text();
    const UINT look = MF_STRING | (item.is_usable() ? MF_ENABLED : MF_GRAYED);
    if (item.mode == MenuItem::Mode::separator) {
        ::AppendMenuW(handle, MF_SEPARATOR, 0, nullptr);
    } else if (item.mode == MenuItem::Mode::sub_menu && depth < kDeepestMenu) {
        const HMENU sub = build(*static_cast<Menu*>(item.sub_menu), ::CreatePopupMenu(), depth + 1);
        ::AppendMenuW(handle, look | MF_POPUP, reinterpret_cast<UINT_PTR>(sub), text.c_str());
    } else if (item.mode == MenuItem::Mode::action) {
        const UINT id = kFirstMenuCommand + static_cast<UINT>(bar().commands.size());
        bar().commands.push_back({item.table_id, item.command_id});
        ::AppendMenuW(handle, look, id, text.c_str());
    } else {
        ::AppendMenuW(handle, look, 0, text.c_str());
    }
}

HMENU build(const Menu& menu, HMENU handle, int depth) {
    for (const std::unique_ptr<MenuItem>& item : menu.items) {
        append_item(handle, *item, depth);
    }
    return handle;
}

void replace_bar(HMENU handle) {
    const HMENU old = bar().handle;
    bar().handle = handle;
    if (bar().listener != nullptr) {
        run_foreign([] { bar().listener(bar().listener_context); });
    }
    if (old != nullptr) {
        ::DestroyMenu(old); // only now, as the frame may have shown it
    }
}

std::wstring entry_text(HMENU menu, int position) {
    if ((::GetMenuState(menu, static_cast<UINT>(position), MF_BYPOSITION) & MF_SEPARATOR) != 0 &&
        ::GetSubMenu(menu, position) == nullptr) {
        return L"---";
    }
    wchar_t text[256] = {};
    ::GetMenuStringW(menu, static_cast<UINT>(position), text, 256, MF_BYPOSITION);
    return text;
}

void describe(HMENU menu, const std::wstring& before, std::wstring& lines) {
    const int count = ::GetMenuItemCount(menu);
    for (int position = 0; position < count; ++position) {
        const std::wstring path = before + entry_text(menu, position);
        const HMENU sub = ::GetSubMenu(menu, position);
        if (sub == nullptr || ::GetMenuItemCount(sub) == 0) {
            lines += path + L"\n";
        } else {
            describe(sub, path + L" > ", lines);
        }
    }
}

} // namespace

void update_menu_bar() {
    bar().commands.clear();
    replace_bar(build(*menu_store().bar, ::CreateMenu(), 0));
}

void clear_menu_bar() {
    bar().commands.clear();
    replace_bar(nullptr);
}

HMENU menu_bar() {
    return bar().handle;
}

void set_menu_bar_listener(void (*listener)(void* context), void* context) {
    bar().listener = listener;
    bar().listener_context = context;
}

std::wstring describe_menus() {
    std::wstring lines;
    if (bar().handle != nullptr) {
        describe(bar().handle, std::wstring(), lines);
    }
    return lines;
}

bool execute_menu_command(UINT id) {
    if (id < kFirstMenuCommand || id - kFirstMenuCommand >= bar().commands.size()) {
        return false;
    }
    const MenuCommand command = bar().commands[id - kFirstMenuCommand];
    return execute_action(command.table_id, command.command_id);
}

} // namespace host_sdk

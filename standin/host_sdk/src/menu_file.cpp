// The menu file: what the host keeps of its menus from run to run. Text, one record a line, fields separated
// by tabs:
//   host menus 1
//   menu <title>                                   the first one is the main menu bar
//   action <table id> <command id> <custom: 0 or 1> <title>
//   separator
//   submenu <number of the menu, from 0> <custom> <title>
//   text <custom> <title>                          an entry that does nothing
//   context <id> <name> <number of its menu or -1>
// The tests and the stage write nothing else, so reading does not check a line's fields.
#include "call_record.h"
#include "menus.h"

namespace host_sdk {

namespace {

using Fields = std::vector<std::wstring>;

Fields split(const std::wstring& text, wchar_t separator) {
    Fields parts(1);
    for (const wchar_t character : text) {
        if (character == separator) {
            parts.emplace_back();
        } else {
            parts.back() += character;
        }
    }
    return parts;
}

int menu_number(const IMenu* menu) {
    const MenuStore& store = menu_store();
    int number = menu == store.bar.get() ? 0 : -1;
    for (std::size_t index = 0; index < store.menus.size(); ++index) {
        number = store.menus[index].get() == menu ? static_cast<int>(index) + 1 : number;
    }
    return number;
}

Menu* menu_by_number(int number) {
    MenuStore& store = menu_store();
    return number < 0 ? nullptr : number == 0 ? store.bar.get() : store.menus[number - 1].get();
}

std::wstring item_line(const MenuItem& item) {
    const std::wstring title = (item.custom_title ? L"\t1\t" : L"\t0\t") + item.shown_text() + L"\n";
    switch (item.mode) {
    case MenuItem::Mode::separator:
        return L"separator\n";
    case MenuItem::Mode::action:
        return L"action\t" + std::to_wstring(item.table_id) + L"\t" + std::to_wstring(item.command_id) +
               title;
    case MenuItem::Mode::sub_menu:
        return L"submenu\t" + std::to_wstring(menu_number(item.sub_menu)) + title;
    default:
        return L"text" + title;
    }
}

std::wstring menu_lines(const Menu& menu) {
    std::wstring lines = std::wstring(L"menu\t") + menu.title.data() + L"\n";
    for (const std::unique_ptr<MenuItem>& item : menu.items) {
        lines += item_line(*item);
    }
    return lines;
}

void add_item(Menu& menu, const Fields& fields) {
    std::unique_ptr<MenuItem> item(new MenuItem);
    if (fields[0] == L"separator") {
        item->mode = MenuItem::Mode::separator;
    } else {
        const std::size_t size = fields.size();
        item->custom_title = fields[size - 2] == L"1";
        item->title = fields[size - 1].c_str();
    }
    if (fields[0] == L"action") {
        item->mode = MenuItem::Mode::action;
        item->table_id = static_cast<ActionTableId>(std::stoul(fields[1]));
        item->command_id = std::stoi(fields[2]);
    } else if (fields[0] == L"submenu") {
        item->mode = MenuItem::Mode::sub_menu;
        item->sub_menu = menu_by_number(std::stoi(fields[1]));
    }
    menu.items.push_back(std::move(item));
}

// A context that the host has already stays registered.
void add_context(const Fields& fields) {
    const MenuContextId id = std::stoi(fields[1]);
    const auto found = menu_store().contexts.find(id);
    BarContext& context =
        found == menu_store().contexts.end() ? add_host_context(id, fields[2]) : *found->second;
    context.menu = menu_by_number(std::stoi(fields[3]));
}

void forget_menus() {
    MenuStore& store = menu_store();
    store.bar->items.clear();
    store.menus.clear();
    for (const auto& entry : store.contexts) {
        entry.second->menu = entry.first == kMainMenuBar ? store.bar.get() : nullptr;
    }
}

} // namespace

std::wstring save_menus() {
    const MenuStore& store = menu_store();
    std::wstring text = L"host menus 1\n" + menu_lines(*store.bar);
    for (const std::unique_ptr<Menu>& menu : store.menus) {
        text += menu_lines(*menu);
    }
    for (const auto& entry : store.contexts) {
        if (entry.first != kMainMenuBar) {
            text += L"context\t" + std::to_wstring(entry.first) + L"\t" + entry.second->name.data() + L"\t" +
                    std::to_wstring(menu_number(entry.second->menu)) + L"\n";
        }
    }
    return text;
}

void load_menus(const std::wstring& menu_file) {
    const HostOwnScope own;
    forget_menus();
    std::vector<Fields> lines;
    for (const std::wstring& line : split(menu_file, L'\n')) {
        lines.push_back(split(line, L'\t'));
    }
    // All menus first: an item may name a later one.
    int count = 0;
    for (const Fields& fields : lines) {
        if (fields[0] == L"menu" && count++ > 0) {
            menu_store().menus.emplace_back(new Menu);
        }
    }
    int number = -1;
    for (const Fields& fields : lines) {
        if (fields[0] == L"menu") {
            menu_by_number(++number)->title = fields[1].c_str();
        } else if (fields[0] == L"context") {
            add_context(fields);
        } else if (number >= 0 && !fields[0].empty()) {
            add_item(*menu_by_number(number), fields);
        }
    }
    update_menu_bar();
}

} // namespace host_sdk

// The menu file: what the host keeps of its menus from run to run. Text, one record a line, fields divided by
// tabs:
//   host menus 1
//   menu <title>                                   the first one is the main menu bar
//   action <table id> <command id> <custom: 0 or 1> <title>
//   separator
//   submenu <number of the menu, from 0> <custom> <title>
//   text <custom> <title>                          an entry that does nothing
//   context <id> <name> <number of its menu or -1>
// A back slash stands before a back slash, t (tab) and n (line feed) in a text.
#include "call_record.h"
#include "menu_manager.h"

#include <cwchar>

namespace host_sdk {

namespace {

const wchar_t kHeader[] = L"host menus 1";

struct KeptItem {
    MenuItem::Mode mode;
    DWORD table_id;
    int command_id;
    int sub_menu;
    bool custom;
    std::wstring title;
};

struct KeptMenu {
    std::wstring title;
    std::vector<KeptItem> items;
};

struct KeptContext {
    int id;
    std::wstring name;
    int menu;
};

struct KeptMenus {
    std::vector<KeptMenu> menus;
    std::vector<KeptContext> contexts;
};

std::wstring escaped(const std::wstring& text) {
    std::wstring result;
    for (const wchar_t character : text) {
        switch (character) {
        case L'\\':
            result += L"\\\\";
            break;
        case L'\t':
            result += L"\\t";
            break;
        case L'\n':
            result += L"\\n";
            break;
        default:
            result += character;
        }
    }
    return result;
}

std::wstring unescaped(const std::wstring& text) {
    std::wstring result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != L'\\' || at + 1 == text.size()) {
            result += text[at];
            continue;
        }
        ++at;
        result += text[at] == L't' ? L'\t' : text[at] == L'n' ? L'\n' : text[at];
    }
    return result;
}

std::vector<std::wstring> split(const std::wstring& text, wchar_t divider) {
    std::vector<std::wstring> parts(1);
    for (const wchar_t character : text) {
        if (character == divider) {
            parts.emplace_back();
        } else {
            parts.back() += character;
        }
    }
    return parts;
}

int menu_number(const IMenu* menu) {
    const MenuStore& store = menu_store();
    if (menu == store.bar.get()) {
        return 0;
    }
    for (std::size_t index = 0; index < store.menus.size(); ++index) {
        if (store.menus[index].get() == menu) {
            return static_cast<int>(index) + 1;
        }
    }
    return -1;
}

std::wstring item_line(const MenuItem& item) {
    const std::wstring title =
        std::wstring(item.has_custom_title() ? L"\t1\t" : L"\t0\t") + escaped(item.shown_text());
    switch (item.mode()) {
    case MenuItem::Mode::separator:
        return L"separator\n";
    case MenuItem::Mode::action:
        return L"action\t" + std::to_wstring(item.table_id()) + L"\t" + std::to_wstring(item.command_id()) +
               title + L"\n";
    case MenuItem::Mode::sub_menu:
        return L"submenu\t" + std::to_wstring(menu_number(item.sub_menu())) + title + L"\n";
    default:
        return L"text" + title + L"\n";
    }
}

std::wstring menu_lines(const Menu& menu) {
    std::wstring lines = L"menu\t" + escaped(menu.title()) + L"\n";
    for (const std::unique_ptr<MenuItem>& item : menu.items()) {
        lines += item_line(*item);
    }
    return lines;
}

// Reads the fields of one line; a field that is missing or not a number makes the whole line wrong.
class Fields {
public:
    explicit Fields(const std::wstring& line) : fields_(split(line, L'\t')) {}

    std::wstring text() {
        if (next_ == fields_.size()) {
            ok_ = false;
            return std::wstring();
        }
        return unescaped(fields_[next_++]);
    }

    long long number() {
        const std::wstring digits = text();
        wchar_t* end = nullptr;
        const long long value = std::wcstoll(digits.c_str(), &end, 10);
        ok_ = ok_ && !digits.empty() && *end == L'\0';
        return value;
    }

    bool is_complete() const { return ok_ && next_ == fields_.size(); }

private:
    std::vector<std::wstring> fields_;
    std::size_t next_ = 0;
    bool ok_ = true;
};

bool read_item(const std::wstring& kind, Fields& fields, KeptItem& item) {
    if (kind == L"separator") {
        item.mode = MenuItem::Mode::separator;
        return true;
    }
    if (kind == L"action") {
        item.mode = MenuItem::Mode::action;
        item.table_id = static_cast<DWORD>(fields.number());
        item.command_id = static_cast<int>(fields.number());
    } else if (kind == L"submenu") {
        item.mode = MenuItem::Mode::sub_menu;
        item.sub_menu = static_cast<int>(fields.number());
    } else if (kind == L"text") {
        item.mode = MenuItem::Mode::inactive;
    } else {
        return false;
    }
    item.custom = fields.number() != 0;
    item.title = fields.text();
    return true;
}

bool read_line(const std::wstring& line, KeptMenus& kept) {
    Fields fields(line);
    const std::wstring kind = fields.text();
    if (kind == L"menu") {
        kept.menus.push_back({fields.text(), {}});
        return fields.is_complete();
    }
    if (kind == L"context") {
        KeptContext context = {};
        context.id = static_cast<int>(fields.number());
        context.name = fields.text();
        context.menu = static_cast<int>(fields.number());
        kept.contexts.push_back(context);
        return fields.is_complete();
    }
    KeptItem item = {};
    if (kept.menus.empty() || !read_item(kind, fields, item)) {
        return false;
    }
    kept.menus.back().items.push_back(item);
    return fields.is_complete();
}

bool has_sound_numbers(const KeptMenus& kept) {
    const int count = static_cast<int>(kept.menus.size());
    for (const KeptMenu& menu : kept.menus) {
        for (const KeptItem& item : menu.items) {
            if (item.mode == MenuItem::Mode::sub_menu && (item.sub_menu < 1 || item.sub_menu >= count)) {
                return false;
            }
        }
    }
    for (const KeptContext& context : kept.contexts) {
        if (context.menu < -1 || context.menu >= count) {
            return false;
        }
    }
    return count > 0;
}

bool read_menu_file(const std::wstring& text, KeptMenus& kept) {
    const std::vector<std::wstring> lines = split(text, L'\n');
    if (lines.front() != kHeader) {
        return false;
    }
    for (std::size_t index = 1; index < lines.size(); ++index) {
        if (!lines[index].empty() && !read_line(lines[index], kept)) {
            return false;
        }
    }
    return has_sound_numbers(kept);
}

Menu* menu_by_number(int number) {
    MenuStore& store = menu_store();
    return number < 0 ? nullptr : number == 0 ? store.bar.get() : store.menus[number - 1].get();
}

void fill_menu(Menu& menu, const KeptMenu& kept) {
    for (const KeptItem& from : kept.items) {
        std::unique_ptr<MenuItem> item = make_host_item();
        if (from.mode == MenuItem::Mode::separator) {
            item->set_separator();
        } else if (from.mode == MenuItem::Mode::action) {
            item->set_action(from.table_id, from.command_id);
        } else if (from.mode == MenuItem::Mode::sub_menu) {
            item->set_sub_menu(menu_by_number(from.sub_menu));
        }
        item->set_kept_title(from.title, from.custom);
        menu.append(std::move(item));
    }
}

void replace_menus(const KeptMenus& kept) {
    MenuStore& store = menu_store();
    store.bar->clear();
    store.menus.clear();
    for (const auto& entry : store.contexts) {
        entry.second->menu = entry.first == kMainMenuBar ? store.bar.get() : nullptr;
    }
    store.bar->set_title(kept.menus.front().title);
    for (std::size_t index = 1; index < kept.menus.size(); ++index) {
        store.menus.push_back(make_host_menu());
        store.menus.back()->set_title(kept.menus[index].title);
    }
    for (std::size_t index = 0; index < kept.menus.size(); ++index) {
        fill_menu(*menu_by_number(static_cast<int>(index)), kept.menus[index]);
    }
    for (const KeptContext& context : kept.contexts) {
        const auto found = store.contexts.find(context.id);
        BarContext& own =
            found == store.contexts.end() ? add_host_context(context.id, context.name) : *found->second;
        own.menu = menu_by_number(context.menu);
    }
    update_menu_bar();
}

} // namespace

std::wstring save_menus() {
    const MenuStore& store = menu_store();
    std::wstring text = std::wstring(kHeader) + L"\n" + menu_lines(*store.bar);
    for (const std::unique_ptr<Menu>& menu : store.menus) {
        text += menu_lines(*menu);
    }
    for (const auto& entry : store.contexts) {
        if (entry.first != kMainMenuBar) {
            text += L"context\t" + std::to_wstring(entry.first) + L"\t" + escaped(entry.second->name.data()) +
                    L"\t" + std::to_wstring(menu_number(entry.second->menu)) + L"\n";
        }
    }
    return text;
}

bool load_menus(const std::wstring& menu_file) {
    KeptMenus kept;
    if (!read_menu_file(menu_file, kept)) {
        return false;
    }
    replace_menus(kept);
    return true;
}

void rebuild_menu_bar(const std::wstring& menu_file) {
    load_menus(menu_file);
}

} // namespace host_sdk

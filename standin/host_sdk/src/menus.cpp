#include "menus.h"

#include "actions.h"
#include "call_record.h"

#include <algorithm>

namespace host_sdk {

void MenuItem::SetTitle(const MSTR& title) {
    record("IMenuItem::SetTitle", title);
    title_ = title;
}

void MenuItem::ActAsSeparator() {
    record("IMenuItem::ActAsSeparator");
    set_separator();
}

void MenuItem::SetActionItem(ActionItem* action) {
    TableAction* known = static_cast<TableAction*>(action);
    record("IMenuItem::SetActionItem", known == nullptr ? 0 : known->command_id());
    if (known == nullptr) {
        mode_ = Mode::inactive;
    } else {
        set_action(known->table().GetId(), known->command_id());
    }
}

void MenuItem::SetSubMenu(IMenu* menu) {
    record("IMenuItem::SetSubMenu", menu);
    set_sub_menu(menu);
}

std::wstring MenuItem::shown_text() const {
    if (mode_ == Mode::sub_menu && !custom_title_) {
        return sub_menu_ == nullptr ? std::wstring() : static_cast<const Menu*>(sub_menu_)->title();
    }
    std::wstring text;
    if (mode_ == Mode::action && !custom_title_ && action_menu_text(table_id_, command_id_, text)) {
        return text;
    }
    return title_.data();
}

bool MenuItem::is_usable() const {
    return mode_ == Mode::sub_menu || (mode_ == Mode::action && is_action_live(table_id_, command_id_));
}

void MenuItem::set_kept_title(const std::wstring& title, bool custom) {
    title_ = title.c_str();
    custom_title_ = custom;
}

void MenuItem::set_action(ActionTableId table_id, int command_id) {
    mode_ = Mode::action;
    table_id_ = table_id;
    command_id_ = command_id;
}

void MenuItem::set_sub_menu(IMenu* menu) {
    mode_ = menu == nullptr ? Mode::inactive : Mode::sub_menu;
    sub_menu_ = menu;
}

void MenuItem::set_separator() {
    mode_ = Mode::separator;
}

void Menu::SetTitle(const MSTR& title) {
    record("IMenu::SetTitle", title);
    title_ = title;
}

int Menu::NumItems() const {
    record("IMenu::NumItems");
    return static_cast<int>(items_.size());
}

void Menu::AddItem(IMenuItem* item, int position) {
    record("IMenu::AddItem", static_cast<IMenu*>(this), item, position);
    if (item == nullptr) {
        return;
    }
    std::unique_ptr<MenuItem> owned(static_cast<MenuItem*>(item));
    const bool inside = position >= 0 && static_cast<std::size_t>(position) < items_.size();
    items_.insert(inside ? items_.begin() + position : items_.end(), std::move(owned));
}

void Menu::RemoveItem(int index) {
    record("IMenu::RemoveItem", static_cast<IMenu*>(this), index);
    if (index >= 0 && static_cast<std::size_t>(index) < items_.size()) {
        items_.erase(items_.begin() + index);
    }
}

void Menu::drop_items_showing(const IMenu* menu) {
    items_.erase(
        std::remove_if(items_.begin(), items_.end(),
                       [menu](const std::unique_ptr<MenuItem>& own) { return own->sub_menu() == menu; }),
        items_.end());
}

} // namespace host_sdk

IMenu* GetIMenu() {
    host_sdk::record("GetIMenu");
    return new host_sdk::Menu;
}

IMenuItem* GetIMenuItem() {
    host_sdk::record("GetIMenuItem");
    return new host_sdk::MenuItem;
}

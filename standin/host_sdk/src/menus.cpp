#include "menus.h"

#include "actions.h"
#include "call_record.h"

#include <algorithm>

namespace host_sdk {

void MenuItem::SetTitle(const MSTR& title) {
    record("IMenuItem::SetTitle", title);
    title_ = title;
}

const MSTR& MenuItem::GetTitle() {
    record("IMenuItem::GetTitle");
    return title_;
}

void MenuItem::SetUseCustomTitle(bool use) {
    record("IMenuItem::SetUseCustomTitle", use);
    custom_title_ = use;
}

bool MenuItem::GetUseCustomTitle() {
    record("IMenuItem::GetUseCustomTitle");
    return custom_title_;
}

void MenuItem::ActAsSeparator() {
    record("IMenuItem::ActAsSeparator");
    set_separator();
}

bool MenuItem::IsSeparator() const {
    record("IMenuItem::IsSeparator");
    return mode_ == AM_SEPARATOR;
}

void MenuItem::SetActionItem(ActionItem* action) {
    TableAction* known = static_cast<TableAction*>(action);
    record("IMenuItem::SetActionItem", known == nullptr ? 0 : known->command_id());
    if (known == nullptr) {
        mode_ = AM_INACTIVE;
    } else {
        set_action(known->table().GetId(), known->command_id());
    }
}

ActionItem* MenuItem::GetActionItem() const {
    record("IMenuItem::GetActionItem");
    ActionTable* table = mode_ == AM_ITEM ? find_action_table(table_id_) : nullptr;
    return table == nullptr ? nullptr : table->GetAction(command_id_);
}

void MenuItem::SetSubMenu(IMenu* menu) {
    record("IMenuItem::SetSubMenu", menu);
    set_sub_menu(menu);
}

IMenu* MenuItem::GetSubMenu() {
    record("IMenuItem::GetSubMenu");
    return sub_menu_;
}

IMenuItem::ActionMode MenuItem::GetActionMode() const {
    record("IMenuItem::GetActionMode");
    return mode_;
}

bool MenuItem::ExecuteAction() const {
    record("IMenuItem::ExecuteAction");
    return mode_ == AM_ITEM && run_action(table_id_, command_id_);
}

std::wstring MenuItem::shown_text() const {
    if (mode_ == AM_SUBMENU && !custom_title_) {
        return sub_menu_ == nullptr ? std::wstring() : static_cast<const Menu*>(sub_menu_)->title();
    }
    std::wstring text;
    if (mode_ == AM_ITEM && !custom_title_ && action_menu_text(table_id_, command_id_, text)) {
        return text;
    }
    return title_.data();
}

bool MenuItem::is_usable() const {
    return mode_ == AM_SUBMENU || (mode_ == AM_ITEM && is_action_live(table_id_, command_id_));
}

void MenuItem::set_kept_title(const std::wstring& title, bool custom) {
    title_ = title.c_str();
    custom_title_ = custom;
}

void MenuItem::set_action(ActionTableId table_id, int command_id) {
    mode_ = AM_ITEM;
    table_id_ = table_id;
    command_id_ = command_id;
}

void MenuItem::set_sub_menu(IMenu* menu) {
    mode_ = menu == nullptr ? AM_INACTIVE : AM_SUBMENU;
    sub_menu_ = menu;
}

void MenuItem::set_separator() {
    mode_ = AM_SEPARATOR;
}

void Menu::SetTitle(const MSTR& title) {
    record("IMenu::SetTitle", title);
    title_ = title;
}

const MSTR& Menu::GetTitle() {
    record("IMenu::GetTitle");
    return title_;
}

int Menu::NumItems() const {
    record("IMenu::NumItems");
    return static_cast<int>(items_.size());
}

IMenuItem* Menu::GetItem(int index) {
    record("IMenu::GetItem", index);
    return index >= 0 && static_cast<std::size_t>(index) < items_.size() ? items_[index].get() : nullptr;
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

void Menu::RemoveItem(IMenuItem* item) {
    record("IMenu::RemoveItem", static_cast<IMenu*>(this), item);
    items_.erase(std::remove_if(items_.begin(), items_.end(),
                                [item](const std::unique_ptr<MenuItem>& own) { return own.get() == item; }),
                 items_.end());
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

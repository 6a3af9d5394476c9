// Menus and items behind the interfaces. A menu owns its items; an item only points to its sub-menu.
#pragma once

#include "imenus.h"

#include <memory>
#include <string>
#include <vector>

namespace host_sdk {

class MenuItem : public IMenuItem {
public:
    enum class Mode { inactive, separator, action, sub_menu };

    void SetTitle(const MSTR& title) override;
    void ActAsSeparator() override;
    void SetActionItem(ActionItem* action) override;
    void SetSubMenu(IMenu* menu) override;

    // The host's own look at the item; nothing of it is recorded.
    Mode mode() const { return mode_; }
    bool has_custom_title() const { return custom_title_; }
    ActionTableId table_id() const { return table_id_; }
    int command_id() const { return command_id_; }
    IMenu* sub_menu() const { return sub_menu_; }
    std::wstring shown_text() const; // asks the action's table while it is registered
    bool is_usable() const;          // false: an action whose table is not there or not active

    void set_kept_title(const std::wstring& title, bool custom);
    void set_action(ActionTableId table_id, int command_id);
    void set_sub_menu(IMenu* menu);
    void set_separator();

private:
    Mode mode_ = Mode::inactive;
    MSTR title_;
    bool custom_title_ = false;
    ActionTableId table_id_ = 0;
    int command_id_ = 0;
    IMenu* sub_menu_ = nullptr;
};

class Menu : public IMenu {
public:
    void SetTitle(const MSTR& title) override;
    int NumItems() const override;
    void AddItem(IMenuItem* item, int position) override;
    void RemoveItem(int index) override;

    std::wstring title() const { return title_.data(); }
    void set_title(const std::wstring& title) { title_ = title.c_str(); }
    const std::vector<std::unique_ptr<MenuItem>>& items() const { return items_; }
    void append(std::unique_ptr<MenuItem> item) { items_.push_back(std::move(item)); }
    void clear() { items_.clear(); }
    void drop_items_showing(const IMenu* menu);

private:
    MSTR title_;
    std::vector<std::unique_ptr<MenuItem>> items_;
};

} // namespace host_sdk

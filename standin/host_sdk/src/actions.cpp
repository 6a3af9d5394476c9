#include "actions.h"

#include "call_record.h"
#include "host_heap.h"

#include <memory>
#include <vector>

using host_sdk::HostOwnScope;
using host_sdk::record;
using host_sdk::TableAction;

namespace {

std::wstring resource_text(HINSTANCE module, int id) {
    wchar_t text[256] = {};
    const int length = ::LoadStringW(module, static_cast<UINT>(id), text, 256);
    return std::wstring(text, static_cast<std::size_t>(length));
}

} // namespace

namespace host_sdk {

TableAction::TableAction(ActionTable& table, const ActionDescription& description, HINSTANCE module)
    : table_(table), command_id_(description.mCmdID),
      description_(resource_text(module, description.mDescriptionResourceID)),
      short_name_(resource_text(module, description.mShortNameResourceID)),
      category_(resource_text(module, description.mCategoryResourceID)) {}

int TableAction::GetId() {
    return command_id_;
}
void TableAction::GetDescriptionText(MSTR& text) {
    table_.GetDescriptionText(command_id_, text);
}
void TableAction::GetMenuText(MSTR& text) {
    table_.GetMenuText(command_id_, text);
}
void TableAction::GetShortText(MSTR& text) {
    text = short_name_.c_str();
}
void TableAction::GetCategoryText(MSTR& text) {
    text = category_.c_str();
}
BOOL TableAction::ExecuteAction() {
    return run_action(table_.GetId(), command_id_) ? TRUE : FALSE;
}
BOOL TableAction::IsEnabled() {
    return table_.IsEnabled(command_id_);
}
void TableAction::DeleteThis() {} // belongs to its table

} // namespace host_sdk

struct ActionTable::Contents {
    ActionTableId id;
    ActionContextId context;
    MSTR name;
    std::vector<std::unique_ptr<TableAction>> items;

    TableAction* find(int command_id) const {
        for (const std::unique_ptr<TableAction>& item : items) {
            if (item->command_id() == command_id) {
                return item.get();
            }
        }
        return nullptr;
    }
};

ActionTable::ActionTable(ActionTableId id, ActionContextId context, TSTR& name, HACCEL accelerators,
                         int count, ActionDescription* descriptions, HINSTANCE module)
    : contents_(new Contents) {
    record("ActionTable::ActionTable", id, context, name, accelerators, count);
    const HostOwnScope own;
    contents_->id = id;
    contents_->context = context;
    contents_->name = name;
    for (int index = 0; index < count; ++index) {
        contents_->items.emplace_back(new TableAction(*this, descriptions[index], module));
    }
}

ActionTable::~ActionTable() {
    host_sdk::forget_action_table(this);
    delete contents_;
}

BOOL ActionTable::GetMenuText(int command_id, MSTR& text) {
    const TableAction* item = contents_->find(command_id);
    if (item == nullptr) {
        return FALSE;
    }
    text = item->short_name().c_str();
    return TRUE;
}

BOOL ActionTable::GetDescriptionText(int command_id, MSTR& text) {
    const TableAction* item = contents_->find(command_id);
    if (item == nullptr) {
        return FALSE;
    }
    text = item->description().c_str();
    return TRUE;
}

BOOL ActionTable::IsEnabled(int) {
    return TRUE;
}

void ActionTable::DeleteThis() {
    delete this;
}

ActionTableId ActionTable::GetId() {
    return contents_->id;
}

ActionContextId ActionTable::GetContextId() {
    return contents_->context;
}

MSTR& ActionTable::GetName() {
    return contents_->name;
}

int ActionTable::Count() {
    return static_cast<int>(contents_->items.size());
}

ActionItem* ActionTable::GetAction(int command_id) {
    return contents_->find(command_id);
}

ActionItem::ActionItem() {}
ActionItem::~ActionItem() {}

ActionCallback::ActionCallback() {}
ActionCallback::~ActionCallback() {}
BOOL ActionCallback::ExecuteAction(int) {
    return FALSE;
}

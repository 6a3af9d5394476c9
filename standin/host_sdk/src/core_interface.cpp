#include "actions.h"
#include "call_record.h"
#include "menu_manager.h"
#include "scene_file.h"

#include "maxapi.h"

namespace host_sdk {

namespace {

class CoreInterface : public Interface {
public:
    HWND GetMAXHWnd() override {
        record("Interface::GetMAXHWnd");
        return state().main_window;
    }

    MSTR& GetCurFileName() override {
        record("Interface::GetCurFileName");
        const std::wstring& path = state().scene.path;
        const std::size_t separator = path.find_last_of(L"\\/");
        file_name_ = path.c_str() + (separator == std::wstring::npos ? 0 : separator + 1);
        return file_name_;
    }

    MSTR& GetCurFilePath() override {
        record("Interface::GetCurFilePath");
        file_path_ = state().scene.path.c_str();
        return file_path_;
    }

    BOOL FileSave() override {
        record("Interface::FileSave");
        return save_scene() ? TRUE : FALSE;
    }

    int SaveToFile(const MCHAR* file_name, BOOL clear_need_save_flag, BOOL use_new_file) override {
        record("Interface::SaveToFile", file_name, clear_need_save_flag, use_new_file);
        return file_name != nullptr &&
               save_scene_as(file_name, clear_need_save_flag != FALSE, use_new_file != FALSE);
    }

    IActionManager* GetActionManager() override {
        record("Interface::GetActionManager");
        return state().faults.no_action_manager ? nullptr : &action_manager();
    }

    IMenuManager* GetMenuManager() override {
        record("Interface::GetMenuManager");
        return state().faults.no_menu_manager ? nullptr : &menu_manager();
    }

private:
    MSTR file_name_;
    MSTR file_path_;
};

} // namespace

} // namespace host_sdk

Interface* GetCOREInterface() {
    static host_sdk::CoreInterface* core = ::new host_sdk::CoreInterface;
    return host_sdk::state().faults.no_core_interface ? nullptr : core;
}

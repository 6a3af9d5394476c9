// How the stage and the tests drive the host stand-in. The module under test sees only the host's own
// headers, in include/. Everything runs on one thread. Texts are UTF-16.
#pragma once

#include <windows.h>

#include <string>

#ifdef HOST_STANDIN_BUILD
#define HOST_STANDIN_API __declspec(dllexport)
#else
#define HOST_STANDIN_API __declspec(dllimport)
#endif

namespace host_sdk {

// Gets every call of the module into the host, in order. `name` is the function's name as the host's headers
// spell it ("IMenuManager::RegisterMenu"), `arguments` a readable list of its arguments. False: the host does
// not do the call and answers as it does when it cannot; a call that answers nothing is done all the same.
class CallRecorder {
public:
    virtual ~CallRecorder() = default;
    virtual bool on_call(const char* name, const std::wstring& arguments) = 0;
};

// Runs script text. False: the host reports failure, and `result` is the error text. `is_text` false: the
// script had no text to return.
class ScriptRunner {
public:
    virtual ~ScriptRunner() = default;
    virtual bool run(const std::wstring& command, std::wstring& result, bool& is_text) = 0;
};

// How a string result is tagged on its way through FPValue; the host's own choice is not known for sure.
enum class TextTag { string, filename, tstr };

// Parts of the host that can be missing or fail.
struct Faults {
    bool no_core_interface = false;
    bool no_menu_manager = false;
    bool no_action_manager = false;
    bool no_main_menu_bar = false;
    bool save_as_fails = false;
};

// Back to a host that has just started: no scene, no menus, no tables, no notifications, no faults. Recorder,
// listener, script runner, text tag and main window stay. Deletes the registered tables, which belong to the
// host, and forgets the action callbacks. Call it before the module under test is unloaded.
HOST_STANDIN_API void reset();

HOST_STANDIN_API void set_call_recorder(CallRecorder* recorder);
HOST_STANDIN_API void set_script_runner(ScriptRunner* runner);
HOST_STANDIN_API void set_text_tag(TextTag tag);
HOST_STANDIN_API void set_faults(const Faults& faults);
HOST_STANDIN_API void set_main_window(HWND window);

// The open scene. `path` empty: a scene that was never saved. `needs_save`: it was changed since.
HOST_STANDIN_API void set_scene(const std::wstring& path, bool needs_save);
HOST_STANDIN_API std::wstring scene_path();
HOST_STANDIN_API bool scene_needs_save();

// Calls every handler registered for `code`, as the host does (80: start-up is complete).
HOST_STANDIN_API void broadcast_notification(int code);
HOST_STANDIN_API int notification_handler_count(int code);

// The menu file is what the host keeps of its menus from run to run; menu_file.cpp describes it. `load_menus`
// replaces all menus, as the host does when it starts; that of 2018 does it once more after the plug-ins have
// started.
HOST_STANDIN_API std::wstring save_menus();
HOST_STANDIN_API void load_menus(const std::wstring& menu_file);

// The Windows menu for the frame window. The stand-in owns it and makes a new one at every update of the menu
// bar.
HOST_STANDIN_API HMENU menu_bar();
// Called after every update of the menu bar, for the frame to show it.
HOST_STANDIN_API void set_menu_bar_listener(void (*listener)(void* context), void* context);

// The entries of menu_bar(), one in a line: "Title > Item", "Title > ---".
HOST_STANDIN_API std::wstring describe_menus();

// The entries of menu_bar() that run an action have ids from here on.
constexpr UINT kFirstMenuCommand = 50000;

// Runs the action of a WM_COMMAND of the frame. False when no item has the id, or its table is not active.
HOST_STANDIN_API bool execute_menu_command(UINT id);
// Runs an action by table and command id, as a keyboard shortcut would.
HOST_STANDIN_API bool execute_action(DWORD table_id, int command_id);
HOST_STANDIN_API int active_callback_count(DWORD table_id);
// The name an action context was registered under; empty when it was not.
HOST_STANDIN_API std::wstring action_context_name(DWORD context_id);

// Objects made with the host's operator new and not yet deleted. What the host makes for itself (from a menu
// file, the items of action tables) does not count.
HOST_STANDIN_API long live_heap_objects();

// Spinner interfaces that were handed out and not yet released.
HOST_STANDIN_API int live_spinner_interfaces();

// How many exceptions escaped from the module's handlers and callbacks into the host.
HOST_STANDIN_API long escaped_exceptions();

} // namespace host_sdk

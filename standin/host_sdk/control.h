// The other side of the host stand-in: what the stage and the tests tell it, and what it tells them. The
// module under test never sees this header; it sees the host's own headers in include/. Everything runs on
// one thread. Texts are UTF-16. Pointers handed out stay valid until the next call that changes what they
// describe.
#pragma once

#include <windows.h>

#include <string>

#ifdef HOST_STANDIN_BUILD
#define HOST_STANDIN_API __declspec(dllexport)
#else
#define HOST_STANDIN_API __declspec(dllimport)
#endif

namespace host_sdk {

// Hears of every call that the module makes into the host, in order. `name` is the function's name as the
// host's headers spell it ("IMenuManager::RegisterMenu"), `arguments` a readable list of its arguments.
class CallRecorder {
public:
    virtual ~CallRecorder() = default;
    virtual void on_call(const char* name, const std::wstring& arguments) = 0;
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
    bool save_fails = false;
    bool save_as_fails = false;
};

// Back to a host that was just started: no scene, no menus, no tables, no notifications, no faults. Who
// listens, the script runner, the text tag and the main window stay. Registered tables belong to the host and
// are deleted, action callbacks are only forgotten. Comes before the module under test is unloaded, or not at
// all.
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

// Menus. The menu file is what the host keeps from run to run: titles and items, one text per run.
HOST_STANDIN_API std::wstring save_menus();
HOST_STANDIN_API bool
load_menus(const std::wstring& menu_file); // false: not a menu file; nothing has changed
// Throws the menu bar away and builds it again from the menu file, as the host of 2018 does after start.
HOST_STANDIN_API void rebuild_menu_bar(const std::wstring& menu_file);

// The Windows menu for the frame window; owned by the stand-in; every update of the menu bar makes a new one.
HOST_STANDIN_API HMENU menu_bar();
// Called after every update of the menu bar, so that the frame can show it.
HOST_STANDIN_API void set_menu_bar_listener(void (*listener)(void* context), void* context);

// What menu_bar() holds, as text for tests and transcripts: one line an entry, "Title > Item", "Title > ---".
HOST_STANDIN_API std::wstring describe_menus();

// The entries of menu_bar() that run an action have ids from here on.
constexpr UINT kFirstMenuCommand = 50000;

// Runs the action behind a WM_COMMAND of the frame; false when the id belongs to no item, or its table is not
// active.
HOST_STANDIN_API bool execute_menu_command(UINT id);
// Runs an action by table and command id, as a keyboard shortcut would.
HOST_STANDIN_API bool execute_action(DWORD table_id, int command_id);
HOST_STANDIN_API int active_callback_count(DWORD table_id);
// The name an action context was registered under; empty when it was not.
HOST_STANDIN_API std::wstring action_context_name(DWORD context_id);

// Host-heap balance: objects made with the host's operator new and not yet deleted. The host's own (what it
// builds from a menu file, the items of action tables) do not count.
HOST_STANDIN_API long live_heap_objects();

// Spinner interfaces that were handed out and not yet released.
HOST_STANDIN_API int live_spinner_interfaces();

// How many exceptions came out of the module's handlers and callbacks; each one would have met the host.
HOST_STANDIN_API long escaped_exceptions();

} // namespace host_sdk

// Steps with the host's menus, the scene, the client and files; pictures and expectations.
#include "standin/base/files_win32.h"
#include "standin/base/text.h"
#include "standin/stage/dialog_state.h"
#include "standin/stage/expectations.h"
#include "standin/stage/resource_watch.h"
#include "standin/stage/screenshot.h"
#include "standin/stage/steps.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>

namespace stage {

namespace {

constexpr DWORD kActionTable = 0x45AA4389;

// The texts of the menu's entries by the commands behind them.
struct MenuCommand {
    int command;
    unsigned text;
};
const MenuCommand kMenuCommands[] = {{1497, 6}, {1498, 12}};

std::wstring item_title(HMENU menu, int position) {
    wchar_t title[512] = {};
    ::GetMenuStringW(menu, static_cast<UINT>(position), title, 512, MF_BYPOSITION);
    std::wstring text = title;
    text.erase(std::remove(text.begin(), text.end(), L'&'), text.end());
    return text.substr(0, text.find(L'\t'));
}

struct FoundItem {
    UINT id = 0;
    UINT state = 0;
    bool found = false;
};

FoundItem find_item(HMENU menu, const std::wstring& title) {
    FoundItem item;
    for (int i = 0; menu != nullptr && i < ::GetMenuItemCount(menu) && !item.found; ++i) {
        const HMENU below = ::GetSubMenu(menu, i);
        if (below != nullptr) {
            item = find_item(below, title);
        } else if (!title.empty() && item_title(menu, i) == title) {
            item.id = ::GetMenuItemID(menu, i);
            item.state = ::GetMenuState(menu, static_cast<UINT>(i), MF_BYPOSITION);
            item.found = true;
        }
    }
    return item;
}

// The six characters of archive names in this second: they follow from the time alone.
std::wstring archive_tag(unsigned second) {
    const std::wstring alphabet = L"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    std::srand(second);
    std::wstring tag;
    while (tag.size() < 6) {
        tag += alphabet[static_cast<std::size_t>(std::rand()) % alphabet.size()];
    }
    return tag;
}

} // namespace

void Steps::menu(const Json::Value& arguments) {
    unsigned number = 0;
    for (const MenuCommand& known : kMenuCommands) {
        number = arguments["command"].asInt() == known.command ? known.text : number;
    }
    std::wstring title = run_.module.text(number);
    title.erase(std::remove(title.begin(), title.end(), L'&'), title.end());
    FoundItem item;
    call([&] { item = find_item(::GetMenu(run_.frame.window()), title); });
    if (!item.found) {
        throw StepFailure{"a menu entry with text " + std::to_string(number) + " (" + base::to_utf8(title) +
                              ")",
                          "there is none"};
    }
    if ((item.state & (MF_GRAYED | MF_DISABLED)) != 0 || ::IsWindowEnabled(run_.frame.window()) == FALSE) {
        throw StepFailure{"a menu entry that can be chosen", "the entry or the window is disabled"};
    }
    ::PostMessageW(run_.frame.window(), WM_COMMAND, item.id, 0);
    settle();
}

void Steps::shortcut(const Json::Value& arguments) {
    const int command = arguments["command"].asInt();
    run_.ui->post([command] { host_sdk::execute_action(kActionTable, command); });
    settle();
}

void Steps::picture(HWND window, const std::string& name) {
    picture([window](const std::wstring& file) { return take_screenshot(window, file); }, name);
}

void Steps::picture(const Photograph& take, const std::string& name) {
    bool taken = false;
    const std::wstring file = run_.out_file(base::to_wide(name));
    call([&] { taken = take(file); });
    if (!taken) {
        throw StepFailure{"a picture " + name, "it could not be made"};
    }
    Json::Value entry(Json::objectValue);
    entry["name"] = name;
    entry["place"] = place_;
    run_.transcript.append("screenshots", entry);
}

// Opens the plugin's menu, the last one of the bar, and closes it again. Calls run in the menu's own loop.
void Steps::menu_picture(const std::string& name) {
    const HWND frame = run_.frame.window();
    run_.ui->post([frame] {
        const HMENU bar = ::GetMenu(frame);
        const UINT last = static_cast<UINT>(::GetMenuItemCount(bar) - 1);
        RECT item = {};
        ::GetMenuItemRect(frame, bar, last, &item);
        ::HiliteMenuItem(frame, bar, last, MF_BYPOSITION | MF_HILITE);
        ::TrackPopupMenu(::GetSubMenu(bar, static_cast<int>(last)), TPM_NONOTIFY, item.left, item.bottom, 0,
                         frame, nullptr);
        ::HiliteMenuItem(frame, bar, last, MF_BYPOSITION | MF_UNHILITE);
    });
    const auto take = [frame](const std::wstring& file) {
        const HWND menu = ::FindWindowW(L"#32768", nullptr);
        const bool taken = menu != nullptr && take_menu_screenshot(frame, menu, file);
        ::EndMenu();
        return taken;
    };
    picture(take, name);
    settle();
}

void Steps::screenshot(const Json::Value& arguments) {
    const std::string of = arguments.get("of", "").asString();
    if (of == "menu") {
        menu_picture(arguments["name"].asString());
        return;
    }
    const HWND top = run_.dialogs->top() != nullptr ? run_.dialogs->top() : run_.frame.window();
    const HWND window = of.empty() ? top : run_.dialogs->window(of == "main" ? kMainTemplate : kEditTemplate);
    if (window == nullptr) {
        throw StepFailure{"the window '" + of + "'", "it is not open"};
    }
    picture(window, arguments["name"].asString());
}

void Steps::change_scene(const Json::Value& arguments) {
    std::string problem;
    bool opened = false;
    const Json::Value& analysis =
        arguments.isMember("analysis") ? arguments["analysis"] : run_.scenario["analysis"];
    call([&] { opened = run_.open_scene(arguments["scene"], analysis, problem); });
    if (!opened) {
        throw StepFailure{"another scene", problem};
    }
}

void Steps::client(const Json::Value& arguments) {
    std::string problem;
    if (!run_.start_client(arguments, problem) ||
        !run_.data.write_ini(run_.scenario["data_folder"], run_.port())) {
        throw StepFailure{"another client", problem};
    }
}

void Steps::no_client(const Json::Value&) {
    run_.client.stop();
    run_.data.write_ini(run_.scenario["data_folder"], run_.port());
}

std::wstring Steps::named_file(const Json::Value& arguments) const {
    const bool in_scene = arguments.get("in", "data").asString() == "scene";
    return base::joined(in_scene ? run_.scene_folder() : run_.data.path(),
                        base::to_wide(arguments["name"].asString()));
}

void Steps::write(const Json::Value& arguments) {
    const std::wstring file = named_file(arguments);
    if (!base::write_file_and_folders(file, arguments["text"].asString())) {
        throw StepFailure{"the file written", base::to_utf8(file) + " could not be"};
    }
}

void Steps::remove(const Json::Value& arguments) {
    const std::wstring file = named_file(arguments);
    if ((!base::file_exists(file) && !base::folder_exists(file)) || !base::remove_tree(file)) {
        throw StepFailure{"the file deleted", base::to_utf8(file) + " could not be"};
    }
}

// Opens the file without sharing.
void Steps::lock(const Json::Value& arguments) {
    const std::wstring file = named_file(arguments);
    tarvo::FileHandle handle(::CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                           OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!handle) {
        throw StepFailure{"the file locked", base::to_utf8(file) + " could not be"};
    }
    locks_[file] = std::move(handle);
}

void Steps::unlock(const Json::Value& arguments) {
    if (locks_.erase(named_file(arguments)) == 0) {
        throw StepFailure{"a locked file", "it is not locked"};
    }
}

// Under each name that an archive of this stem can have in the coming seconds.
void Steps::plant_archives(const Json::Value& arguments) {
    const std::wstring start =
        base::joined(run_.data.path(), L"compress\\" + base::to_wide(arguments["stem"].asString()) + L"_");
    const bool as_folder = arguments["as"].asString() == "folder";
    const std::time_t now = std::time(nullptr);
    for (int ahead = 0; ahead < arguments["seconds"].asInt(); ++ahead) {
        const std::wstring name = start + archive_tag(static_cast<unsigned>(now + ahead)) + L".7z";
        const std::wstring file = as_folder ? base::joined(name, L"planted.txt") : name;
        if (!base::write_file_and_folders(file, "planted")) {
            throw StepFailure{"a planted archive", base::to_utf8(file) + " could not be written"};
        }
        ::SetFileAttributesW(file.c_str(), as_folder ? FILE_ATTRIBUTE_NORMAL : FILE_ATTRIBUTE_READONLY);
    }
}

void Steps::fail_next(const Json::Value& arguments) {
    fail_next_call(arguments["function"].asString());
}

// As a user does from the host's menu.
void Steps::run_script(const Json::Value& arguments) {
    const std::wstring file =
        base::joined(base::folder_of(run_.options.scenario), base::to_wide(arguments["name"].asString()));
    bool done = false;
    std::wstring result;
    call([&] {
        bool is_text = false;
        done = run_.scripts.run(L"fileIn @\"" + file + L"\"", result, is_text);
    });
    if (!done) {
        throw StepFailure{"the script run to its end", base::to_utf8(result)};
    }
}

void Steps::restart(const Json::Value&) {
    if (run_.dialogs->top() != nullptr) {
        throw StepFailure{"no open dialog", "one is open"};
    }
    std::string problem;
    bool started = false;
    call([&] {
        run_.plugin.stop();
        started = run_.plugin.start(false, problem);
    });
    if (!started) {
        throw StepFailure{"the plugin started again", problem};
    }
    settle();
}

void Steps::expect(const Json::Value& arguments) {
    call([this] {
        for (int template_id : {kMainTemplate, kEditTemplate}) {
            const HWND window = run_.dialogs->window(template_id);
            if (window != nullptr) {
                run_.transcript.set("dialog_state", dialog_name(template_id), read_dialog_state(window));
            }
        }
        run_.transcript.set("menus", menu_lines());
        run_.transcript.set("leaks", open_resources());
    });
    run_.judge(arguments, place_);
}

} // namespace stage

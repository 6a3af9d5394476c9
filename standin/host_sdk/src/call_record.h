// Reports the plug-in's calls to the recorder, with their arguments as readable text.
#pragma once

#include "host_state.h"

#include "imenus.h"

#include <string>

namespace host_sdk {

std::wstring show(const wchar_t* text);
std::wstring show(const WStr& text);
std::wstring show(int value);
std::wstring show(DWORD value); // ids: hexadecimal
std::wstring show(float value);
std::wstring show(IMenu* menu);         // its title
std::wstring show(IMenuItem* item);     // its title, or what it is
std::wstring show(ActionTable* table);  // its name
std::wstring show(const void* pointer); // only whether there is one

inline void join(std::wstring&) {}

template <class First, class... Rest>
void join(std::wstring& list, const First& first, const Rest&... rest) {
    list += (list.empty() ? L"" : L", ") + show(first);
    join(list, rest...);
}

bool report(const char* name, const std::wstring& arguments);

// False: the host refuses the call.
template <class... Arguments>
bool record(const char* name, const Arguments&... arguments) {
    if (state().recorder == nullptr) {
        return true;
    }
    std::wstring list;
    join(list, arguments...);
    return report(name, list);
}

} // namespace host_sdk

// The finished module, loaded from the folder of the test program, and its exports. Unloaded at the end.
#pragma once

#include <max.h>

#include <gtest/gtest.h>
#include <guplib.h>
#include <iparamb2.h>
#include <windows.h>

#include <string>

const wchar_t kModuleName[] = L"TarvoRendering.gup";

inline std::wstring program_folder() {
    wchar_t path[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring full = path;
    return full.substr(0, full.rfind(L'\\') + 1);
}

class LoadedModule {
public:
    explicit LoadedModule(const std::wstring& path = program_folder() + kModuleName)
        : handle_(::LoadLibraryW(path.c_str())) {
        EXPECT_NE(nullptr, handle_) << "error " << ::GetLastError();
    }
    ~LoadedModule() { ::FreeLibrary(handle_); }
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;

    HMODULE handle() const { return handle_; }

    FARPROC address(const char* name) const { return ::GetProcAddress(handle_, name); }

    const MCHAR* description() const { return call<const MCHAR*()>("LibDescription")(); }
    int number_of_classes() const { return call<int()>("LibNumberClasses")(); }
    ClassDesc* class_at(int index) const { return call<ClassDesc*(int)>("LibClassDesc")(index); }
    ULONG version() const { return call<ULONG()>("LibVersion")(); }
    int initialize() const { return call<int()>("LibInitialize")(); }
    int shut_down() const { return call<int()>("LibShutdown")(); }

    GUP* create_plugin() const { return static_cast<GUP*>(class_at(0)->Create()); }

    // A text of the module's string table in the language of this process.
    std::wstring text(UINT id) const {
        wchar_t buffer[1024] = {};
        const int length = ::LoadStringW(handle_, id, buffer, 1024);
        return std::wstring(buffer, static_cast<std::size_t>(length));
    }

private:
    template <class Function>
    Function* call(const char* name) const {
        return reinterpret_cast<Function*>(address(name));
    }

    HMODULE handle_;
};

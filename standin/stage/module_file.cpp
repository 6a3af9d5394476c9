#include "standin/stage/module_file.h"

#include "standin/base/text.h"
#include "standin/host_sdk/control.h"

#include "guplib.h"

namespace stage {

namespace {

constexpr unsigned long kHostLibraryVersion = 0x52083400; // 3ds Max 2019
constexpr unsigned kHighestTextNumber = 1023;
constexpr int kSystemStartup = 80;

template <class Function>
Function exported(HMODULE module, const char* name) {
    return reinterpret_cast<Function>(::GetProcAddress(module, name));
}

std::string version_text(DWORD high, DWORD low) {
    return std::to_string(HIWORD(high)) + "." + std::to_string(LOWORD(high)) + "." +
           std::to_string(HIWORD(low)) + "." + std::to_string(LOWORD(low));
}

// From the module's version resource; empty when it has none.
std::string file_version(const std::wstring& path) {
    DWORD ignored = 0;
    const DWORD size = ::GetFileVersionInfoSizeW(path.c_str(), &ignored);
    std::vector<BYTE> block(size);
    void* found = nullptr;
    UINT length = 0;
    if (size == 0 || ::GetFileVersionInfoW(path.c_str(), 0, size, block.data()) == FALSE ||
        ::VerQueryValueW(block.data(), L"\\", &found, &length) == FALSE ||
        length < sizeof(VS_FIXEDFILEINFO)) {
        return std::string();
    }
    const auto* info = static_cast<const VS_FIXEDFILEINFO*>(found);
    return version_text(info->dwFileVersionMS, info->dwFileVersionLS);
}

const char* const kRequiredExports[] = {"LibDescription", "LibNumberClasses", "LibClassDesc", "LibVersion"};

} // namespace

bool ModuleFile::load(const std::wstring& path, std::string& problem) {
    path_ = path;
    handle_ = ::LoadLibraryW(path.c_str());
    if (handle_ == nullptr) {
        problem = "the module '" + base::to_utf8(path) + "' cannot be loaded (error " +
                  std::to_string(::GetLastError()) + ")";
        return false;
    }
    for (const char* name : kRequiredExports) {
        if (::GetProcAddress(handle_, name) == nullptr) {
            problem = "the module does not export " + std::string(name);
            return false;
        }
    }
    if (exported<ULONG (*)()>(handle_, "LibVersion")() != kHostLibraryVersion) {
        problem = "the module's LibVersion is not the host's";
        return false;
    }
    const auto initialize = exported<int (*)()>(handle_, "LibInitialize");
    if (initialize != nullptr && initialize() == 0) {
        problem = "the module's LibInitialize refused";
        return false;
    }
    read_texts();
    return true;
}

void ModuleFile::unload() {
    if (handle_ == nullptr) {
        return;
    }
    const auto shut_down = exported<int (*)()>(handle_, "LibShutdown");
    if (shut_down != nullptr) {
        shut_down();
    }
    ::FreeLibrary(handle_);
    handle_ = nullptr;
}

ClassDesc* ModuleFile::class_descriptor() const {
    return exported<ClassDesc* (*)(int)>(handle_, "LibClassDesc")(0);
}

void ModuleFile::read_texts() {
    for (unsigned number = 1; number <= kHighestTextNumber; ++number) {
        const wchar_t* text = nullptr; // with a length of 0 the call gives a pointer into the resource
        const int length = ::LoadStringW(handle_, number, reinterpret_cast<wchar_t*>(&text), 0);
        if (length > 0) {
            texts_[number] = std::wstring(text, static_cast<std::size_t>(length));
        }
    }
}

std::wstring ModuleFile::text(unsigned number) const {
    const auto found = texts_.find(number);
    return found == texts_.end() ? std::wstring() : found->second;
}

std::vector<unsigned> ModuleFile::numbers_of(const std::wstring& text) const {
    constexpr std::size_t look_up_limit = 255; // the plugin's look-up buffer holds no more
    std::vector<unsigned> numbers;
    for (const auto& entry : texts_) {
        if (!text.empty() && entry.second.compare(0, look_up_limit, text, 0, look_up_limit) == 0) {
            numbers.push_back(entry.first);
        }
    }
    return numbers;
}

Json::Value ModuleFile::texts() const {
    Json::Value list(Json::objectValue);
    for (const auto& entry : texts_) {
        list[std::to_string(entry.first)] = base::to_utf8(entry.second);
    }
    return list;
}

Json::Value ModuleFile::description() const {
    Json::Value value(Json::objectValue);
    value["file"] = base::to_utf8(path_);
    value["version"] = file_version(path_);
    ClassDesc* descriptor = class_descriptor();
    const MCHAR* name = descriptor == nullptr ? nullptr : descriptor->ClassName();
    value["class"] = base::to_utf8(name == nullptr ? L"" : name);
    return value;
}

void PluginLife::record(const char* event, long long result) {
    Json::Value entry(Json::objectValue);
    entry["event"] = event;
    entry["result"] = static_cast<Json::Int64>(result);
    transcript_.append("plugin", entry);
}

bool PluginLife::start(bool rebuild_menu_bar, std::string& problem) {
    ClassDesc* descriptor = module_.class_descriptor();
    if (descriptor == nullptr || descriptor->SuperClassID() != GUP_CLASS_ID) {
        problem = "the module has no utility-plugin class";
        return false;
    }
    plugin_ = static_cast<GUP*>(descriptor->Create());
    record("Create", plugin_ != nullptr ? 1 : 0);
    if (plugin_ == nullptr) {
        problem = "the class descriptor created no plugin object";
        return false;
    }
    const DWORD kept = plugin_->Start();
    record("Start", static_cast<long long>(kept));
    if (rebuild_menu_bar) {
        host_sdk::load_menus(host_sdk::save_menus());
    }
    if (kept == GUPRESULT_KEEP) {
        host_sdk::broadcast_notification(kSystemStartup);
    }
    return true;
}

void PluginLife::stop() {
    if (plugin_ == nullptr) {
        return;
    }
    plugin_->Stop();
    record("Stop", host_sdk::notification_handler_count(kSystemStartup));
    plugin_->DeleteThis();
    record("DeleteThis", host_sdk::live_heap_objects());
    plugin_ = nullptr;
}

Json::Value menu_lines() {
    Json::Value lines(Json::arrayValue);
    for (const std::string& line : base::lines_of(base::to_utf8(host_sdk::describe_menus()))) {
        lines.append(line);
    }
    return lines;
}

} // namespace stage

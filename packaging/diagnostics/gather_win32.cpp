#include "packaging/diagnostics/gather_win32.h"

#include "common/platform.h"
#include "common/text.h"
#include "packaging/diagnostics/client_win32.h"
#include "packaging/diagnostics/files_win32.h"
#include "packaging/diagnostics/installed_win32.h"
#include "packaging/diagnostics/last_submission_win32.h"
#include "packaging/diagnostics/programs_win32.h"
#include "packaging/diagnostics/wide_text_win32.h"

#include <windows.h>

#include <algorithm>

#include <shlobj.h>

namespace diagnostics {

namespace {

const wchar_t* const kVirusScripts[] = {L"TarvoAntivirusAdsl_UTF8.ms", L"TarvoAntivirusAlc_UTF8.ms",
                                        L"TarvoAntivirusCrp_UTF8.ms"};
constexpr unsigned long kScriptBytes = 1024 * 1024;
constexpr const wchar_t* kHostKey = L"SOFTWARE\\Autodesk\\3dsMax\\21.0";

std::wstring with_backslashes(std::wstring path) {
    std::replace(path.begin(), path.end(), L'/', L'\\');
    return path;
}

// GetVersionEx answers with the version the program was made for.
std::string windows_version() {
    using RtlGetVersion = LONG(WINAPI*)(OSVERSIONINFOW*);
    const auto get_version = reinterpret_cast<RtlGetVersion>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    if (get_version == nullptr || get_version(&version) != 0) {
        return "of unknown version";
    }
    return std::to_string(version.dwMajorVersion) + "." + std::to_string(version.dwMinorVersion) + "." +
           std::to_string(version.dwBuildNumber);
}

std::string host_folder() {
    wchar_t folder[MAX_PATH] = {};
    DWORD size = sizeof folder - sizeof(wchar_t);
    const LSTATUS status =
        ::RegGetValueW(HKEY_LOCAL_MACHINE, kHostKey, L"Installdir", RRF_RT_REG_SZ, nullptr, folder, &size);
    return status == ERROR_SUCCESS ? to_utf8(folder) : std::string();
}

// The host keeps beside the .mse a copy of what it was made from. Without one the times have to do.
bool is_stale(const std::wstring& source, const Facts& facts) {
    const std::wstring stamp = source + L"e.source";
    if (!file_fact(stamp).exists) {
        return facts.analysis_encrypted.written < facts.analysis_source.written;
    }
    return file_tail(stamp, kScriptBytes) != file_tail(source, kScriptBytes);
}

void gather_scripts(const Places& places, Facts& facts) {
    const std::wstring source = places.data + L"\\script\\MaxRenderGlobalsParser.ms";
    facts.analysis_source = file_fact(source);
    facts.analysis_encrypted = file_fact(source + L"e");
    facts.analysis_is_stale = is_stale(source, facts);
    for (const wchar_t* name : kVirusScripts) {
        facts.virus_scripts.push_back(file_fact(places.data + L"\\script\\" + name));
    }
}

void gather_settings(const Places& places, Facts& facts) {
    const auto value = [&places](const wchar_t* key) {
        return tarvo::ReadProfileText(places.ini, tarvo::kIniSection, key);
    };
    facts.ini = file_fact(places.ini);
    const std::wstring ip = value(tarvo::kIniKeyIp);
    facts.ip = to_utf8(ip);
    facts.port_text = to_utf8(value(tarvo::kIniKeyPort));
    facts.port = tarvo::DecimalInt(facts.port_text);
    facts.lower_version = to_utf8(value(tarvo::kIniKeyLowerVersion));
    if (!ip.empty() && facts.port > 0 && facts.port <= 0xFFFF) {
        facts.client = ask_client(ip, facts.port);
    }
}

// The command line of 7-Zip begins with the data folder's path, unquoted: it is tried up to the blank first.
std::vector<std::wstring> places_in_the_way(const Places& places) {
    const std::wstring up_to_blank = places.data.substr(0, places.data.rfind(L' '));
    return {up_to_blank + L".exe", up_to_blank};
}

void gather_seven_zip(const Places& places, Facts& facts) {
    const std::wstring program = places.data + L"\\7-Zip\\7z.exe";
    facts.seven_zip = file_fact(program);
    facts.seven_zip_library = file_fact(places.data + L"\\7-Zip\\7z.dll");
    if (facts.seven_zip.exists) {
        facts.seven_zip_run = try_seven_zip(program);
    }
    for (const std::wstring& path : places_in_the_way(places)) {
        if (file_fact(path).exists) {
            facts.in_the_way.push_back(to_utf8(path));
        }
    }
}

std::wstring log_folder(const Places& places) {
    return places.data + L"\\log" +
           tarvo::ReadProfileText(places.ini, tarvo::kIniSection, tarvo::kIniKeyLowerVersion);
}

void gather_rights(const Places& places, Facts& facts) {
    for (const wchar_t* folder : {L"\\json", L"\\compress"}) {
        facts.written_folders.push_back(folder_fact(places.data + folder));
    }
    // Without an ini file the plugin stops before it writes much; the client decides what the folder is
    // called.
    if (facts.ini.exists) {
        facts.written_folders.push_back(folder_fact(log_folder(places)));
    }
    std::vector<ClosedPlace> closed = closed_places(places.data, places.package);
    for (const wchar_t* name : kVirusScripts) {
        closed.push_back({places.data + L"\\script\\" + name, Kind::file});
    }
    for (const ClosedPlace& place : closed) {
        if (changeable_by_all(place)) {
            facts.open_to_all.push_back(to_utf8(place.path));
        }
    }
}

std::wstring environment(const wchar_t* name) {
    wchar_t value[MAX_PATH] = {};
    return ::GetEnvironmentVariableW(name, value, MAX_PATH) < MAX_PATH ? value : L"";
}

} // namespace

Places find_places() {
    const std::wstring base = tarvo::CommonAppDataFolder();
    Places places;
    places.data = with_backslashes(base + tarvo::kPluginFolder);
    places.package = base + L"\\Autodesk\\ApplicationPlugins\\TarvoRendering";
    places.ini = with_backslashes(base + tarvo::kPluginFolder + tarvo::kIniFile);
    return places;
}

Facts gather(const Places& places, const std::function<void()>& before_test) {
    Facts facts;
    facts.windows = windows_version();
    facts.host = host_folder();
    facts.data_folder = to_utf8(places.data);
    const DWORD attributes = ::GetFileAttributesW(places.data.c_str());
    facts.has_data_folder =
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    const std::wstring module = places.package + L"\\Contents\\TarvoRendering.gup";
    facts.module = file_fact(module);
    facts.module_version = file_version(module);
    facts.module_image = module_image(module);
    facts.installed =
        installed_files(tarvo::CommonAppDataFolder(), places.package + L"\\Diagnostics\\manifest.txt");
    facts.package_contents = file_fact(places.package + L"\\PackageContents.xml");
    facts.prepare_script = file_fact(places.package + L"\\Contents\\PrepareAnalysisScript.ms");
    gather_scripts(places, facts);
    gather_settings(places, facts);
    gather_seven_zip(places, facts);
    gather_rights(places, facts);
    facts.last = last_submission(places.data, log_folder(places), before_test);
    facts.free_bytes = free_bytes(facts.has_data_folder ? places.data : tarvo::CommonAppDataFolder());
    return facts;
}

Secrets find_secrets(const Places& places) {
    Secrets secrets;
    wchar_t name[256] = {};
    DWORD length = 256;
    if (::GetUserNameW(name, &length) != FALSE) {
        secrets.user_names.push_back(to_utf8(name));
    }
    // Who else has a profile here, and what this user's is called when it is not the name. These folders
    // belong to nobody.
    std::wstring profiles = environment(L"USERPROFILE");
    profiles.resize(std::min(profiles.rfind(L'\\'), profiles.size()));
    for (const Entry& entry : entries_below(profiles.empty() ? L"C:\\Users" : profiles, 1)) {
        const std::wstring folder = entry.path.substr(entry.path.rfind(L'\\') + 1);
        if (entry.is_folder && folder != L"Public" && folder != L"Default" && folder != L"All Users" &&
            folder != L"Default User") {
            secrets.user_names.push_back(to_utf8(folder));
        }
    }
    length = 256;
    if (::GetComputerNameW(name, &length) != FALSE) {
        secrets.computer = to_utf8(name);
    }
    secrets.own_folders = {to_utf8(places.data), to_utf8(places.package)};
    for (const std::wstring& path : places_in_the_way(places)) {
        secrets.named_paths.push_back(to_utf8(path));
    }
    const std::string host = host_folder();
    secrets.named_paths.push_back(host.substr(0, host.find_last_not_of("\\/") + 1));
    return secrets;
}

} // namespace diagnostics

// Feeds any text as the plugin's ini file to the reading of the configuration and to what the diagnostics
// make of it. The ini file itself is read by Windows; a double reads it here by the same rules.
#include "packaging/diagnostics/findings.h"
#include "scene/scene_data.h"
#include "standin/base/text.h"
#include "submit/plugin_config.h"
#include "tests/fuzz/support/outside.h"
#include "tests/fuzz/support/rule.h"

#include "common/platform.h"
#include "common/text.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <tuple>

namespace {

using fuzz::outside;
using fuzz::rule;
using tarvo::PluginConfig;

constexpr int kLargestPort = 65535;

// What a port's text means: blanks, a sign, digits; the limit when there are too many of them.
std::int32_t port_of(const std::wstring& text) {
    using Limits = std::numeric_limits<std::int32_t>;
    auto at = std::find_if(text.begin(), text.end(),
                           [](wchar_t unit) { return unit != L' ' && (unit < 9 || unit > 13); });
    const bool negative = at != text.end() && *at == L'-';
    at += at != text.end() && (*at == L'-' || *at == L'+') ? 1 : 0;
    double number = 0; // exact as far as it matters
    for (; at != text.end() && *at >= L'0' && *at <= L'9'; ++at) {
        number = number * 10 + (*at - L'0');
    }
    number = negative ? -number : number;
    return number > Limits::max()   ? Limits::max()
           : number < Limits::min() ? Limits::min()
                                    : static_cast<std::int32_t>(number);
}

auto all_of(const PluginConfig& config) {
    return std::tie(config.clientIp, config.clientPort, config.jsonPath, config.sevenZipExe,
                    config.compressDir, config.lowerVersion, config.sceneFile, config.archivePath,
                    config.packArguments, config.analysisScript, config.antivirusAdslScript,
                    config.antivirusAlcScript, config.antivirusCrpScript);
}

void load(PluginConfig& config) {
    static tarvo::SceneData scene;
    outside().forget();
    rule(tarvo::LoadClientConfiguration(scene, config), "the configuration is always loaded");
    rule(outside().lines.size() == 1 &&
             outside().lines.front().text == "Get client infomation successfully." &&
             outside().lines.front().level == "INFO" && outside().boxes.empty(),
         "loading leaves its one line and no box");
}

std::wstring value_of(const wchar_t* key) {
    return tarvo::ReadProfileText(L"C:\\ProgramData/Tarvo Rendering/script/qfx_plugin.ini", L"general", key);
}

void check_paths(const PluginConfig& config) {
    const std::wstring folder = L"C:\\ProgramData/Tarvo Rendering";
    rule(config.jsonPath == folder + L"/json" && config.sevenZipExe == folder + L"/7-Zip/7z.exe" &&
             config.compressDir == folder + L"/compress" &&
             config.analysisScript == folder + L"/script/MaxRenderGlobalsParser.mse" &&
             config.antivirusAdslScript == folder + L"/script/TarvoAntivirusAdsl_UTF8.ms" &&
             config.antivirusAlcScript == folder + L"/script/TarvoAntivirusAlc_UTF8.ms" &&
             config.antivirusCrpScript == folder + L"/script/TarvoAntivirusCrp_UTF8.ms",
         "the ini file moves no folder and no script");
    rule(config.sceneFile.empty() && config.archivePath.empty() && config.packArguments.empty(),
         "the ini file names no scene");
}

bool is_about(const diagnostics::Finding& finding, diagnostics::Message message) {
    return finding.severity == diagnostics::Severity::problem && finding.what.message == message;
}

void check_diagnostics(const PluginConfig& config, bool with_summary) {
    using diagnostics::Message;
    diagnostics::Facts facts;
    facts.has_data_folder = true;
    facts.ini.exists = true;
    facts.ip = base::to_utf8(config.clientIp);
    facts.port_text = base::to_utf8(value_of(L"port"));
    facts.port = config.clientPort;
    facts.lower_version = base::to_utf8(config.lowerVersion);
    facts.module_version = base::to_utf8(tarvo::kPluginVersion);
    diagnostics::Findings findings;
    diagnostics::judge_client(facts, findings);
    const auto found = [&findings](Message message) {
        return std::any_of(findings.list().begin(), findings.list().end(),
                           [message](const diagnostics::Finding& each) { return is_about(each, message); });
    };
    rule(found(Message::ip_missing) == config.clientIp.empty(), "a missing address is found");
    rule(found(Message::port_unusable) == (config.clientPort < 1 || config.clientPort > kLargestPort),
         "a port that cannot be one is found");
    rule(found(Message::lower_version_missing) == config.lowerVersion.empty(), "a missing version is found");
    const bool ascii = std::all_of(config.lowerVersion.begin(), config.lowerVersion.end(),
                                   [](wchar_t unit) { return unit < 0x80; });
    rule(!ascii || config.lowerVersion.empty() ||
             found(Message::version_too_low) == !tarvo::IsVersionAccepted(config.lowerVersion),
         "the diagnostics and the plugin agree about the version");
    for (const diagnostics::Language language :
         {diagnostics::Language::english, diagnostics::Language::chinese}) {
        rule(!with_summary || base::is_utf8(diagnostics::summary_text(findings.list(), language)),
             "a summary is UTF-8");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    outside().ini = base::to_wide(std::string(reinterpret_cast<const char*>(data), size));
    PluginConfig config;
    load(config);
    check_paths(config);
    rule(config.clientIp == value_of(L"ip") && config.lowerVersion == value_of(L"lowerversion"),
         "address and version are taken as they are");
    rule(config.clientPort == port_of(value_of(L"port")), "a port is its leading digits");
    PluginConfig again = config;
    load(again);
    rule(all_of(config) == all_of(again), "a second load changes nothing");
    check_diagnostics(config, fuzz::one_in(8, data, size));
    return 0;
}

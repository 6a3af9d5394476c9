// Writing the submit document against the library calls it cannot do without, and packing against the archive
// program called directly.
#include "bench/harness.h"
#include "bench/measurements.h"
#include "common/json_text.h"
#include "common/message_box.h"
#include "common/platform.h"
#include "common/text.h"
#include "common/win32_handles.h"
#include "scene/scene_data.h"
#include "submit/plugin_config.h"
#include "submit/scene_archive.h"
#include "submit/submit_document.h"
#include "tests/support/wide_file.h"

#include <json/json.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace {

using tarvo_bench::report;

void report_ratio(const std::string& name, const tarvo_bench::Ratio& time, double limit) {
    report(name, time.ratio(), limit);
    std::printf("  %.2f s against %.2f s\n", time.subject_seconds, time.floor_seconds);
}

// The least that makes the same file: the analysis parsed, the finished document styled, the file written.
void write_alone(const std::string& analysis, const Json::Value& document, const std::wstring& file) {
    Json::Value root;
    Json::Reader reader;
    reader.parse(analysis, root);
    Json::StyledWriter writer;
    support::write_wide_file(file, writer.write(document));
}

void measure_document() {
    const std::string text = tarvo_bench::sample_analysis(100000, 10000);
    tarvo::SceneData scene;
    std::wstring wide = tarvo::Utf8ToWide(text);
    scene.set_analysis_text(wide);
    scene.parse_analysis();
    for (auto& camera : scene.cameras()) {
        camera.second.checked = true;
    }
    tarvo::PluginConfig loaded;
    tarvo::LoadClientConfiguration(scene, loaded);
    loaded.sceneFile = "C:\\scenes\\big.max";
    std::wstring file;
    const auto write_document = [&] {
        tarvo::PluginConfig config = loaded;
        std::string body;
        tarvo::WriteSubmitDocument(scene, nullptr, config, L"bench", body);
        file = config.jsonPath;
    };
    write_document();
    Json::Value document;
    tarvo::ParseJson(support::read_wide_file(file), document);
    const std::wstring bare_file = file + L".bare";
    const tarvo_bench::Ratio time =
        tarvo_bench::compare(9, write_document, [&] { write_alone(text, document, bare_file); });
    report_ratio("submit document / parse, styled write, file; 100,000 files, 10,000 cameras", time, 1.25);
    if (support::read_wide_file(file) != support::read_wide_file(bare_file)) {
        std::printf("  the two files differ: the measurement compares different work\n");
    }
    ::_wremove(file.c_str());
    ::_wremove(bare_file.c_str());
}

bool install_seven_zip(const std::wstring& program) {
    const std::wstring folder = program.substr(0, program.rfind(L'/') + 1);
    tarvo::CreateFolder(folder);
    const char* source = std::getenv("TARVO_SEVEN_ZIP");
    for (const wchar_t* name : {L"7z.exe", L"7z.dll"}) {
        if (source != nullptr) {
            ::CopyFileW((tarvo::Utf8ToWide(source) + L"\\" + name).c_str(), (folder + name).c_str(), FALSE);
        }
        if (!tarvo::PathExists(folder + name)) {
            return false;
        }
    }
    return true;
}

// Bytes that pack a little, as a scene's do.
void write_scene(const std::wstring& file, std::size_t size) {
    std::string content(size, '\0');
    unsigned state = 12345;
    for (std::size_t i = 0; i < size; ++i) {
        state = state * 1664525u + 1013904223u;
        content[i] = static_cast<char>((i / 64) % 2 == 0 ? state >> 24 : i >> 12);
    }
    support::write_wide_file(file, content);
}

void pack_directly(const tarvo::PluginConfig& config) {
    const std::wstring text = L"\"" + config.sevenZipExe + L"\"" + tarvo::LocaleToWide(config.packArguments);
    std::vector<wchar_t> line(text.c_str(), text.c_str() + text.size() + 1);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION information = {};
    if (::CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr,
                         &startup, &information) != FALSE) {
        const tarvo::KernelHandle thread(information.hThread);
        const tarvo::KernelHandle process(information.hProcess);
        ::WaitForSingleObject(process.get(), INFINITE);
    }
}

void measure_packing() {
    constexpr std::size_t kSceneSize = 60 * 1024 * 1024;
    tarvo::SceneData scene;
    tarvo::PluginConfig config;
    tarvo::LoadClientConfiguration(scene, config);
    if (!install_seven_zip(config.sevenZipExe)) {
        std::printf("packing: not measured, the 7-Zip program is not there (TARVO_SEVEN_ZIP)\n");
        return;
    }
    wchar_t temporary[MAX_PATH] = {};
    ::GetTempPathW(MAX_PATH, temporary);
    const std::wstring scene_file = std::wstring(temporary) + L"tarvo bench.max";
    write_scene(scene_file, kSceneSize);
    config.sceneFile = tarvo::WideToUtf8(scene_file);
    std::wstring archive;
    const auto prepare = [&] {
        tarvo::PrepareSceneArchive(scene, config.sceneFile, std::string(), std::wstring(), config);
        archive = tarvo::Utf8ToWide(config.archivePath);
    };
    // An archive that is there would be added to.
    const auto remove_archive = [&] { ::_wremove(archive.c_str()); };
    const auto pack = [&] {
        prepare();
        tarvo::RunSevenZip(scene, config.sceneFile, config);
        remove_archive();
    };
    prepare();
    const tarvo_bench::Ratio time = tarvo_bench::compare(5, pack, [&] {
        pack_directly(config);
        if (!tarvo::PathExists(archive)) {
            std::printf("  the archive program made no archive\n");
        }
        remove_archive();
    });
    report_ratio("packing / the archive program called directly, 60 MB", time, 1.05);
    ::_wremove(scene_file.c_str());
}

} // namespace

void tarvo_bench::measure_submit() {
    measure_document();
    measure_packing();
}

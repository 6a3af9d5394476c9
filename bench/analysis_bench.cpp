// The analysis reader against the bare parse of the same bytes, and a log line against the bare stream calls.
#include "bench/harness.h"
#include "bench/measurements.h"
#include "common/json_text.h"
#include "common/logger.h"
#include "common/text.h"
#include "scene/scene_data.h"
#include "tests/support/test_folder.h"

#include <json/json.h>

#include <cstdio>
#include <fstream>

namespace {

using tarvo_bench::report;

void measure_reader() {
    const std::string text = tarvo_bench::sample_analysis(100000, 10000);
    tarvo::SceneData scene;
    std::wstring wide = tarvo::Utf8ToWide(text);
    scene.set_analysis_text(wide);
    const tarvo_bench::PairedRatio time = tarvo_bench::compare_pairs(
        75, 0.02, [&] { scene.parse_analysis(); }, [&] { tarvo_bench::parse_alone(text); });
    report("parse_analysis / Json::Reader::parse, 100,000 files, 10,000 cameras", time, 1.25);
}

// The floor is what has to be there in any case: the store's wide text and the parsed tree.
void measure_memory() {
    const std::string text = tarvo_bench::sample_analysis(100000, 10000);
    std::size_t tree = 0;
    {
        const std::size_t before = tarvo_bench::live_bytes();
        Json::Value root;
        tarvo::ParseJson(text, root);
        tree = tarvo_bench::live_bytes() - before;
    }
    const std::size_t before = tarvo_bench::live_bytes();
    tarvo::SceneData scene;
    std::wstring wide = tarvo::Utf8ToWide(text);
    const std::size_t floor = tree + wide.size() * sizeof(wchar_t);
    scene.set_analysis_text(wide);
    tarvo_bench::reset_peak();
    scene.parse_analysis();
    const double peak = static_cast<double>(tarvo_bench::peak_bytes() - before);
    report("parse_analysis, peak memory / parsed tree and text", peak / static_cast<double>(floor), 1.3);
}

void measure_log() {
    constexpr int kLines = 40; // a few milliseconds: short against the machine's bursts of other work
    constexpr int kMostPairs = 1500;
    constexpr double kPrecision = 0.01;
    const std::string message = "Update camera table successfully.";
    const std::string bare_file = support::log_file("bench_bare");
    tarvo::Logger log("bench_log", 5, 2, 0);
    std::fstream bare(bare_file, std::ios::out | std::ios::app);
    const auto write_log = [&] {
        for (int line = 0; line < kLines; ++line) {
            log.Write(message, "INFO");
        }
    };
    const auto write_bare = [&] {
        for (int line = 0; line < kLines; ++line) {
            bare << "2024-03-07 09:05:02:045 [INFO] " << message << std::endl;
            const auto position = bare.tellp();
            bare.seekp(0, std::ios::end);
            bare.seekp(position);
        }
    };
    report("log line / bare stream write, flush and two seeks",
           tarvo_bench::compare_pairs(kMostPairs, kPrecision, write_log, write_bare), 1.3);
    bare.close();
    std::remove(bare_file.c_str());
    std::remove(support::log_file("bench_log").c_str());
}

} // namespace

void tarvo_bench::measure_analysis() {
    measure_reader();
    measure_memory();
    measure_log();
}

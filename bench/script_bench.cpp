// How the time of the shipped analysis script grows with the scene, in the stand-in's script language; one
// sort of as many names by a function of the script stands beside it.
#include "bench/harness.h"
#include "bench/measurements.h"
#include "standin/maxscript_host/scene_library.h"
#include "tests/support/memory_files.h"
#include "tests/support/test_folder.h"

#include <cstdio>

namespace {

constexpr const char16_t* kScript = u"C:\\MaxRenderGlobalsParser.ms";

class Scene : private maxscript::Listener {
public:
    // One file in ten is missing; there are ten files for each camera.
    explicit Scene(int count) : names_(count) {
        const std::string folder = support::test_data_folder() + "/../../scripts/";
        files_.put(kScript, support::read_file(folder + "MaxRenderGlobalsParser.ms"));
        for (int i = 0; i < count / 10; ++i) {
            host_.model.cameras.push_back(L"Camera" + std::to_wstring(i));
        }
        for (int i = 0; i < count; ++i) {
            const std::wstring path = L"D:\\\u5BA2\u5385\\project " + std::to_wstring(i % 97) + L"\\map" +
                                      std::to_wstring(i) + L".png";
            const bool exists = i % 10 != 0;
            host_.model.references.push_back({L"Bitmap", path, exists ? path : std::wstring()});
            if (exists) {
                files_.put(maxscript::text_from_wide(path), "content");
            }
        }
    }

    // The length of the answer.
    std::size_t analyse() {
        return text(u"fileIn @\"" + maxscript::Text(kScript) + u"\"\ngMax.analysis \"\" \"\"").size();
    }

    void sort_names() {
        const maxscript::Text count = maxscript::text_from_utf8(std::to_string(names_));
        text(u"(fn order a b = (if a < b then -1 else if a > b then 1 else 0)\n"
             u"local names = for i = 1 to " +
             count +
             u" collect \"map\" + (bit.and (i * 40503) 0xFFFFF) as string + \".png\"\nqsort names "
             u"order\n\"\")");
    }

private:
    maxscript::Text text(const maxscript::Text& source) {
        maxscript::Environment environment;
        environment.files = &files_;
        environment.listener = this;
        maxscript::Interpreter interpreter(environment);
        maxscript_host::install_scene_library(interpreter, host_);
        return interpreter.run(source, u"").as_string().text;
    }
    void write(const maxscript::Text&) override {}

    int names_;
    maxscript_host::SceneHost host_;
    support::MemoryFiles files_;
};

} // namespace

void tarvo_bench::measure_script() {
    Scene small(10000);
    Scene large(100000);
    if (large.analyse() < 100000 || small.analyse() < 10000) {
        std::printf("analysis script: not measured, TARVO_TEST_DATA does not lead to it\n");
        return;
    }
    const double small_seconds = best_seconds(9, [&] { small.analyse(); });
    const double large_seconds = best_seconds(5, [&] { large.analyse(); });
    const double sort =
        best_seconds(5, [&] { large.sort_names(); }) / best_seconds(9, [&] { small.sort_names(); });
    std::printf("analysis script: %.2f s for 10,000 files and 1,000 cameras, %.2f s for ten times as many, "
                "%.1f times\n",
                small_seconds, large_seconds, large_seconds / small_seconds);
    report("analysis script, growth of time for ten times the files / that of one sort of their names",
           large_seconds / small_seconds / sort, 1.0);
}

// How the analysis reader's time grows with its input; the library's own growth stands beside it.
#include "bench/harness.h"
#include "bench/measurements.h"
#include "common/text.h"
#include "scene/scene_data.h"

#include <json/json.h>

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace {

void measure_growth_from(int references, const std::string& name) {
    const std::string small_text = tarvo_bench::sample_analysis(references, references / 10);
    const std::string large_text = tarvo_bench::sample_analysis(references * 10, references);
    tarvo::SceneData small;
    tarvo::SceneData large;
    std::wstring small_wide = tarvo::Utf8ToWide(small_text);
    std::wstring large_wide = tarvo::Utf8ToWide(large_text);
    small.set_analysis_text(small_wide);
    large.set_analysis_text(large_wide);
    const double ours = tarvo_bench::best_seconds(5, [&] { large.parse_analysis(); }) /
                        tarvo_bench::best_seconds(9, [&] { small.parse_analysis(); });
    const double library = tarvo_bench::best_seconds(5, [&] { tarvo_bench::parse_alone(large_text); }) /
                           tarvo_bench::best_seconds(9, [&] { tarvo_bench::parse_alone(small_text); });
    tarvo_bench::report("parse_analysis, growth of time for ten times " + name, ours, 11.0);
    tarvo_bench::report("  the same growth of Json::Reader::parse alone", library, 11.0);
}

} // namespace

void tarvo_bench::parse_alone(const std::string& text) {
    Json::Value root;
    Json::Reader reader;
    // The overload for a text in memory, the usual one. It keeps a copy of the text, which is about a
    // twentieth of the time.
    reader.parse(text, root);
}

// In a process of its own the larger input has to make the heap grow first, over and over, since the heap
// gives the pages back; in the host's, which is of gigabytes, there is nothing to grow.
void tarvo_bench::measure_growth() {
    measure_growth_from(100000, "100,000 files, heap as it is");
    const GrownHeap heap;
    measure_growth_from(100000, "100,000 files, heap grown");
}

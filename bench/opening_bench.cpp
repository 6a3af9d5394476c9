// All of the plugin's own work of an opening: the double of the host answers the script at once, and there
// are no controls to fill. The floor is one parse of the analysis.
#include "bench/harness.h"
#include "bench/measurements.h"
#include "common/platform.h"
#include "common/text.h"
#include "dialog/sequences.h"
#include "tests/support/test_folder.h"
#include "tests/support/test_host.h"

#include <cstdio>

void tarvo_bench::measure_opening() {
    const std::string text = sample_analysis(100000, 10000);
    test_host().file_name = L"big.max";
    test_host().script_text = tarvo::Utf8ToWide(text);
    const std::string ini = support::plugin_folder() + "/script/qfx_plugin.ini";
    tarvo::CreateFolder(tarvo::Utf8ToWide(support::plugin_folder() + "/script"));
    support::write_file(ini, "[general]\r\nlowerversion=1.3.5\r\n");
    bool filled = true;
    const PairedRatio time = compare_pairs(
        75, 0.02, [&] { filled = tarvo::RunOpeningSequence(nullptr, true) == 1 && filled; },
        [&] { parse_alone(text); });
    std::remove(ini.c_str());
    report("opening without script and controls / Json::Reader::parse, 100,000 files", time, 1.35);
    if (!filled) {
        std::printf("  an opening was refused: the figure measures something else\n");
    }
}

// bench.exe [analysis|submit|table|script|growth]: everything when none is named.
#include "bench/measurements.h"
#include "tests/support/test_folder.h"

#include <cstdio>
#include <string>

int main(int argc, char** argv) {
    // An ini file that a run left here would lead the log away from the stream that it is measured against.
    std::remove((support::plugin_folder() + "/script/qfx_plugin.ini").c_str());
    const std::string wanted = argc > 1 ? argv[1] : "";
    if (wanted.empty() || wanted == "analysis") {
        tarvo_bench::measure_analysis();
        tarvo_bench::measure_opening();
    }
    if (wanted.empty() || wanted == "submit") {
        tarvo_bench::measure_submit();
    }
    if (wanted.empty() || wanted == "table") {
        tarvo_bench::measure_table();
    }
    if (wanted.empty() || wanted == "script") {
        tarvo_bench::measure_script();
    }
    // Last: it leaves another heap behind.
    if (wanted.empty() || wanted == "growth") {
        tarvo_bench::measure_growth();
    }
    return 0;
}

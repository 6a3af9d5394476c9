// bench.exe [analysis|submit]: everything when neither is named.
#include "bench/measurements.h"
#include "tests/support/test_folder.h"

#include <string>

int main(int argc, char** argv) {
    tarvo_test::plugin_folder();
    const std::string wanted = argc > 1 ? argv[1] : "";
    if (wanted.empty() || wanted == "analysis") {
        tarvo_bench::measure_analysis();
    }
    if (wanted.empty() || wanted == "submit") {
        tarvo_bench::measure_submit();
    }
    return 0;
}

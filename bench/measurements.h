// What bench.exe measures, one function per subject. Each prints its lines with report().
#pragma once

#include <string>

namespace tarvo_bench {

// An analysis text (UTF-8) of a scene with that many referenced files and cameras; the same text every time.
std::string sample_analysis(int references, int cameras);

// The analysis reader and the log.
void measure_analysis();

// The submit document and the packing. Packing needs the 7-Zip program: it is copied from the folder that
// TARVO_SEVEN_ZIP names, or has to be in the plugin's folder already; without it a line says so.
void measure_submit();

} // namespace tarvo_bench

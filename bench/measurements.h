// What bench.exe measures, one function per subject. Each prints its lines with report().
#pragma once

namespace tarvo_bench {

// The analysis reader and the log.
void measure_analysis();

// The submit document and the packing. Packing needs the 7-Zip program: it is copied from the folder that
// TARVO_SEVEN_ZIP names, or has to be in the plugin's folder already; without it a line says so.
void measure_submit();

} // namespace tarvo_bench

// What bench.exe measures, one function per subject. Each prints its lines with report().
#pragma once

#include <string>

namespace tarvo_bench {

// An analysis text (UTF-8) of a scene with that many referenced files and cameras; the same text every time.
std::string sample_analysis(int references, int cameras);

// Json::Reader::parse of the text and nothing else: the floor of the reader's figures.
void parse_alone(const std::string& text);

// The analysis reader and the log.
void measure_analysis();

// All of the plugin's own work of an opening, against one parse.
void measure_opening();

// How the reader's time grows with its input.
void measure_growth();

// The analysis script; read from the project by TARVO_TEST_DATA, without which a line says so.
void measure_script();

// Filling the camera table.
void measure_table();

// The submit document and the packing. Packing needs the 7-Zip program: it is copied from the folder that
// TARVO_SEVEN_ZIP names, or has to be in the plugin's folder already; without it a line says so.
void measure_submit();

} // namespace tarvo_bench

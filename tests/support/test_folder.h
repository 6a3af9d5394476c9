// The machine-wide folder of a test run and the logs in it, for both builds. Under Wine it is the prefix's
// real one; natively it is a scratch folder made for the process.
#pragma once

#include <string>
#include <vector>

namespace support {

// The plugin's folder ("… /Tarvo Rendering"), made if missing; UTF-8.
std::string plugin_folder();

// Where a channel's current log file lies; UTF-8.
std::string log_file(const std::string& channel);

// All lines of a channel's current log without their time stamps: "[LEVEL] message".
std::vector<std::string> log_lines(const std::string& channel);

// How many lines the log has now; with lines_since the lines that came later.
std::size_t log_mark(const std::string& channel);
std::vector<std::string> log_lines_since(const std::string& channel, std::size_t mark);

// The whole content of a file, byte for byte; empty when it cannot be read.
std::string read_file(const std::string& path);
void write_file(const std::string& path, const std::string& content);

// The folder of the test data: the environment variable TARVO_TEST_DATA.
std::string test_data_folder();

// The files of one of its folders that have this ending (".in.json"), without it, in order.
std::vector<std::string> test_data_names(const std::string& folder, const std::string& ending);

} // namespace support

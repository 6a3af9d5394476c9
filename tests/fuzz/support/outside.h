// Everything that a fuzz target's subject would ask of the system, in memory: the log's lines and the boxes
// are kept, the ini file is a text, no file is opened and no clock is asked.
#pragma once

#include <string>
#include <vector>

namespace fuzz {

struct LogLine {
    std::string text;
    std::string level;
};

struct Box {
    std::wstring text; // "[45]": the number of the string-table text
    std::wstring caption;
};

struct Outside {
    std::vector<LogLine> lines;
    std::vector<Box> boxes;
    std::wstring ini;        // the plugin's ini file, read by Windows' rules
    std::wstring scene_path; // what the host answers

    // Lines and boxes only.
    void forget() {
        lines.clear();
        boxes.clear();
    }
};

Outside& outside();

} // namespace fuzz

// The probe's report: one line for each thing that was asked, "key<tab>answer", plain ASCII. Every line is on
// the disk before the next question is asked, so that a host that stops shows where. Nothing here throws.
#pragma once

#include <windows.h>

#include <string>

namespace tarvo_probe {

class Report {
public:
    // Beside the module, or else in the folder for temporary files: TarvoHostProbe.txt, overwritten.
    void begin(HINSTANCE module) noexcept;
    void line(const std::string& key, const std::wstring& answer) noexcept;
    void line(const std::string& key, const char* answer) noexcept;
    void number(const std::string& key, long long value) noexcept;
    void flag(const std::string& key, bool answer) noexcept { line(key, answer ? "yes" : "no"); }
    // Which object a pointer is does not matter, only whether there is one.
    void object(const std::string& key, const void* answer) noexcept {
        line(key, answer == nullptr ? "null" : "object");
    }

private:
    std::wstring path_;
};

Report& TheReport();

// Runs one set of questions; what it throws ends it and stands in the report under `key`.
template <class Function>
void Ask(const char* key, Function function) noexcept {
    try {
        function();
    } catch (...) {
        TheReport().line(std::string(key) + ".stopped", "an exception");
    }
}

} // namespace tarvo_probe

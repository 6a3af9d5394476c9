// One plain-text log file for each channel, one line for each event; rotation keeps older files. A logger
// never reports a failure and never fails its caller: it drops what it cannot write. Other processes may read
// and append to the file meanwhile. For one thread.
#pragma once

#include <cstdint>
#include <fstream>
#include <memory>
#include <string>

// Base of classes whose objects have an identity: neither copied nor moved.
class qfx_Noncopyable {
public:
    qfx_Noncopyable() = default;
    qfx_Noncopyable(const qfx_Noncopyable&) = delete;
    qfx_Noncopyable& operator=(const qfx_Noncopyable&) = delete;
    virtual ~qfx_Noncopyable() = default;
};

namespace tarvo {

// The levels as the lines show them.
constexpr const char* kInfo = "INFO";
constexpr const char* kWarn = "WARN";
constexpr const char* kError = "ERROR";

// A channel's file name and rotation. The HTTP channel keeps more and smaller files (C-54).
struct LogChannel {
    const char* name;
    std::uint32_t max_size_mb;
    std::uint32_t max_files; // the current one included
};
constexpr LogChannel kDataChannel = {"qfx_data", 5, 2};
constexpr LogChannel kUiChannel = {"qfx_ui", 5, 2};
constexpr LogChannel kHttpChannel = {"qfx_http", 2, 5};

// Writes one ERROR line, for code that cannot reach the store that owns the channel. Leaves rotation to it.
void WriteErrorLine(const LogChannel& channel, const std::string& message);

class Logger : public qfx_Noncopyable {
public:
    // Finds and creates the log folder. Opens no file.
    Logger();

    // Does the same, then opens the channel. `compact_time` not 0: dates without hyphens.
    Logger(const std::string& channel, std::uint32_t max_size_mb, std::uint32_t max_files,
           std::uint32_t compact_time);

    // Opens `channel` with the long dates, for one operation.
    explicit Logger(const LogChannel& channel);

    void Open(std::string channel);
    void SetMaxSizeMB(std::uint32_t mb) { maxSizeMB = mb; }
    void SetMaxFiles(std::uint32_t files) { maxFiles = files; }

    // Writes one line: time stamp, `level` in square brackets (one of the three above), message (its bytes
    // are not converted). Then rotates if the file has reached the size limit: the current file becomes
    // number 1, number n becomes n + 1, and the oldest is deleted.
    void Write(std::string message, std::string level);

private:
    void find_folder();
    void open_current();
    void rotate();
    std::string time_stamp() const;

    std::string baseName; // folder, backslash, channel; in the locale's code page
    std::uint32_t maxSizeMB = 0;
    std::uint32_t maxFiles = 1; // the current file included
    std::unique_ptr<std::fstream> stream;
    std::string folder;
    std::uint32_t compactTime = 0;
};

} // namespace tarvo

#include "common/logger.h"

#include "common/platform.h"
#include "common/text.h"

#include <cstdio>

namespace tarvo {

void WriteErrorLine(const LogChannel& channel, const std::string& message) {
    constexpr std::uint32_t kNeverRotates = 4095; // megabytes
    Logger log(channel.name, kNeverRotates, channel.max_files, 0);
    log.Write(message, kError);
}

Logger::Logger() {
    find_folder();
}

Logger::Logger(const std::string& channel, std::uint32_t max_size_mb, std::uint32_t max_files,
               std::uint32_t compact_time)
    : maxSizeMB(max_size_mb), maxFiles(max_files), compactTime(compact_time) {
    find_folder();
    Open(channel);
}

Logger::Logger(const LogChannel& channel) : Logger(channel.name, channel.max_size_mb, channel.max_files, 0) {}

void Logger::find_folder() {
    const std::wstring plugin_folder = CommonAppDataFolder() + kPluginFolder;
    // The value follows "log" without a separator (C-55): "2019" gives the folder "log2019".
    const std::wstring log_folder =
        plugin_folder + L"/log" + ReadProfileText(plugin_folder + kIniFile, kIniSection, kIniKeyLowerVersion);
    CreateFolder(log_folder);
    folder = WideToLocale(log_folder);
}

void Logger::Open(std::string channel) {
    baseName = folder + "\\" + channel;
    if (!PathExists(folder)) {
        CreateFolder(folder);
    }
    stream.reset(new std::fstream());
    open_current();
}

// The runtime opens the stream with full sharing: support reads the file while it grows.
void Logger::open_current() {
    stream->open(baseName + ".log", std::ios_base::out | std::ios_base::app);
}

// What cannot be written is lost (C-62).
void Logger::Write(std::string message, std::string level) {
    if (!stream) {
        return;
    }
    if (stream->is_open()) {
        stream->clear(); // a line that could not be written does not silence the ones after it
    }
    *stream << time_stamp() << " [" << level << "] " << message << std::endl;
    const std::fstream::pos_type position = stream->tellp();
    stream->seekp(0, std::ios_base::end);
    const std::streamoff end = stream->tellp();
    stream->seekp(position);
    const std::int32_t size_kb = static_cast<std::int32_t>(end / 1024);
    // The line that reaches the limit stays in the old file (C-56).
    if (stream->good() && static_cast<std::uint32_t>(size_kb) >= (maxSizeMB << 10)) {
        rotate();
    }
}

void Logger::rotate() {
    stream->close();
    const auto name = [this](std::uint32_t number) { return baseName + std::to_string(number) + ".log"; };
    // Results are ignored: a file that another process holds stays where it is.
    for (std::uint32_t number = maxFiles; number-- > 1;) {
        if (!PathExists(name(number))) {
            continue;
        }
        if (number == maxFiles - 1) {
            std::remove(name(number).c_str());
        } else {
            std::rename(name(number).c_str(), name(number + 1).c_str());
        }
    }
    std::rename((baseName + ".log").c_str(), name(1).c_str());
    open_current();
}

// A colon before the milliseconds (C-51).
std::string Logger::time_stamp() const {
    const LocalTime now = CurrentLocalTime();
    const char* format =
        compactTime == 0 ? "%4d-%02d-%02d %02d:%02d:%02d:%03d" : "%4d%02d%02d %02d:%02d:%02d:%03d";
    char buffer[64] = {};
    std::snprintf(buffer, sizeof buffer, format, now.year, now.month, now.day, now.hour, now.minute,
                  now.second, now.millisecond);
    return buffer;
}

} // namespace tarvo

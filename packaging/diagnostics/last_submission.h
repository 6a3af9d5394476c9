// What the last submission left: its document, its packed scene, the ends of the logs.
#pragma once

#include <string>
#include <vector>

namespace diagnostics {

constexpr unsigned kArchiveSeconds = 600; // how long an archive is tested at most

struct DocumentFact {
    bool exists = false;
    std::string written; // "2024-03-07 09:05:02", local time
    unsigned long long size = 0;
    bool readable = false; // JSON, to its end
    std::string scene;     // full path
    std::size_t cameras = 0;
};

enum class ArchiveTest { not_tested, whole, damaged, not_ended };

struct ArchiveFact {
    bool exists = false;
    bool of_document = false; // belongs to the newest document; otherwise it is the newest one
    std::string name;
    std::string written;
    unsigned long long size = 0;
    ArchiveTest test = ArchiveTest::not_tested;
    std::string said; // 7-Zip's complaint
};

struct ChannelFact {
    std::string name; // "qfx_http"
    std::string line; // the last one, with its time and level; empty: none
};

struct LastSubmission {
    DocumentFact document;
    ArchiveFact archive;
    std::vector<ChannelFact> channels;
};

// The document's own facts, from its text.
void read_document(const std::string& text, DocumentFact& document);

// GUID.json, as the plugin names its documents.
bool is_document_name(const std::string& name);

// STEM_TAG.7z with a tag of six letters or digits; also what 7-Zip leaves of it when it is stopped (".tmp").
bool is_archive_name(const std::string& name);

// The STEM of an archive's name, or of a scene's path.
std::string archive_stem(const std::string& name);
std::string scene_stem(const std::string& path);

// "2024-03-07 09:05:02:045 [INFO] Text" in its parts.
struct LogLine {
    std::string time;
    std::string level;
    std::string text;
};
LogLine log_line(const std::string& line);

// What a line of the plugin's log means, from the guide. Both empty for an unknown line.
struct LogMeaning {
    std::string english;
    std::string chinese;
};
LogMeaning log_meaning(const std::string& channel, const std::string& text);

// What a code of the client means; both empty for an unknown one.
LogMeaning code_meaning(int code);

// 7-Zip's own words about an archive that it does not accept.
std::string complaint(const std::string& output);

} // namespace diagnostics

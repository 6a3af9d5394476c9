#include "scene/analysis_reader.h"

#include "common/json_text.h"
#include "common/string_table.h"
#include "common/text.h"
#include "resources/resource_ids.h"

#include <json/value.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <functional>
#include <stdexcept>
#include <utility>

namespace tarvo {

namespace {

// All are loaded at the start of every reading, also those that it does not need.
struct NoticeTexts {
    std::wstring heading = Text(IDS_NOTICE_HEADING);
    std::wstring missing_heading = Text(IDS_NOTICE_MISSING_HEADING);
    std::wstring missing_prefix = Text(IDS_NOTICE_MISSING_FILE);
    std::wstring same_heading = Text(IDS_NOTICE_SAME_HEADING);
    std::wstring same_prefix = Text(IDS_NOTICE_SAME_FILE);
    std::wstring corona_blocks = Text(IDS_NOTICE_CORONA_BLOCKS);
    std::wstring region = Text(IDS_NOTICE_REGION);
    std::wstring error_107 = Text(IDS_NOTICE_ERROR_107);
    std::wstring cyrillic = Text(IDS_NOTICE_CYRILLIC);
    std::wstring corona_unlimited = Text(IDS_CORONA_UNLIMITED); // only the dialog shows it
};

// Visits the entries in order, until `visit` returns false. Scalars count as empty, as in JsonCpp. Objects
// are rejected: JsonCpp would iterate over their members.
void for_each_entry(const Json::Value& array, const std::function<bool(const Json::Value&)>& visit) {
    if (!array.isArray()) {
        if (array.size() > 0) {
            throw std::runtime_error("an array was expected");
        }
        return;
    }
    for (const Json::Value& entry : array) {
        if (!visit(entry)) {
            return;
        }
    }
}

// Eight bytes at a time: nearly all paths are ASCII from end to end.
const char* skip_ascii(const char* at, const char* end) {
    std::uint64_t block = 0;
    while (end - at >= static_cast<std::ptrdiff_t>(sizeof block)) {
        std::memcpy(&block, at, sizeof block);
        if ((block & 0x8080808080808080u) != 0) {
            break;
        }
        at += sizeof block;
    }
    return at;
}

// Searches the bytes of valid UTF-8: U+0400 to U+052F are the sequences D0 80 to D4 AF, and such a lead byte
// never occurs inside another character. A zero byte ends the text, as in Utf8ToWide.
bool holds_cyrillic(const Json::Value& text) {
    const char* begin = nullptr;
    const char* end = nullptr;
    std::string converted;
    if (!text.getString(&begin, &end)) {
        converted = text.asString();
        begin = converted.data();
        end = begin + converted.size();
    }
    if (const void* zero = std::memchr(begin, '\0', static_cast<std::size_t>(end - begin))) {
        end = static_cast<const char*>(zero);
    }
    for (const char* at = skip_ascii(begin, end); end - at >= 2; ++at) {
        const unsigned char lead = static_cast<unsigned char>(at[0]);
        const unsigned char next = static_cast<unsigned char>(at[1]);
        if ((lead >= 0xD0 && lead <= 0xD3) || (lead == 0xD4 && next <= 0xAF)) {
            return true;
        }
    }
    return false;
}

// The order of the steps is the order of the lines and notices.
class Reading {
public:
    Reading(const Json::Value& root, Logger& log, AnalysisOutcome& outcome)
        : root_(root), log_(log), outcome_(outcome) {}

    std::int32_t run() {
        if (!read_corona_limits()) {
            return 2;
        }
        read_region();
        read_cyrillic_references();
        read_errors();
        add_file_notices("missing_file", texts_.missing_heading, texts_.missing_prefix);
        add_file_notices("same_file", texts_.same_heading, texts_.same_prefix);
        if (root_["cameras"].empty()) {
            log_.Write("No cameras!", kError);
            return 1;
        }
        if (!read_cameras()) {
            return 3;
        }
        read_gamma();
        return 0;
    }

private:
    void add_notice(const std::wstring& text) {
        if (!heading_shown_) {
            outcome_.messages.push_back(texts_.heading);
            heading_shown_ = true;
        }
        outcome_.messages.push_back(text);
    }

    // False when no limit ends a Corona rendering.
    bool read_corona_limits() {
        const Json::Value& setting = root_["corona_setting"];
        if (!setting.isMember("pass_limit") || !setting.isMember("time_limit") ||
            !setting.isMember("noise_level_limit")) {
            outcome_.corona_limits = 0;
            return true;
        }
        const bool no_pass_limit = setting["pass_limit"].asString() == "0";
        const bool no_time_limit = setting["time_limit"].asString() == "0";
        const bool no_noise_limit = setting["noise_level_limit"].asString() == "0";
        if (no_pass_limit && no_time_limit && no_noise_limit) {
            outcome_.corona_limits = 1;
            log_.Write(
                "The progressive pass, time and noise level are not limited in Corona! Please revise and "
                "submit again!",
                kError);
            return false;
        }
        const bool only_time_limited = no_pass_limit && no_noise_limit;
        outcome_.corona_limits = only_time_limited ? 2 : 3;
        if (only_time_limited) {
            add_notice(texts_.corona_blocks);
            log_.Write(
                "Block rendering is not recommended in Corona. Please limit progressive pass and noise level "
                "if you still want to use block rendering.",
                kWarn);
        }
        return true;
    }

    void read_region() {
        outcome_.is_region = root_["is_region"].asString();
        outcome_.has_region = true;
        if (outcome_.is_region == "true") {
            add_notice(texts_.region);
            log_.Write(
                "Region rendering is used in your scene file. Please ignore this message if you confirm to "
                "use block rendering.",
                kWarn);
        }
    }

    // One notice at most.
    void read_cyrillic_references() {
        for_each_entry(root_["reference_file"], [this](const Json::Value& entry) {
            if (!holds_cyrillic(entry["path"])) {
                return true;
            }
            add_notice(texts_.cyrillic);
            log_.Write("The name of reference file have Russian characters.", kWarn);
            return false;
        });
    }

    void read_errors() {
        const Json::Value& errors = root_["errors"];
        if (errors.isNull()) {
            log_.Write("No errors!", kInfo);
        } else if (errors.size() > 0) {
            for_each_entry(errors["error_code"], [this](const Json::Value& entry) {
                const int code = DecimalInt(entry["code"].asString());
                log_.Write(AnalysisCodeLine(code), kWarn);
                if (code == kIncompleteAnalysis) {
                    add_notice(texts_.error_107);
                }
                return true;
            });
        }
    }

    // Each of these lists has a heading of its own; heading_shown_ is neither tested nor changed.
    void add_file_notices(const char* member, const std::wstring& heading, const std::wstring& prefix) {
        bool first = true;
        for_each_entry(root_[member], [&](const Json::Value& entry) {
            if (first) {
                outcome_.messages.push_back(heading);
                first = false;
            }
            outcome_.messages.push_back(prefix + Utf8ToWide(entry["path"].asString()));
            return true;
        });
    }

    CameraRecord camera_template() const {
        CameraRecord record;
        record.image_width = DecimalInt(root_["image_width"].asString());
        record.image_height = DecimalInt(root_["image_height"].asString());
        record.start_frame = DecimalInt(root_["start_frame"].asString());
        const std::string format = root_["image_format"].asString();
        record.image_format = ToUpper(LocaleToWide(format));
        if (record.image_format.empty() && !format.empty()) {
            log_.Write("The image format cannot be read: " + format, kWarn);
        }
        record.is_spherical = is_spherical(root_["vray_setting"]);
        return record;
    }

    static bool is_spherical(const Json::Value& setting) {
        if (setting.isNull()) {
            return false;
        }
        const bool overrides = setting["camera_override_fov"].asBool();
        constexpr double kFullCircle = 360.0; // degrees
        const double fov = setting.isMember("camera_fov")
                               ? std::atof(setting["camera_fov"].asString().c_str())
                               : kFullCircle;
        const bool spherical = setting["is_spherical"].asString() == "true";
        return overrides && spherical && fov == kFullCircle;
    }

    // False when a camera's name ends with a blank or a full stop; the cameras before it stay.
    bool read_cameras() {
        const CameraRecord record = camera_template();
        outcome_.has_cameras = true;
        bool all_names_end_well = true;
        for_each_entry(root_["cameras"], [&](const Json::Value& entry) {
            CameraName name = SplitCameraName(entry["name"].asString());
            if (name.has_bad_ending) {
                log_.Write("The original camera name contains \" \" or \".\"!", kError);
                all_names_end_well = false;
                return false;
            }
            if (name.has_forbidden_characters) {
                log_.Write("The original camera name contain invalid characters!", kWarn);
            }
            CameraRecord& stored = outcome_.cameras[std::move(name.key)];
            stored = record;
            stored.img_output_name = std::move(name.output_name);
            return true;
        });
        return all_names_end_well;
    }

    void read_gamma() {
        const Json::Value& gamma = root_["gamma_out"];
        if (!gamma.isNull()) {
            outcome_.has_gamma = true;
            outcome_.gamma_out = static_cast<float>(std::atof(gamma.asString().c_str()));
        }
    }

    const Json::Value& root_;
    Logger& log_;
    AnalysisOutcome& outcome_;
    NoticeTexts texts_;
    bool heading_shown_ = false;
};

SceneName scene_name_of(const Json::Value& root, bool parsed, const std::string& refusal) {
    SceneName scene;
    scene.refusal = refusal;
    if (!parsed) {
        return scene;
    }
    try {
        scene.path = root["name"].asString();
        scene.readable = true;
    } catch (const std::exception& error) {
        scene.refusal = error.what();
        return scene;
    }
    const std::string::size_type start = FileNameStart(scene.path);
    scene.found = start != std::string::npos;
    if (scene.found) {
        scene.name = scene.path.substr(start);
    }
    return scene;
}

} // namespace

AnalysisOutcome ReadAnalysis(const std::string& text, Logger& log) {
    AnalysisOutcome outcome;
    Json::Value root;
    std::string version;
    std::string refusal;
    const bool parsed = ParseJson(text, root, &refusal);
    const SceneName scene_name = scene_name_of(root, parsed, refusal);
    if (parsed) {
        try {
            const Json::Value& document = root;
            outcome.code = Reading(document, log, outcome).run();
            if (outcome.code == 0) {
                version = document["version"].asString();
            }
            outcome.usable = true;
        } catch (const std::exception& error) {
            outcome = AnalysisOutcome();
            version.clear();
            refusal = error.what();
        }
    }
    outcome.scene_name = scene_name;
    LogUnusableAnalysis(refusal, log);
    if (outcome.code == 0) { // also when the text is not JSON (C-20)
        log.Write("Get analyse infomation successfully. Current 3ds Max version is :" + version, kInfo);
    }
    return outcome;
}

SceneName ReadSceneName(const std::string& text) {
    Json::Value root;
    std::string refusal;
    const bool parsed = ParseJson(text, root, &refusal);
    return scene_name_of(root, parsed, refusal);
}

bool ReportSceneName(const SceneName& scene, Logger& log) {
    if (scene.readable && !scene.found) {
        log.Write("The scene name is empty!", kWarn);
    } else if (!scene.readable) {
        log.Write("Parse failed in initing scene name!", kWarn);
        LogUnusableAnalysis(scene.refusal, log);
    }
    return scene.found;
}

void LogUnusableAnalysis(const std::string& reason, Logger& log) {
    if (!reason.empty()) {
        log.Write("The analysis text cannot be used: " + reason, kError);
    }
}

} // namespace tarvo

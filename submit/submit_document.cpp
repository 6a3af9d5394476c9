#include "submit/submit_document.h"

#include "common/text.h"

#include <utility>

namespace tarvo {

namespace {

// An existing member is removed; a missing member becomes null (C-34).
void drop_unless_null(Json::Value& object, const char* key) {
    if (!object[key].isNull()) {
        object.removeMember(key);
    }
}

bool has_comment(const Json::Value& value) {
    return value.hasComment(Json::commentBefore) || value.hasComment(Json::commentAfterOnSameLine) ||
           value.hasComment(Json::commentAfter);
}

// Of an entry the document takes only the path: the analysis's comments go too.
void drop_comments(Json::Value& value) {
    if (has_comment(value)) {
        Json::Value bare;
        bare.swapPayload(value);
        value.swap(bare);
    }
}

// Reduces an entry to its path, as text. False when that is the scene's own path.
bool reduce_to_foreign_path(Json::Value& entry, const std::string& scene_path) {
    Json::Value& path = entry["path"];
    if (!path.isString()) {
        path = path.asString();
    }
    const char* begin = nullptr;
    const char* end = nullptr;
    path.getString(&begin, &end);
    if (scene_path.compare(0, std::string::npos, begin, static_cast<std::size_t>(end - begin)) == 0) {
        return false;
    }
    drop_comments(path);
    if (entry.size() != 1) {
        Json::Value only(Json::objectValue);
        only["path"].swap(path);
        entry.swap(only);
    }
    drop_comments(entry);
    return true;
}

// In place, for speed: there may be a hundred thousand entries, and nearly all stay unchanged.
void keep_foreign_references(Json::Value& analysis, const std::string& scene_path) {
    Json::Value& listed = analysis["reference_file"];
    if (listed.isObject() && !listed.empty()) {
        Json::throwLogicError("reference_file: an array was expected");
    }
    Json::ArrayIndex kept = 0;
    Json::Value::iterator target = listed.begin();
    for (Json::Value& entry : listed) {
        if (reduce_to_foreign_path(entry, scene_path)) {
            if (&*target != &entry) {
                target->swap(entry);
            }
            ++target;
            ++kept;
        }
    }
    if (kept == 0) {
        analysis.removeMember("reference_file");
        return;
    }
    listed.resize(kept);
    drop_comments(listed);
}

// Frames are text in the analysis; a number counts as its text.
bool is_negative(const Json::Value& frame) {
    return DecimalInt(frame.asString()) < 0;
}

// StaticString saves a copy of each name in each object.
Json::Value camera_object(const std::wstring& name, const CameraRecord& camera) {
    Json::Value object(Json::objectValue);
    object[Json::StaticString("name")] = WideToUtf8(name);
    object[Json::StaticString("camera_width")] = camera.image_width;
    object[Json::StaticString("camera_height")] = camera.image_height;
    object[Json::StaticString("frame_to_render")] = camera.start_frame;
    object[Json::StaticString("img_output_format")] = WideToUtf8(camera.image_format);
    object[Json::StaticString("img_output_name")] = WideToUtf8(camera.img_output_name);
    object[Json::StaticString("renderable")] = "1"; // a text (C-35)
    object[Json::StaticString("is_spherical")] = camera.is_spherical;
    return object;
}

void set_checked_cameras(Json::Value& analysis, const CameraMap& cameras) {
    Json::Value checked(Json::arrayValue);
    for (const CameraMap::value_type& camera : cameras) {
        if (camera.second.checked) {
            checked.append(camera_object(camera.first, camera.second));
        }
    }
    if (!checked.empty()) {
        analysis["cameras"] = std::move(checked);
    }
}

Json::Value max_options(const SceneData& scene) {
    Json::Value options(Json::objectValue);
    options["color_channel"] = scene.color_channel;
    options["ao_channel"] = scene.ao_channel;
    if (scene.ao_channel) {
        options["ao_radius"] = scene.ao_radius;
        options["ao_subdivs"] = scene.ao_subdivs;
    }
    options["gamma_out"] = static_cast<double>(scene.gamma_out);
    return options;
}

} // namespace

DocumentProblem BuildSubmitDocument(Json::Value& analysis, SceneData& scene, const std::string& scene_file) {
    drop_unless_null(analysis, "cameras");
    keep_foreign_references(analysis, scene.scene_path);
    drop_unless_null(analysis, "errors");
    drop_unless_null(analysis, "missing_file");
    analysis["name"] = scene_file;
    if (is_negative(analysis["start_frame"])) {
        return DocumentProblem::start_frame_negative;
    }
    if (is_negative(analysis["end_frame"])) {
        return DocumentProblem::end_frame_negative;
    }
    set_checked_cameras(analysis, scene.cameras());
    const bool in_blocks = scene.num_blocks != 1;
    analysis["enable_blocking"] = in_blocks ? 1 : 0; // a number (C-35)
    analysis["num_blocks"] = in_blocks ? scene.num_blocks : 0;
    analysis["max_options"] = max_options(scene);
    return DocumentProblem::none;
}

Json::Value BuildRequestBody(const std::string& scene_file, const std::string& document_file,
                             const std::string& app_version, const std::string& archive_path) {
    Json::Value body(Json::objectValue);
    body["scenePath"] = scene_file;
    body["filePath"] = document_file;
    body["maxVersion"] = "3ds Max " + app_version;
    body["compressPath"] = archive_path;
    return body;
}

} // namespace tarvo

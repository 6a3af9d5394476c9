#include "standin/scene/analysis_text.h"

#include "standin/scene/scene_text.h"

#include <json/value.h>
#include <json/writer.h>

#include <cstdio>
#include <map>
#include <set>

namespace standin {

namespace {

struct Reference {
    std::wstring path;
    bool missing = false;
};

Json::Value text(const std::wstring& wide) {
    return Json::Value(utf8_from_wide(wide));
}
Json::Value text(std::int32_t number) {
    return Json::Value(std::to_string(number));
}
Json::Value flag_text(bool flag) {
    return Json::Value(flag ? "true" : "false");
}

// The shortest form, and "0" for zero. Digits and sign come from the number; the locale's decimal sign may
// not be a full stop.
Json::Value text(double number) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.6g", number);
    std::string digits = buffer;
    for (char& sign : digits) {
        if (sign == ',') {
            sign = '.';
        }
    }
    return Json::Value(digits);
}

bool is_destination(const ReferencedFile& file) {
    return file.kind == L"RenderOutput" || file.kind == L"BatchRender";
}

Reference resolve(const ReferencedFile& file, const std::wstring& scene_path, const FileExists& exists) {
    const std::wstring candidates[] = {file.named, file.found,
                                       folder_of(scene_path) + file_name_of(file.named)};
    Reference reference;
    for (const std::wstring& candidate : candidates) {
        if (!file_name_of(candidate).empty() && exists(candidate)) {
            reference.path = candidate;
            return reference;
        }
    }
    reference.path = file.named;
    reference.missing = true;
    return reference;
}

std::vector<Reference> resolve_all(const SceneModel& model, const FileExists& exists) {
    std::vector<Reference> references;
    std::set<std::wstring> known;
    for (const ReferencedFile& file : model.references) {
        if (is_destination(file) || file.named.empty()) {
            continue;
        }
        const Reference reference = resolve(file, model.path, exists);
        if (known.insert(folded_path(reference.path)).second) {
            references.push_back(reference);
        }
    }
    return references;
}

// `field`: "path", "name" or "code", as each list of the format has it.
void append(Json::Value& list, const char* field, const Json::Value& value) {
    Json::Value entry(Json::objectValue);
    entry[field] = value;
    list.append(entry);
}

void add_references(const SceneModel& model, const FileExists& exists, Json::Value& root) {
    Json::Value all(Json::arrayValue);
    Json::Value missing(Json::arrayValue);
    Json::Value same(Json::arrayValue);
    const std::vector<Reference> references = resolve_all(model, exists);
    std::map<std::wstring, int> uses;
    for (const Reference& reference : references) {
        ++uses[folded_path(file_name_of(reference.path))];
    }
    for (const Reference& reference : references) {
        append(all, "path", text(reference.path));
        if (reference.missing) {
            append(missing, "path", text(reference.path));
        }
        if (uses[folded_path(file_name_of(reference.path))] > 1) {
            append(same, "path", text(reference.path));
        }
    }
    root["reference_file"] = all;
    root["missing_file"] = missing;
    root["same_file"] = same;
}

void add_renderer(const RenderSettings& render, Json::Value& root) {
    if (render.corona.present) {
        Json::Value corona(Json::objectValue);
        corona["pass_limit"] = text(render.corona.pass_limit);
        corona["time_limit"] = text(render.corona.time_limit);
        corona["noise_level_limit"] = text(render.corona.noise_level_limit);
        root["corona_setting"] = corona;
    }
    if (render.vray.present) {
        Json::Value vray(Json::objectValue);
        vray["camera_override_fov"] = render.vray.camera_override_fov; // the one flag that is no text
        vray["camera_fov"] = text(render.vray.camera_fov);
        vray["is_spherical"] = flag_text(render.vray.is_spherical);
        root["vray_setting"] = vray;
    }
}

Json::Value cameras_of(const SceneModel& model) {
    Json::Value cameras(Json::arrayValue);
    for (const std::wstring& name : model.cameras) {
        append(cameras, "name", text(name));
    }
    return cameras;
}

Json::Value errors_of(const RenderSettings& render) {
    Json::Value codes(Json::arrayValue);
    for (const std::string& code : render.error_codes) {
        append(codes, "code", Json::Value(code));
    }
    Json::Value errors(Json::objectValue);
    errors["error_code"] = codes;
    return errors;
}

} // namespace

std::string analysis_text(const SceneModel& model, const FileExists& exists) {
    Json::Value root(Json::objectValue);
    root["name"] = text(model.path);
    root["version"] = text(model.version);
    root["app_version"] = text(model.app_version);
    root["cameras"] = cameras_of(model);
    root["image_width"] = text(model.width);
    root["image_height"] = text(model.height);
    root["start_frame"] = text(model.start_frame);
    root["end_frame"] = text(model.end_frame);
    root["image_format"] = text(model.render.image_format);
    root["gamma_out"] = text(model.render.gamma_out);
    root["is_region"] = flag_text(model.render.is_region);
    root["errors"] = errors_of(model.render);
    add_references(model, exists, root);
    add_renderer(model.render, root);

    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    builder["emitUTF8"] = true;
    return Json::writeString(builder, root);
}

} // namespace standin

// The submit document's edits, over documents made by one who knows the format. The input is the form of
// tests/data/submit/*.in.json: an analysis and the user's choices. What the edits leave is read by a JSON
// reader of our own and held against the rules, member by member.
#include "common/json_text.h"
#include "common/text.h"
#include "standin/base/text.h"
#include "submit/submit_document.h"
#include "tests/fuzz/support/analysis_mutator.h"
#include "tests/fuzz/support/json_tree.h"
#include "tests/fuzz/support/rule.h"

#include <json/value.h>

#include <cmath>
#include <cstdint>
#include <exception>
#include <set>
#include <string>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t max_size);

namespace {

using fuzz::Kind;
using fuzz::Node;
using fuzz::rule;
using tarvo::DocumentProblem;

// What the edits set or remove; everything else stays.
const std::set<std::string> kEdited = {"cameras",    "reference_file", "errors",    "missing_file",
                                       "name",       "start_frame",    "end_frame", "enable_blocking",
                                       "num_blocks", "max_options"};

struct Job {
    tarvo::SceneData scene; // has the choices
    std::string scene_file;
};

// Any kind of value is a text, as far as it goes.
std::string text_of(const Json::Value& value) {
    return value.isString() ? value.asString() : std::string();
}

std::int32_t number_of(const Json::Value& value, std::int32_t otherwise) {
    return value.isInt() ? value.asInt() : otherwise;
}

double real_of(const Json::Value& value) {
    return value.isDouble() ? value.asDouble() : 1.0;
}

Json::Value member(const Json::Value& object, const char* name) {
    return object.isObject() ? object.get(name, Json::Value()) : Json::Value();
}

void fill_cameras(const Json::Value& list, tarvo::CameraMap& cameras) {
    for (Json::ArrayIndex at = 0; list.isArray() && at < list.size(); ++at) {
        const Json::Value& entry = list[at];
        tarvo::CameraRecord record;
        record.checked = member(entry, "checked").isBool() && member(entry, "checked").asBool();
        record.start_frame = number_of(member(entry, "start_frame"), 1);
        record.image_width = number_of(member(entry, "image_width"), 640);
        record.image_height = number_of(member(entry, "image_height"), 480);
        record.image_format = tarvo::Utf8ToWide(text_of(member(entry, "image_format")));
        record.img_output_name = tarvo::Utf8ToWide(text_of(member(entry, "img_output_name")));
        record.is_spherical = member(entry, "is_spherical") == Json::Value(true);
        cameras[tarvo::Utf8ToWide(text_of(member(entry, "name")))] = record;
    }
}

void fill(const Json::Value& given, Job& job) {
    job.scene.clear_cameras();
    fill_cameras(member(given, "cameras"), job.scene.cameras());
    job.scene_file = text_of(member(given, "scene_file"));
    job.scene.scene_path = text_of(member(given, "scene_path"));
    job.scene.num_blocks = number_of(member(given, "num_blocks"), 1);
    job.scene.color_channel = member(given, "color_channel") == Json::Value(true);
    job.scene.ao_channel = member(given, "ao_channel") == Json::Value(true);
    job.scene.ao_radius = real_of(member(given, "ao_radius"));
    job.scene.ao_subdivs = number_of(member(given, "ao_subdivs"), 16);
    job.scene.gamma_out = static_cast<float>(real_of(member(given, "gamma_out")));
}

Node tree_of(const Json::Value& value) {
    const fuzz::JsonText json = fuzz::read_json(tarvo::StyledJson(value), fuzz::Comments::skipped);
    rule(json.good, "a document that was written is JSON");
    return json.root;
}

bool is_container(const Node& node) {
    return node.kind == Kind::array || node.kind == Kind::object;
}

const Node& null_node() {
    static const Node null;
    return null;
}

const Node& at(const Node& object, const char* name) {
    const Node* found = object.find(name);
    return found == nullptr ? null_node() : *found;
}

std::string as_text(const Node& node) {
    return node.kind == Kind::truth ? (node.truth ? "true" : "false") : node.text;
}

// Whether the library gives up on the analysis: a value is of a kind that cannot be what it is for.
bool is_unusable(const Node& root) {
    if (root.kind != Kind::object && root.kind != Kind::null) {
        return true;
    }
    const Node& references = at(root, "reference_file");
    if (references.kind == Kind::object && !references.members.empty()) {
        return true;
    }
    for (const Node& entry : references.items) {
        if ((entry.kind != Kind::object && entry.kind != Kind::null) || is_container(at(entry, "path"))) {
            return true;
        }
    }
    return false;
}

// The C runtime's reading of a decimal number, as far as its sign.
bool is_negative(const Node& frame) {
    const std::string text = as_text(frame);
    const std::size_t sign = text.find_first_not_of(" \t\n\v\f\r");
    if (sign == std::string::npos || text[sign] != '-') {
        return false;
    }
    const std::size_t digit = text.find_first_not_of('0', sign + 1);
    return digit != std::string::npos && text[digit] >= '1' && text[digit] <= '9';
}

enum class Outcome { built, unusable, start_negative, end_negative };

Outcome expected(const Node& before) {
    if (is_unusable(before) || is_container(at(before, "start_frame"))) {
        return Outcome::unusable;
    }
    if (is_negative(at(before, "start_frame"))) {
        return Outcome::start_negative;
    }
    if (is_container(at(before, "end_frame"))) {
        return Outcome::unusable;
    }
    return is_negative(at(before, "end_frame")) ? Outcome::end_negative : Outcome::built;
}

Outcome build(Json::Value& analysis, Job& job) {
    try {
        switch (tarvo::BuildSubmitDocument(analysis, job.scene, job.scene_file)) {
        case DocumentProblem::none:
            return Outcome::built;
        case DocumentProblem::start_frame_negative:
            return Outcome::start_negative;
        case DocumentProblem::end_frame_negative:
            return Outcome::end_negative;
        default:
            rule(false, "an edit has no other answer");
        }
    } catch (const std::exception&) {
    }
    return Outcome::unusable;
}

Node text_node(const std::string& text) {
    Node node;
    node.kind = Kind::text;
    node.text = text;
    return node;
}

bool is_number(const Node& node, double wanted) {
    return std::isnan(wanted) ? node.kind == Kind::null
                              : node.kind == Kind::number && node.number() == wanted;
}

bool is_truth(const Node& node, bool wanted) {
    return node.kind == Kind::truth && node.truth == wanted;
}

bool is_text(const Node& node, const std::wstring& wanted) {
    return node.kind == Kind::text && node.text == base::to_utf8(std::wstring(wanted.c_str()));
}

void check_kept(const Node& before, const Node& after) {
    std::set<std::string> names;
    for (const auto& member : after.members) {
        rule(names.insert(member.first).second, "no member is written twice");
        rule(kEdited.count(member.first) != 0 || before.find(member.first) != nullptr,
             "no member comes from nowhere");
    }
    for (const auto& member : before.members) {
        if (kEdited.count(member.first) == 0) {
            rule(at(after, member.first.c_str()) == member.second && names.count(member.first) == 1,
                 "what is not edited stays as it is");
        }
    }
}

// Absent where the analysis had something, null where it had nothing.
void check_dropped(const Node& before, const Node& after, const char* name) {
    const bool had = at(before, name).kind != Kind::null;
    const Node* left = after.find(name);
    rule(had ? left == nullptr : left != nullptr && left->kind == Kind::null,
         "a list that is dropped is absent or null");
}

void check_references(const Node& before, const Node& after, const std::string& scene_path) {
    Node wanted;
    wanted.kind = Kind::array;
    for (const Node& entry : at(before, "reference_file").items) {
        const std::string path = as_text(at(entry, "path"));
        if (path != scene_path) {
            Node reduced;
            reduced.kind = Kind::object;
            reduced.members.emplace_back("path", text_node(path));
            wanted.items.push_back(reduced);
        }
    }
    const Node* left = after.find("reference_file");
    rule(wanted.items.empty() ? left == nullptr : left != nullptr && *left == wanted,
         "the references are the paths of all files but the scene");
}

void check_cameras(const Node& before, const Node& after, const tarvo::CameraMap& cameras) {
    const Node& written = at(after, "cameras");
    std::size_t next = 0;
    for (const auto& camera : cameras) {
        const tarvo::CameraRecord& record = camera.second;
        if (!record.checked) {
            continue;
        }
        rule(next < written.items.size(), "every ticked camera is written");
        const Node& node = written.items[next++];
        rule(node.members.size() == 8, "a camera has eight members");
        rule(is_text(at(node, "name"), camera.first) &&
                 is_text(at(node, "img_output_name"), record.img_output_name) &&
                 is_text(at(node, "img_output_format"), record.image_format) &&
                 is_text(at(node, "renderable"), L"1"),
             "a camera's texts are its record's");
        rule(is_number(at(node, "camera_width"), record.image_width) &&
                 is_number(at(node, "camera_height"), record.image_height) &&
                 is_number(at(node, "frame_to_render"), record.start_frame) &&
                 is_truth(at(node, "is_spherical"), record.is_spherical),
             "a camera's numbers are its record's");
    }
    rule(written.items.size() == next, "no other camera is written");
    if (next == 0) {
        check_dropped(before, after, "cameras");
    }
}

void check_options(const Node& after, const tarvo::SceneData& scene) {
    const bool blocks = scene.num_blocks != 1;
    rule(is_number(at(after, "enable_blocking"), blocks ? 1 : 0) &&
             is_number(at(after, "num_blocks"), blocks ? scene.num_blocks : 0),
         "the blocks are the user's");
    const Node& options = at(after, "max_options");
    rule(options.members.size() == (scene.ao_channel ? 5u : 3u), "the options have no other members");
    rule(is_truth(at(options, "color_channel"), scene.color_channel) &&
             is_truth(at(options, "ao_channel"), scene.ao_channel) &&
             is_number(at(options, "gamma_out"), static_cast<double>(scene.gamma_out)),
         "the options are the user's");
    rule(!scene.ao_channel || (is_number(at(options, "ao_radius"), scene.ao_radius) &&
                               is_number(at(options, "ao_subdivs"), scene.ao_subdivs)),
         "the occlusion's numbers are the user's");
}

void check_document(const Node& before, const Node& after, Job& job) {
    rule(after.kind == Kind::object, "a document is an object");
    check_kept(before, after);
    check_dropped(before, after, "errors");
    check_dropped(before, after, "missing_file");
    check_references(before, after, job.scene.scene_path);
    check_cameras(before, after, job.scene.cameras());
    check_options(after, job.scene);
    rule(at(after, "name") == text_node(job.scene_file), "the name is the scene's that is submitted");
    for (const char* frame : {"start_frame", "end_frame"}) {
        rule(after.find(frame) != nullptr && at(after, frame) == at(before, frame),
             "frames stay, or become null");
    }
}

// Built again from itself, a document differs in explicit nulls alone.
void check_again(const Json::Value& document, const Node& after, Job& job) {
    Json::Value again = document;
    rule(build(again, job) == Outcome::built, "a document can be built from a document");
    Node twice = tree_of(again);
    Node once = after;
    for (Node* each : {&once, &twice}) {
        auto& members = each->members;
        for (auto member = members.begin(); member != members.end();) {
            member = member->second.kind == Kind::null ? members.erase(member) : member + 1;
        }
    }
    rule(once == twice, "built again from itself, a document stays");
}

// Bytes that are no UTF-8 and halves of surrogate pairs never reach this step: the analysis comes from wide
// text. Written and read once, there are none.
bool read_input(const std::uint8_t* data, std::size_t size, Json::Value& root) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    if (!tarvo::ParseJson(text, root) || !root.isObject()) {
        return false;
    }
    if (text.find('\0') != std::string::npos || text.find("\\u0000") != std::string::npos) {
        return false; // the library writes a member's name as far as its first zero
    }
    const bool plain = text.find("\\u") == std::string::npos && base::is_utf8(text);
    return plain || tarvo::ParseJson(tarvo::StyledJson(Json::Value(root)), root);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Json::Value root;
    if (!read_input(data, size, root)) {
        return 0;
    }
    Json::Value analysis = member(root, "analysis");
    static Job job;
    fill(member(root, "choices"), job);
    const fuzz::JsonText before = fuzz::read_json(fuzz::compact(analysis, size * 8 + 64));
    if (!before.good) {
        return 0; // nested more deeply than our reader goes
    }
    const Outcome outcome = build(analysis, job);
    rule(outcome == expected(before.root), "an analysis is refused for its kinds and its frames alone");
    if (outcome == Outcome::built) {
        const Node after = tree_of(analysis);
        check_document(before.root, after, job);
        if (fuzz::one_in(8, data, size)) {
            check_again(analysis, after, job);
        }
    }
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t capacity,
                                               unsigned seed) {
    fuzz::AnalysisMutator mutator(seed);
    if (mutator.one_in(8)) {
        return LLVMFuzzerMutate(data, size, capacity);
    }
    Json::Value root = fuzz::from_buffer(data, size);
    if (!root.isObject()) {
        root = Json::Value(Json::objectValue);
    }
    if (mutator.one_in(3)) {
        mutator.change_choices(root["choices"], root["analysis"]);
    } else {
        mutator.change(root["analysis"]);
    }
    const std::size_t changed = fuzz::to_buffer(root, data, capacity);
    return changed != 0 ? changed : LLVMFuzzerMutate(data, size, capacity);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data1, std::size_t size1,
                                                 const std::uint8_t* data2, std::size_t size2,
                                                 std::uint8_t* out, std::size_t capacity, unsigned seed) {
    Json::Value root = fuzz::from_buffer(data1, size1);
    const Json::Value other = fuzz::from_buffer(data2, size2);
    if (!root.isObject()) {
        root = Json::Value(Json::objectValue);
    }
    fuzz::AnalysisMutator(seed).cross(root["analysis"], member(other, "analysis"));
    return fuzz::to_buffer(root, out, capacity);
}

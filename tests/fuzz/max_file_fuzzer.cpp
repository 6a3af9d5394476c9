// Feeds damaged streams to the reader of .max files, damaged files to the check of their layout, and reads
// back scenes that were composed from any names. The first byte of the input chooses.
#include "standin/base/text.h"
#include "standin/max_file/gunzip.h"
#include "standin/max_file/scene_chunks.h"
#include "standin/max_file/scene_composer.h"
#include "standin/max_file/storage_layout.h"
#include "tests/fuzz/support/rule.h"
#include "tests/fuzz/support/scene_oracle.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace {

using fuzz::rule;
using max_file::ByteBuffer;
using max_file::SceneModel;
using max_file::SceneStreams;

bool begins(const std::string& text, const char* start) {
    return text.compare(0, std::strlen(start), start) == 0;
}

bool same(const SceneModel& one, const SceneModel& other) {
    return one.cameras == other.cameras && one.references.size() == other.references.size() &&
           one.notes == other.notes && one.width == other.width && one.height == other.height &&
           one.start_frame == other.start_frame && one.end_frame == other.end_frame &&
           one.version == other.version && one.app_version == other.app_version &&
           one.renderer == other.renderer && one.render_cameras == other.render_cameras;
}

void check_references(const SceneStreams& streams, const SceneModel& model) {
    constexpr std::size_t kSmallestRecord = 16 + 3 * (4 + 2);
    const std::size_t bytes = streams.referenced_files.bytes.size();
    rule(model.references.size() * kSmallestRecord <= bytes,
         "a list holds no more records than bytes for them");
    for (const max_file::ReferencedFile& file : model.references) {
        rule(file.named.size() * 2 <= bytes && file.named.find(L'\0') == std::wstring::npos,
             "a path is no longer than its bytes");
    }
}

bool check_streams(const SceneStreams& streams, SceneModel& model, bool twice) {
    std::string problem;
    const bool good = max_file::read_scene(streams, model, problem);
    rule(good == problem.empty(), "a refusal has a reason, and nothing else has");
    if (!good) {
        rule(begins(problem, "is damaged: stream "), "the reason names the stream");
        return false;
    }
    rule(model.width >= 1 && model.height >= 1 && model.summary_camera_count >= max_file::kCameraCountUnknown,
         "a size is a size");
    check_references(streams, model);
    std::vector<std::wstring> cameras;
    rule(fuzz::find_cameras(streams.class_directory, streams.scene, cameras) && cameras == model.cameras,
         "the cameras are the nodes that lead to one");
    SceneModel again;
    rule(!twice || (max_file::read_scene(streams, again, problem) && same(model, again)),
         "read twice, a scene is the same");
    return true;
}

// The two streams of a sound scene that it must have; a target puts one of its own in and takes it out again.
SceneStreams& sample() {
    static SceneStreams streams = [] {
        SceneStreams needed = max_file::compose_scene(max_file::sample_model()).streams;
        needed.referenced_files = needed.summary = max_file::OptionalStream();
        return needed;
    }();
    return streams;
}

void check_sample(const ByteBuffer& bytes) {
    static SceneModel model;
    check_streams(sample(), model, fuzz::one_in(4, bytes.data(), bytes.size()));
}

void in_place_of(ByteBuffer& stream, const ByteBuffer& bytes) {
    ByteBuffer other = bytes;
    stream.swap(other);
    check_sample(bytes);
    stream.swap(other);
}

void in_addition(max_file::OptionalStream& stream, const ByteBuffer& bytes) {
    stream.present = true;
    stream.bytes = bytes;
    check_sample(bytes);
    stream.present = false;
}

// Class directory and scene together: two bytes for the length of the first.
void two_streams(const ByteBuffer& bytes) {
    if (bytes.size() < 2) {
        return;
    }
    const std::size_t length = std::min<std::size_t>(bytes[0] | bytes[1] << 8, bytes.size() - 2);
    const auto middle = bytes.begin() + 2 + static_cast<std::ptrdiff_t>(length);
    SceneStreams streams;
    streams.class_directory.assign(bytes.begin() + 2, middle);
    streams.scene.assign(middle, bytes.end());
    SceneModel model;
    if (check_streams(streams, model, true)) {
        rule(model.notes.size() == 2 && model.references.empty(), "a missing stream is noted");
    }
}

std::string layout_problem(const ByteBuffer& file, std::size_t& reads) {
    reads = 0;
    return max_file::storage_problem(
        [&file, &reads](std::uint64_t offset, std::uint8_t* buffer, std::size_t count) {
            rule(offset <= file.size() && count <= file.size() - offset, "nothing is read behind the end");
            std::copy_n(file.begin() + static_cast<std::ptrdiff_t>(offset), count, buffer);
            ++reads;
            return true;
        },
        file.size());
}

void check_layout(const ByteBuffer& file) {
    std::size_t reads = 0;
    const std::string problem = layout_problem(file, reads);
    rule(problem.empty() || begins(problem, "is "), "the reason goes on behind the file's name");
    rule(reads <= 4 * (file.size() / 512 + 4), "no part of the file is read over and over");
    if (problem.empty()) {
        rule(file.size() >= 1024, "a sound file has more than a header");
        const ByteBuffer header(file.begin(), file.begin() + 512);
        rule(!layout_problem(header, reads).empty(), "a header alone is cut off");
    }
}

// Texts of the input, as UTF-16 without zeros; a line feed parts them.
std::vector<std::wstring> texts_of(const ByteBuffer& bytes) {
    std::vector<std::wstring> texts(1);
    constexpr std::size_t kLongest = 64; // composing takes its time
    for (std::size_t at = 0; at + 1 < std::min(bytes.size(), kLongest); at += 2) {
        const auto unit = static_cast<wchar_t>(bytes[at] | bytes[at + 1] << 8);
        if (unit == L'\n') {
            texts.emplace_back();
        } else if (unit != 0) {
            texts.back() += unit;
        }
    }
    return texts;
}

void compose_and_read(const ByteBuffer& bytes) {
    const std::vector<std::wstring> texts = texts_of(bytes);
    SceneModel model = max_file::sample_model();
    model.cameras.clear();
    model.references.clear();
    for (std::size_t at = 0; at < texts.size(); ++at) {
        if (at % 2 == 0) {
            model.cameras.push_back(texts[at]);
        } else {
            model.references.push_back({L"Bitmap", texts[at], texts[at - 1]});
        }
    }
    model.width = 1 + static_cast<std::int32_t>(bytes.size());
    model.render_cameras.clear();
    SceneStreams streams = max_file::compose_scene(model).streams;
    SceneModel read;
    rule(check_streams(streams, read, true), "a composed scene is read");
    rule(read.cameras == model.cameras && read.references.size() == model.references.size() &&
             std::equal(read.references.begin(), read.references.end(), model.references.begin(),
                        [](const max_file::ReferencedFile& one, const max_file::ReferencedFile& other) {
                            return one.named == other.named && one.found == other.found &&
                                   one.kind == other.kind;
                        }),
         "cameras and files come back as they were");
    rule(read.width == model.width && read.version == model.version && read.app_version == model.app_version,
         "size and version come back");
    std::string problem;
    streams.scene.pop_back();
    rule(!max_file::read_scene(streams, read, problem), "a scene that lacks its last byte is damaged");
}

void unpack(const ByteBuffer& bytes) {
    constexpr std::size_t kLimit = 1 << 16;
    ByteBuffer unpacked;
    std::string problem;
    if (max_file::gunzip(bytes, kLimit, unpacked, problem)) {
        rule(unpacked.size() <= kLimit && max_file::is_gzip(bytes), "what is unpacked keeps to its limit");
        ByteBuffer rest;
        rule(unpacked.empty() || !max_file::gunzip(bytes, unpacked.size() - 1, rest, problem),
             "one byte more than the limit is too much");
    } else {
        rule(!problem.empty(), "a refusal has a reason");
    }
}

void class_directory(const ByteBuffer& bytes) {
    in_place_of(sample().class_directory, bytes);
}
void scene(const ByteBuffer& bytes) {
    in_place_of(sample().scene, bytes);
}
void referenced_files(const ByteBuffer& bytes) {
    in_addition(sample().referenced_files, bytes);
}
void summary(const ByteBuffer& bytes) {
    in_addition(sample().summary, bytes);
}

// The dear ones come once.
using Target = void (*)(const ByteBuffer&);
constexpr Target kTargets[] = {
    class_directory,
    scene,
    referenced_files,
    summary,
    two_streams,
    check_layout,
    compose_and_read,
    unpack,
    class_directory,
    scene,
    referenced_files,
    summary,
    two_streams,
    check_layout,
    scene,
    summary,
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const ByteBuffer bytes(data + 1, data + size);
    kTargets[data[0] % (sizeof kTargets / sizeof kTargets[0])](bytes);
    return 0;
}

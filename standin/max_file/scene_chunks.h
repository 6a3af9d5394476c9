// Reads the streams of a scene file that consist of chunks, and the list of referenced files. Every length is
// checked: damaged bytes give false and an English reason ("chunk at byte 12 reaches past the end").
#pragma once

#include "standin/max_file/scene_bytes.h"
#include "standin/max_file/scene_model.h"

#include <cstdint>
#include <string>
#include <vector>

namespace max_file {

constexpr std::uint32_t kNodeSuperClass = 0x1;
constexpr std::uint32_t kCameraSuperClass = 0x20;

// Chunk ids.
constexpr std::uint16_t kClassName = 0x2042;
constexpr std::uint16_t kClassIds = 0x2060;
constexpr std::uint16_t kReferenceList = 0x2034;
constexpr std::uint16_t kReferencePairs = 0x2035;
constexpr std::uint16_t kNodeName = 0x0962;

// An object with modifiers has one of these ids instead of a class index; the object itself is one of its
// references.
constexpr std::uint16_t kObjectWithModifiers = 0x2032;
constexpr std::uint16_t kObjectWithWorldModifiers = 0x2033;

struct Chunk {
    std::uint16_t id = 0;
    bool is_container = false;
    std::size_t offset = 0; // of the header, in the bytes walked
    Bytes content;
};

// Walks over consecutive chunks. The bytes must outlive the walk.
class ChunkWalk {
public:
    explicit ChunkWalk(Bytes bytes) : cursor_(bytes) {}

    // False at the end, and at damaged bytes: then `problem()` is not empty.
    bool next(Chunk& chunk);
    const std::string& problem() const { return problem_; }

private:
    bool fail(std::size_t offset, const char* what);

    ByteCursor cursor_;
    std::string problem_;
};

struct SceneClass {
    std::wstring name;
    std::int32_t library = -1; // index into the file's list of libraries; negative: part of the host
    std::uint32_t id_a = 0;
    std::uint32_t id_b = 0;
    std::uint32_t super_class = 0;
};

bool read_class_directory(Bytes stream, std::vector<SceneClass>& classes, std::string& problem);

// The names of the nodes that are cameras, in scene order.
bool read_cameras(Bytes scene, const std::vector<SceneClass>& classes, std::vector<std::wstring>& cameras,
                  std::string& problem);

bool read_referenced_files(Bytes stream, std::vector<ReferencedFile>& files, std::string& problem);

} // namespace max_file

// Turns the streams of a scene file into the model of the scene.
#pragma once

#include "standin/max_file/scene_model.h"

#include <cstdint>
#include <string>
#include <vector>

namespace max_file {

// Their names inside the file.
constexpr const wchar_t* kClassDirectoryStream = L"ClassDirectory3";
constexpr const wchar_t* kSceneStream = L"Scene";
constexpr const wchar_t* kReferencedFilesStream = L"FileAssetMetaData3";
constexpr const wchar_t* kSummaryStream = L"\x05"
                                          L"DocumentSummaryInformation";

using ByteBuffer = std::vector<std::uint8_t>;

struct OptionalStream {
    bool present = false;
    ByteBuffer bytes;
};

struct SceneStreams {
    ByteBuffer class_directory;
    ByteBuffer scene;
    OptionalStream referenced_files;
    OptionalStream summary;
};

// Fills `model` but keeps its path. A missing optional stream adds a note and keeps the defaults. False: a
// stream is damaged, and `problem` is the end of a sentence that begins with the file ("is damaged: ...").
bool read_scene(const SceneStreams& streams, SceneModel& model, std::string& problem);

std::string shown_name(const wchar_t* stream);
// Puts "is damaged: stream NAME: " before `problem`. Always false.
bool fail_stream(const wchar_t* stream, std::string& problem);

} // namespace max_file

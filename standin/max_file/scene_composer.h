// Composes the streams of a small scene file from a model, in the format in which the host writes them: every
// camera of the model, one mesh, the grid, the referenced files and the summary. The same model gives the
// same bytes. Without the render settings, which a scene file does not contain.
#pragma once

#include "standin/max_file/scene_reader.h"

namespace max_file {

constexpr const wchar_t* kLibrariesStream = L"DllDirectory";
constexpr const wchar_t* kTitleStream = L"\x05"
                                        L"SummaryInformation";

struct ComposedScene {
    SceneStreams streams;
    ByteBuffer libraries;
    ByteBuffer title;
};

// The model `make_scene` starts from: three cameras, one with a Chinese name, 1280 x 720, saved by 21.0
// (2019), two referenced files: one that exists on every Windows, one that does not exist.
SceneModel sample_model();

ComposedScene compose_scene(const SceneModel& model);

} // namespace max_file

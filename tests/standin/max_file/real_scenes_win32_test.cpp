// Scenes that the host itself saved. They are no part of the project: TARVO_REAL_SCENES names the folder that
// holds them, and without such a folder these tests are skipped.
#include "common/text.h"
#include "standin/max_file/scene_file_win32.h"
#include "tests/support/system_error.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>

namespace {

using max_file::SceneModel;

struct KnownScene {
    const wchar_t* version;
    std::vector<std::wstring> cameras;
    // The file names at the end of the referenced paths, sorted.
    std::vector<std::wstring> references;
    std::int32_t width;
    std::int32_t height;
};

// What a user of the host sees in these scenes.
const std::map<std::wstring, KnownScene>& known_scenes() {
    static const std::map<std::wstring, KnownScene> scenes = {
        {L"AnimatedMeshCameraLight.max",
         {L"21.0",
          {L"UserCamera", L"CameraTargetAnimatedMesh", L"CameraAnimatedTarget", L"AnimatedFreeCamera",
           L"AnimatedCameraTarget"},
          {L"UV_Checker.png"},
          640,
          480}},
        {L"DoubleSidedMaterial.max",
         {L"21.0", {L"PhysCamera001"}, {L"TestImage.png", L"UV_Checker.png", L"Warhol.jpg"}, 640, 480}},
        {L"PBR_Textures.max",
         {L"19.0",
          {},
          {L"AmbientOcclusion.jpg", L"UV_Checker.png", L"bump.jpg", L"environment.dds",
           L"gradation_horizontal.jpg", L"gradation_vertical.jpg", L"sun.jpg", L"wood.jpg"},
          640,
          480}},
        {L"RiggedElf.max",
         {L"20.0",
          {},
          {L"AmbientOcclusion.jpg", L"UV_Checker.png", L"bump.jpg", L"gradation_horizontal.jpg",
           L"gradation_vertical.jpg", L"sun.jpg", L"wood.jpg"},
          640,
          480}},
    };
    return scenes;
}

std::wstring real_scene_folder() {
    const char* folder = std::getenv("TARVO_REAL_SCENES");
    const std::wstring path = folder == nullptr ? L"" : tarvo::Utf8ToWide(folder);
    return !path.empty() && path[0] == L'/' ? L"Z:" + path : path;
}

std::vector<std::wstring> scene_names(const std::wstring& folder) {
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW found = {};
    const HANDLE search = ::FindFirstFileW((folder + L"\\*.max").c_str(), &found);
    if (search != INVALID_HANDLE_VALUE) {
        do {
            names.emplace_back(found.cFileName);
        } while (::FindNextFileW(search, &found) != 0);
        ::FindClose(search);
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::wstring> sorted(std::vector<std::wstring> texts) {
    std::sort(texts.begin(), texts.end());
    return texts;
}

std::vector<std::wstring> referenced_names(const SceneModel& model) {
    std::vector<std::wstring> names;
    for (const max_file::ReferencedFile& file : model.references) {
        names.push_back(file.named.substr(file.named.find_last_of(L"\\/") + 1));
    }
    return sorted(names);
}

std::string lines(const std::vector<std::wstring>& texts) {
    std::string all;
    for (const std::wstring& text : texts) {
        all += tarvo::WideToUtf8(text) + "\n";
    }
    return all;
}

class RealScenes : public ::testing::Test {
protected:
    void SetUp() override {
        folder_ = real_scene_folder();
        if (scene_names(folder_).empty()) {
            GTEST_SKIP() << "no real scene in the folder TARVO_REAL_SCENES ('" << tarvo::WideToUtf8(folder_)
                         << "')";
        }
    }

    SceneModel open(const std::wstring& name) {
        SceneModel model;
        std::wstring problem;
        EXPECT_TRUE(max_file::open_scene_file(folder_ + L"\\" + name, model, problem))
            << tarvo::WideToUtf8(problem);
        return model;
    }

    std::wstring folder_;
};

// The host wrote the cameras a second time, into the file's summary.
TEST_F(RealScenes, CamerasMatchTheSummaryOfTheFile) {
    for (const std::wstring& name : scene_names(folder_)) {
        SCOPED_TRACE(tarvo::WideToUtf8(name));
        const SceneModel model = open(name);
        ASSERT_NE(max_file::kCameraCountUnknown, model.summary_camera_count);
        EXPECT_EQ(static_cast<std::size_t>(model.summary_camera_count), model.cameras.size());
        EXPECT_EQ(lines(sorted(model.render_cameras)), lines(sorted(model.cameras)));
    }
}

TEST_F(RealScenes, EverySceneHasAVersionAndAPictureSize) {
    for (const std::wstring& name : scene_names(folder_)) {
        SCOPED_TRACE(tarvo::WideToUtf8(name));
        const SceneModel model = open(name);
        EXPECT_FALSE(model.version.empty());
        EXPECT_LT(0, model.width);
        EXPECT_LT(0, model.height);
        EXPECT_EQ("", lines(model.notes));
    }
}

TEST_F(RealScenes, KnownScenesMatchTheHost) {
    for (const std::wstring& name : scene_names(folder_)) {
        const auto known = known_scenes().find(name);
        if (known == known_scenes().end()) {
            continue;
        }
        SCOPED_TRACE(tarvo::WideToUtf8(name));
        const SceneModel model = open(name);
        EXPECT_EQ(tarvo::WideToUtf8(known->second.version), tarvo::WideToUtf8(model.version));
        EXPECT_EQ(lines(known->second.cameras), lines(model.cameras));
        EXPECT_EQ(lines(known->second.references), lines(referenced_names(model)));
        EXPECT_EQ(known->second.width, model.width);
        EXPECT_EQ(known->second.height, model.height);
    }
}

} // namespace

#include "scene/camera.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

namespace {

using tarvo::CameraCheck;
using tarvo::CameraMap;
using tarvo::CameraRow;

constexpr unsigned kClear = 1;
constexpr unsigned kTicked = 2;

struct Result {
    CameraCheck check;
    std::vector<std::string> lines;
};

Result check(const std::vector<CameraRow>& rows, CameraMap& cameras) {
    tarvo::Logger log("t_rules", 5, 2, 0);
    const std::size_t mark = support::log_mark("t_rules");
    const auto row = [&rows](int index) { return rows.at(static_cast<std::size_t>(index)); };
    const CameraCheck result = tarvo::CheckCameras(row, cameras, log);
    return {result, support::log_lines_since("t_rules", mark)};
}

CameraMap cameras_named(const std::vector<std::wstring>& names) {
    CameraMap cameras;
    for (const std::wstring& name : names) {
        cameras[name] = tarvo::CameraRecord();
    }
    return cameras;
}

using Lines = std::vector<std::string>;

TEST(CameraRules, NoneTickedIsReportedAndClearsAllStoredTicks) {
    CameraMap cameras = cameras_named({L"a", L"b", L"c"});
    cameras[L"b"].checked = true;
    const Result result = check({{L"a", kClear}, {L"b", kClear}, {L"c", kClear}}, cameras);
    EXPECT_EQ(result.check, CameraCheck::none_checked);
    EXPECT_EQ(result.lines, (Lines{"[ERROR] No camera checked!"}));
    EXPECT_FALSE(cameras[L"b"].checked);
}

TEST(CameraRules, EmptyCollectionCountsAsNoneTicked) {
    CameraMap cameras;
    EXPECT_EQ(check({}, cameras).check, CameraCheck::none_checked);
}

TEST(CameraRules, OneValidTickedCameraIsAccepted) {
    CameraMap cameras = cameras_named({L"Cam 1", L"b"});
    const Result result = check({{L"Cam 1", kTicked}, {L"b", kClear}}, cameras);
    EXPECT_EQ(result.check, CameraCheck::valid);
    EXPECT_EQ(result.lines, (Lines{"[INFO] The information of cameras to be submit is valid."}));
    EXPECT_TRUE(cameras[L"Cam 1"].checked);
}

TEST(CameraRules, FrameIsCheckedBeforeTheName) {
    CameraMap cameras = cameras_named({L"bad:name"});
    cameras[L"bad:name"].start_frame = -1;
    const Result result = check({{L"bad:name", kTicked}}, cameras);
    EXPECT_EQ(result.check, CameraCheck::negative_frame);
    EXPECT_EQ(result.lines, (Lines{"[ERROR] The parameter frame to render is less than 0!"}));
}

TEST(CameraRules, FrameZeroIsValid) {
    CameraMap cameras = cameras_named({L"Cam"});
    cameras[L"Cam"].start_frame = 0;
    EXPECT_EQ(check({{L"Cam", kTicked}}, cameras).check, CameraCheck::valid);
}

TEST(CameraRules, NamesThatAreNoFileNamesAreRefused) {
    for (const wchar_t* name :
         {L" a", L"a ", L"a.", L"", L"a:b", L"a|", L"\"a", L"a<b", L"a/b", L"a\\b", L"a?b"}) {
        CameraMap cameras = cameras_named({name});
        const Result result = check({{name, kTicked}}, cameras);
        EXPECT_EQ(result.check, CameraCheck::bad_name);
        EXPECT_EQ(result.lines,
                  (Lines{"[ERROR] The camera names to render contain invalid characters or empty!"}));
    }
}

TEST(CameraRules, UntickedRowIsNotChecked) {
    CameraMap cameras = cameras_named({L"Cam:1", L"ok"});
    EXPECT_EQ(check({{L"Cam:1", kClear}, {L"ok", kTicked}}, cameras).check, CameraCheck::valid);
}

TEST(CameraRules, TicksAfterAFailingRowAreNotCopied) {
    CameraMap cameras = cameras_named({L"a.", L"b"});
    cameras[L"b"].checked = false;
    EXPECT_EQ(check({{L"a.", kTicked}, {L"b", kTicked}}, cameras).check, CameraCheck::bad_name);
    EXPECT_TRUE(cameras[L"a."].checked);
    EXPECT_FALSE(cameras[L"b"].checked);
}

TEST(CameraRules, UnknownRowGetsADefaultRecord) {
    CameraMap cameras = cameras_named({L"a"});
    EXPECT_EQ(check({{L"stranger", kTicked}}, cameras).check, CameraCheck::valid);
    ASSERT_EQ(cameras.count(L"stranger"), 1u);
    EXPECT_EQ(cameras[L"stranger"].start_frame, 1);
    EXPECT_TRUE(cameras[L"stranger"].checked);
}

} // namespace

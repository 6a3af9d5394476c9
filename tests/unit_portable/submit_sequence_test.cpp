// The sequence runs without a window: one object stands for the dialog, the boxes and the steps, and writes
// down every call in the order in which it comes.
#include "dialog/submit_sequence.h"

#include "common/string_table.h"
#include "resources/resource_ids.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

using tarvo::PluginConfig;
using tarvo::SceneData;
using tarvo::WindowHandle;

using Calls = std::vector<std::string>;

WindowHandle window_number(std::uintptr_t number) {
    return reinterpret_cast<WindowHandle>(number);
}

const WindowHandle kDialog = window_number(0x1000);
const WindowHandle kNameField = window_number(0x2000);

constexpr const char* kEntered = "entered.max";
constexpr const char* kSceneFile = "C:\\scenes\\entered.max";
constexpr const wchar_t* kGuid = L"00000000-1111-2222-3333-444444444444";
constexpr const char* kGuidNarrow = "00000000-1111-2222-3333-444444444444";
constexpr const wchar_t* kCaption = L"the caption";

std::string narrow(const std::wstring& text) {
    return std::string(text.begin(), text.end());
}

class Bench : public tarvo::SubmitDialog, public tarvo::MessageBoxes, public tarvo::SubmitSteps {
public:
    // What the outside world does.
    std::int32_t check = 0;
    int answer = tarvo::kAnswerOk;
    bool finds_scene_file = true;
    bool makes_guid = true;
    bool accepts_archive = true;
    bool writes_document = true;
    std::set<int> checked;
    std::map<int, double> numbers = {
        {IDC_MAIN_AO_RADIUS, 12.5}, {IDC_MAIN_AO_SUBDIVS, 24.0}, {IDC_MAIN_GAMMA, 1.8}};
    std::wstring language_switch = L"0";

    Calls calls;
    PluginConfig loaded_into; // as it came to the loader
    PluginConfig checked_with;
    PluginConfig posted_with;
    SceneData scene;

    int run() { return tarvo::RunSubmitSequence(*this, *this, *this, scene, kCaption, language_switch); }

    // The dialog.
    WindowHandle window() override { return kDialog; }
    bool is_checked(int control) override {
        note("checked " + std::to_string(control));
        return checked.count(control) != 0;
    }
    double number(int control) override {
        note("number " + std::to_string(control));
        return numbers.at(control);
    }
    std::string scene_name() override {
        note("scene name");
        return kEntered;
    }
    WindowHandle field(int control) override {
        note("field " + std::to_string(control));
        return kNameField;
    }
    void close(int result) override { note("close " + std::to_string(result)); }

    // The boxes.
    int show(WindowHandle owner, const std::wstring& text, const std::wstring& caption, unsigned style,
             unsigned short language) override {
        EXPECT_EQ(owner, kDialog);
        EXPECT_EQ(caption, kCaption);
        note("box " + text_number(text) + " style " + std::to_string(style) + " language " +
             std::to_string(language));
        return answer;
    }

    // The steps.
    std::int32_t validate_cameras(WindowHandle dialog) override {
        EXPECT_EQ(dialog, kDialog);
        note("validate");
        return check;
    }
    void host_call() override { note("host call"); }
    std::string prepare_scene_file(const std::string& entered_name, WindowHandle name_field) override {
        EXPECT_EQ(name_field, kNameField);
        note("scene file for " + entered_name);
        return finds_scene_file ? kSceneFile : "";
    }
    std::wstring new_task_guid() override {
        note("guid");
        return makes_guid ? kGuid : L"";
    }
    void load_configuration(PluginConfig& config) override {
        note("configuration");
        loaded_into = config;
        config.clientIp = L"client";
        config.sceneFile = "overwritten by the sequence";
        config.jsonPath = L"folder";
    }
    void backup_scene_file() override { note("backup"); }
    void check_scene_viruses(const PluginConfig& config) override {
        note("viruses");
        checked_with = config;
    }
    bool prepare_archive(std::string scene_file, std::string field_text, std::wstring guid,
                         PluginConfig& config) override {
        note("archive " + scene_file + " " + field_text + " " + narrow(guid) + " " + config.sceneFile);
        config.archivePath = "archive";
        return accepts_archive;
    }
    void run_packer(std::string field_text, const PluginConfig& config) override {
        note("pack " + field_text + " " + config.archivePath);
    }
    void wait_milliseconds(unsigned milliseconds) override { note("wait " + std::to_string(milliseconds)); }
    bool write_document(WindowHandle owner, PluginConfig& config, const std::wstring& guid,
                        std::string& body) override {
        EXPECT_EQ(owner, kDialog);
        note("document " + narrow(guid) + " " + config.archivePath);
        config.jsonPath = L"folder/document";
        body = "body";
        return writes_document;
    }
    void post(PluginConfig config, std::string body, WindowHandle owner) override {
        EXPECT_EQ(owner, kDialog);
        note("post " + body);
        posted_with = config;
    }

private:
    void note(const std::string& call) { calls.push_back(call); }

    static std::string text_number(const std::wstring& text) {
        for (const unsigned id : {IDS_CAMERA_NAME_INVALID, IDS_FRAME_TO_RENDER_NEGATIVE, IDS_SCENE_FILE_EMPTY,
                                  IDS_NO_CAMERA_CHECKED, IDS_SCENE_NAME_UNUSABLE}) {
            if (tarvo::Text(id) == text) {
                return std::to_string(id);
            }
        }
        return "with another text";
    }
};

// Every call of a submission that goes through.
Calls all_calls(bool ao_channel, bool virus_check) {
    Calls calls = {"validate", "checked 1043", "checked 1044"};
    if (ao_channel) {
        calls.insert(calls.end(), {"number 1040", "number 1037"});
    }
    calls.insert(calls.end(),
                 {"number 1039", "host call", "scene name", "field 1036",
                  std::string("scene file for ") + kEntered, "guid", "configuration", "checked 1000"});
    if (virus_check) {
        calls.insert(calls.end(), {"backup", "viruses"});
    }
    const std::string archive =
        std::string("archive ") + kSceneFile + " " + kEntered + " " + kGuidNarrow + " " + kSceneFile;
    calls.insert(calls.end(), {archive, std::string("pack ") + kEntered + " archive", "wait 1000",
                               std::string("document ") + kGuidNarrow + " archive", "post body"});
    return calls;
}

struct Stop {
    const char* name;
    void (*arrange)(Bench& bench);
    const char* last_call; // how the last regular call begins
    Calls afterwards;
    int result;
};

const Stop kStops[] = {
    {"negative frame",
     [](Bench& bench) { bench.check = 1; },
     "validate",
     {"box 41 style 0 language 1033"},
     -1},
    {"bad name", [](Bench& bench) { bench.check = 2; }, "validate", {"box 38 style 0 language 1033"}, -1},
    {"no camera, cancelled",
     [](Bench& bench) {
         bench.check = 3;
         bench.answer = tarvo::kAnswerCancel;
     },
     "validate",
     {"box 72 style 1 language 1033"},
     -1},
    {"no scene file",
     [](Bench& bench) { bench.finds_scene_file = false; },
     "scene file for",
     {"box 64 style 0 language 1033"},
     0},
    {"no task id", [](Bench& bench) { bench.makes_guid = false; }, "guid", {}, 0},
    {"archive refused",
     [](Bench& bench) { bench.accepts_archive = false; },
     "archive",
     {"box 79 style 0 language 1033", "close 0"},
     -1},
    {"document not written", [](Bench& bench) { bench.writes_document = false; }, "document", {}, -1},
};

void tick_options(Bench& bench, bool ao_channel, bool virus_check) {
    if (ao_channel) {
        bench.checked.insert(IDC_MAIN_AO_CHANNEL);
    }
    if (virus_check) {
        bench.checked.insert(IDC_MAIN_VIRUS_CHECK);
    }
}

Calls calls_until(const Stop& stop, bool ao_channel, bool virus_check) {
    const std::string last = stop.last_call;
    Calls calls = all_calls(ao_channel, virus_check);
    const Calls::iterator found = std::find_if(calls.begin(), calls.end(), [&](const std::string& call) {
        return call.compare(0, last.size(), last) == 0;
    });
    calls.erase(found + 1, calls.end());
    calls.insert(calls.end(), stop.afterwards.begin(), stop.afterwards.end());
    return calls;
}

// Runs the body for every combination of the two options.
template <class Body>
void for_each_option(Body body) {
    for (const bool ao_channel : {false, true}) {
        for (const bool virus_check : {false, true}) {
            SCOPED_TRACE(::testing::Message() << "ao " << ao_channel << ", virus check " << virus_check);
            body(ao_channel, virus_check);
        }
    }
}

TEST(SubmitSequence, RunsEveryStepInOrder) {
    for_each_option([](bool ao_channel, bool virus_check) {
        Bench bench;
        tick_options(bench, ao_channel, virus_check);
        EXPECT_EQ(bench.run(), 1);
        EXPECT_EQ(bench.calls, all_calls(ao_channel, virus_check));
    });
}

TEST(SubmitSequence, EachStopEndsItWhereItIs) {
    for (const Stop& stop : kStops) {
        SCOPED_TRACE(stop.name);
        for_each_option([&stop](bool ao_channel, bool virus_check) {
            Bench bench;
            tick_options(bench, ao_channel, virus_check);
            stop.arrange(bench);
            EXPECT_EQ(bench.run(), stop.result);
            EXPECT_EQ(bench.calls, calls_until(stop, ao_channel, virus_check));
        });
    }
}

TEST(SubmitSequence, OfTwoStopsTheEarlierOneCounts) {
    const std::size_t count = sizeof kStops / sizeof *kStops;
    for (std::size_t earlier = 0; earlier < count; ++earlier) {
        for (std::size_t later = earlier + 1; later < count; ++later) {
            SCOPED_TRACE(std::string(kStops[earlier].name) + " before " + kStops[later].name);
            Bench bench;
            kStops[later].arrange(bench);
            bench.answer = tarvo::kAnswerOk;
            kStops[earlier].arrange(bench);
            EXPECT_EQ(bench.run(), kStops[earlier].result);
            EXPECT_EQ(bench.calls, calls_until(kStops[earlier], false, false));
        }
    }
}

TEST(SubmitSequence, NoCameraIsAQuestionThatOnlyCancelAnswersWithNo) {
    for (const int answer : {tarvo::kAnswerOk, 0, tarvo::kAnswerYes}) {
        Bench bench;
        bench.check = 3;
        bench.answer = answer;
        Calls expected = all_calls(false, false);
        expected.insert(expected.begin() + 1, "box 72 style 1 language 1033");
        EXPECT_EQ(bench.run(), 1);
        EXPECT_EQ(bench.calls, expected);
    }
}

TEST(SubmitSequence, OkDoesNotOverrideTheHardStops) {
    for (const std::int32_t check : {1, 2}) {
        for (const int answer : {tarvo::kAnswerOk, tarvo::kAnswerCancel, tarvo::kAnswerYes, 0}) {
            Bench bench;
            bench.check = check;
            bench.answer = answer;
            EXPECT_EQ(bench.run(), -1);
            EXPECT_EQ(bench.calls.size(), 2u);
        }
    }
}

TEST(SubmitSequence, UnknownCheckResultsGoOn) {
    for (const std::int32_t check : {-1, 4, 100}) {
        Bench bench;
        bench.check = check;
        EXPECT_EQ(bench.run(), 1);
        EXPECT_EQ(bench.calls, all_calls(false, false));
    }
}

TEST(SubmitSequence, TheLanguageSwitchDecidesTheBoxesLanguage) {
    struct {
        const wchar_t* language_switch;
        const char* box;
    } const cases[] = {{L"0", "box 41 style 0 language 1033"},
                       {L"00", "box 41 style 0 language 1"},
                       {L"", "box 41 style 0 language 1"},
                       {L"1", "box 41 style 0 language 1"}};
    for (const auto& one : cases) {
        Bench bench;
        bench.check = 1;
        bench.language_switch = one.language_switch;
        bench.run();
        EXPECT_EQ(bench.calls.back(), one.box);
    }
}

TEST(SubmitSequence, WithoutTheAoChannelItsStoredNumbersStay) {
    Bench bench;
    bench.scene.ao_channel = true;
    bench.scene.ao_radius = 77.0;
    bench.scene.ao_subdivs = 7;
    EXPECT_EQ(bench.run(), 1);
    EXPECT_FALSE(bench.scene.ao_channel);
    EXPECT_EQ(bench.scene.ao_radius, 77.0);
    EXPECT_EQ(bench.scene.ao_subdivs, 7);
    EXPECT_EQ(bench.scene.gamma_out, 1.8f);
}

TEST(SubmitSequence, WithTheAoChannelItsNumbersAreStored) {
    Bench bench;
    bench.checked = {IDC_MAIN_AO_CHANNEL, IDC_MAIN_COLOR_CHANNEL};
    EXPECT_EQ(bench.run(), 1);
    EXPECT_TRUE(bench.scene.color_channel);
    EXPECT_TRUE(bench.scene.ao_channel);
    EXPECT_EQ(bench.scene.ao_radius, 12.5);
    EXPECT_EQ(bench.scene.ao_subdivs, 24);
}

TEST(SubmitSequence, SubdivisionsAreTruncatedTowardsZero) {
    constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
    struct {
        double field;
        std::int32_t stored;
    } const cases[] = {{16.9, 16}, {-3.7, -3}, {0.0, 0}, {1e12, kLowest}, {std::nan(""), kLowest}};
    for (const auto& one : cases) {
        Bench bench;
        bench.checked = {IDC_MAIN_AO_CHANNEL};
        bench.numbers[IDC_MAIN_AO_SUBDIVS] = one.field;
        EXPECT_EQ(bench.run(), 1);
        EXPECT_EQ(bench.scene.ao_subdivs, one.stored) << one.field;
    }
}

TEST(SubmitSequence, OptionsAreStoredEvenWhenALaterStepStops) {
    Bench bench;
    bench.checked = {IDC_MAIN_COLOR_CHANNEL};
    bench.finds_scene_file = false;
    EXPECT_EQ(bench.run(), 0);
    EXPECT_TRUE(bench.scene.color_channel);
    EXPECT_EQ(bench.scene.gamma_out, 1.8f);
}

TEST(SubmitSequence, OptionsAreNotTouchedWhenTheCamerasAreRefused) {
    Bench bench;
    bench.checked = {IDC_MAIN_COLOR_CHANNEL};
    bench.check = 2;
    EXPECT_EQ(bench.run(), -1);
    EXPECT_FALSE(bench.scene.color_channel);
    EXPECT_EQ(bench.scene.gamma_out, 2.2f);
}

TEST(SubmitSequence, OneConfigurationGoesThroughAllSteps) {
    Bench bench;
    bench.checked = {IDC_MAIN_VIRUS_CHECK};
    EXPECT_EQ(bench.run(), 1);
    EXPECT_EQ(bench.checked_with.sceneFile, kSceneFile);
    EXPECT_EQ(bench.posted_with.clientIp, L"client");
    EXPECT_EQ(bench.posted_with.sceneFile, kSceneFile);
    EXPECT_EQ(bench.posted_with.archivePath, "archive");
    EXPECT_EQ(bench.posted_with.jsonPath, L"folder/document");
}

TEST(SubmitSequence, EveryPressStartsFromAFreshConfiguration) {
    Bench bench;
    EXPECT_EQ(bench.run(), 1);
    bench.loaded_into.clientPort = 0;
    EXPECT_EQ(bench.run(), 1);
    EXPECT_EQ(bench.loaded_into.clientPort, 80);
    EXPECT_TRUE(bench.loaded_into.archivePath.empty());
    EXPECT_TRUE(bench.loaded_into.jsonPath.empty());
}

} // namespace

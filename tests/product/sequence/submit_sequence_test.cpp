// The sequence without a window: every stop, every code, in every order.
#include "tests/product/sequence/submit_sequence_doubles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Every call of a successful submission.
Calls all_calls(bool ao_channel, bool virus_check) {
    Calls calls = {"validate", "checked 1043", "checked 1044"};
    if (ao_channel) {
        calls.insert(calls.end(), {"number 1040", "number 1037"});
    }
    calls.insert(calls.end(),
                 {"number 1039", "save", "field 1036", "scene name",
                  std::string("scene file for ") + kEntered, "guid", "configuration", "checked 1000"});
    if (virus_check) {
        calls.insert(calls.end(), {"backup", "viruses"});
    }
    const std::string archive =
        std::string("archive ") + kSceneFile + " " + kEntered + " " + kGuid + " " + kSceneFile;
    calls.insert(calls.end(), {archive, std::string("pack ") + kEntered + " archive", "wait 1000",
                               std::string("document ") + kGuid + " archive", "post body"});
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
     {"box [41] style 0 language 1033"},
     -1},
    {"bad name", [](Bench& bench) { bench.check = 2; }, "validate", {"box [38] style 0 language 1033"}, -1},
    {"no camera, cancelled",
     [](Bench& bench) {
         bench.check = 3;
         bench.answer = tarvo::kAnswerCancel;
     },
     "validate",
     {"box [72] style 1 language 1033"},
     -1},
    {"no scene file",
     [](Bench& bench) { bench.finds_scene_file = false; },
     "scene file for",
     {"box [64] style 0 language 1033"},
     0},
    {"no task id", [](Bench& bench) { bench.makes_guid = false; }, "guid", {}, 0},
    {"archive refused",
     [](Bench& bench) { bench.accepts_archive = false; },
     "archive",
     {"box [79] style 0 language 1033", "close 0"},
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

TEST(SubmitSequence, EachStopSkipsTheRemainingSteps) {
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

TEST(SubmitSequence, EarlierOfTwoStopsDecidesTheResult) {
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

TEST(SubmitSequence, NoTickedCameraStopsOnlyOnCancel) {
    for (const int answer : {tarvo::kAnswerOk, 0, tarvo::kAnswerYes}) {
        Bench bench;
        bench.check = 3;
        bench.answer = answer;
        Calls expected = all_calls(false, false);
        expected.insert(expected.begin() + 1, "box [72] style 1 language 1033");
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

TEST(SubmitSequence, UnknownCheckResultsDoNotStop) {
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
    } const cases[] = {{L"0", "box [41] style 0 language 1033"},
                       {L"00", "box [41] style 0 language 1"},
                       {L"", "box [41] style 0 language 1"},
                       {L"1", "box [41] style 0 language 1"}};
    for (const auto& one : cases) {
        Bench bench;
        bench.check = 1;
        bench.language_switch = one.language_switch;
        bench.run();
        EXPECT_EQ(bench.calls.back(), one.box);
    }
}

TEST(SubmitSequence, WithoutTheAoChannelItsStoredNumbersAreKept) {
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

TEST(SubmitSequence, OptionsAreNotChangedWhenTheCamerasAreRefused) {
    Bench bench;
    bench.checked = {IDC_MAIN_COLOR_CHANNEL};
    bench.check = 2;
    EXPECT_EQ(bench.run(), -1);
    EXPECT_FALSE(bench.scene.color_channel);
    EXPECT_EQ(bench.scene.gamma_out, 2.2f);
}

TEST(SubmitSequence, AllStepsShareOneConfiguration) {
    Bench bench;
    bench.checked = {IDC_MAIN_VIRUS_CHECK};
    EXPECT_EQ(bench.run(), 1);
    EXPECT_EQ(bench.checked_with.sceneFile, kSceneFile);
    EXPECT_EQ(bench.posted_with.clientIp, L"client");
    EXPECT_EQ(bench.posted_with.sceneFile, kSceneFile);
    EXPECT_EQ(bench.posted_with.archivePath, "archive");
    EXPECT_EQ(bench.posted_with.jsonPath, L"folder/document");
}

TEST(SubmitSequence, EveryRunStartsWithAFreshConfiguration) {
    Bench bench;
    EXPECT_EQ(bench.run(), 1);
    bench.loaded_into.clientPort = 0;
    EXPECT_EQ(bench.run(), 1);
    EXPECT_EQ(bench.loaded_into.clientPort, 80);
    EXPECT_TRUE(bench.loaded_into.archivePath.empty());
    EXPECT_TRUE(bench.loaded_into.jsonPath.empty());
}

} // namespace

// The bench on which the submit sequence runs without windows and host. This program links the sequence
// itself and defines every operation that it calls: submit_sequence_doubles.cpp has the doubles, which
// record the calls in their order and return what the test has set here.
#pragma once

#include "common/message_box.h"
#include "dialog/sequences.h"
#include "scene/scene_data.h"
#include "submit/plugin_config.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

using Calls = std::vector<std::string>;

constexpr const char* kEntered = "entered.max";
constexpr const char* kSceneFile = "C:\\scenes\\entered.max";
constexpr const char* kGuid = "00000000-1111-2222-3333-444444444444";

struct Bench {
    Bench();
    ~Bench();
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    int run();

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
    tarvo::PluginConfig loaded_into; // as passed to the loader
    tarvo::PluginConfig checked_with;
    tarvo::PluginConfig posted_with;
    tarvo::SceneData& scene = tarvo::SceneData::instance(); // its options are as at the start
};

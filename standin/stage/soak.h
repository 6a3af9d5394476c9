// Random actions of a user, the same ones for the same seed. An action is a step of a scenario.
#pragma once

#include <json/value.h>

#include <random>
#include <string>
#include <vector>

namespace stage {

struct SoakControl {
    int id;
    std::string window_class;
};

// What the choice of an action needs to know of the dialog on top.
struct SoakView {
    std::string dialog;                // "main", "edit"; empty when none is open
    std::vector<SoakControl> controls; // those that can be used
    int rows = 0;                      // of the camera table
    bool empty_name = false;           // of the camera that is being edited
};

class Soak {
public:
    explicit Soak(unsigned seed) : random_(seed) {}

    // One step. Opens the dialog when none is open, and fills an empty camera name before it can be
    // confirmed: confirming one throws, which has a scenario of its own.
    Json::Value next(const SoakView& view);

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
    Json::Value use_control(const SoakView& view);
    Json::Value use_row(const SoakView& view);
    Json::Value press_key();
    Json::Value type_into(int id);

    std::mt19937 random_;
};

} // namespace stage

#include "standin/stage/expectations.h"

#include "standin/stage/expectations_lists.h"
#include "standin/stage/json_match.h"

#include <sstream>

namespace stage {

namespace {

// The last box was the one with this text; null: there was no box.
void check_told(const Check& check, const Json::Value& told) {
    const Json::Value& boxes = check.transcript["boxes"];
    const bool none = boxes.empty();
    const Json::Value last = none ? Json::Value() : boxes[boxes.size() - 1];
    const bool held = told.isNull() ? none : !none && holds_number(last["text_numbers"], told);
    if (!held) {
        check.differ(check.place, told.isNull() ? "no box" : "text " + compact(told),
                     none ? "no box" : compact(last["text"]));
    }
}

void check_request_count(const Check& check, const Json::Value& count) {
    check.compare(count, Json::Value(check.transcript["requests"].size()));
}

void check_released(const Check& check, const Json::Value& wanted) {
    const Json::Value& leaks = check.transcript["leaks"];
    if (leaks.empty() != wanted.asBool()) {
        check.differ(check.place, wanted.asBool() ? "everything released" : "something left", compact(leaks));
    }
}

// A list or an object of the transcript under another or the same name, compared as it stands.
void check_dialog_state(const Check& check, const Json::Value& wanted, const char* which) {
    Json::Value state = wanted;
    for (Json::Value& row : state["rows"]) {
        if (row.isString()) {
            Json::Value named(Json::objectValue);
            named["name"] = row;
            row = named;
        }
    }
    if (!wanted.isMember("rows")) {
        state.removeMember("rows");
    }
    check.compare(state, check.transcript["dialog_state"][which]);
}

void check_main(const Check& check, const Json::Value& wanted) {
    check_dialog_state(check, wanted, "main");
}
void check_edit(const Check& check, const Json::Value& wanted) {
    check_dialog_state(check, wanted, "edit");
}

void check_lines(const Check& check, const Json::Value& wanted, const char* which) {
    Json::Value filled(Json::arrayValue);
    for (const Json::Value& line : wanted) {
        filled.append(line.isString() ? Json::Value(check.matcher.fill_in(line.asString())) : line);
    }
    check.compare(filled, check.transcript[which]);
}

void check_menus(const Check& check, const Json::Value& wanted) {
    check_lines(check, wanted, "menus");
}
void check_menus_after(const Check& check, const Json::Value& wanted) {
    check_lines(check, wanted, "menus_after_stop");
}

void check_exceptions(const Check& check, const Json::Value& wanted) {
    check.compare(wanted, texts_of(check.transcript["exceptions"], "what"));
}

void check_scripts(const Check& check, const Json::Value& wanted) {
    check.compare(wanted, texts_of(check.transcript["scripts"], "command"));
}

// What all scripts wrote into the host's listener, line by line.
void check_listener(const Check& check, const Json::Value& wanted) {
    Json::Value lines(Json::arrayValue);
    for (const Json::Value& script : check.transcript["scripts"]) {
        std::istringstream written(script["listener"].asString());
        for (std::string line; std::getline(written, line);) {
            lines.append(line);
        }
    }
    check.compare(wanted, lines);
}

void check_requests(const Check& check, const Json::Value& wanted) {
    check.compare(wanted, check.transcript["requests"]);
}
void check_dialogs(const Check& check, const Json::Value& wanted) {
    check.compare(wanted, check.transcript["dialogs"]);
}
void check_processes(const Check& check, const Json::Value& wanted) {
    check.compare(wanted, check.transcript["processes"]);
}
void check_opened(const Check& check, const Json::Value& wanted) {
    check.compare(wanted, check.transcript["opened"]);
}

void check_repeats(const Check& check, const Json::Value& wanted) {
    check.compare(wanted, check.transcript["repeats"]);
}
void check_soaks(const Check& check, const Json::Value& wanted) {
    check.compare(wanted, check.transcript["soaks"]);
}

struct Kind {
    const char* key;
    void (*check)(const Check& check, const Json::Value& wanted);
};

const Kind kKinds[] = {
    {"boxes", check_boxes},
    {"told", check_told},
    {"dialogs", check_dialogs},
    {"main", check_main},
    {"edit", check_edit},
    {"commands", check_commands},
    {"menus", check_menus},
    {"menus_after_stop", check_menus_after},
    {"request_count", check_request_count},
    {"requests", check_requests},
    {"files", check_files},
    {"no_files", check_no_files},
    {"log", check_log},
    {"host_calls", check_host_calls},
    {"scripts", check_scripts},
    {"listener", check_listener},
    {"processes", check_processes},
    {"opened", check_opened},
    {"exceptions", check_exceptions},
    {"released", check_released},
    {"repeats", check_repeats},
    {"soaks", check_soaks},
};

Json::Value outcome(const std::string& place, bool held) {
    Json::Value value(Json::objectValue);
    value["place"] = place;
    value["held"] = held;
    return value;
}

void append_mismatches(const std::vector<Mismatch>& mismatches, Json::Value& outcomes) {
    for (const Mismatch& mismatch : mismatches) {
        Json::Value value = outcome(mismatch.place, false);
        value["expected"] = mismatch.expected;
        value["got"] = mismatch.got;
        outcomes.append(value);
    }
}

} // namespace

bool evaluate_expectations(const Json::Value& expect, const Json::Value& transcript, const std::string& place,
                           Json::Value& outcomes) {
    const Matcher matcher(transcript["texts"], transcript["language"].asString());
    bool all_held = true;
    for (const Kind& kind : kKinds) {
        if (!expect.isMember(kind.key)) {
            continue;
        }
        std::vector<Mismatch> mismatches;
        const Check check = {matcher, transcript, place_of(place, kind.key), mismatches};
        kind.check(check, expect[kind.key]);
        if (mismatches.empty()) {
            outcomes.append(outcome(check.place, true));
        }
        append_mismatches(mismatches, outcomes);
        all_held = all_held && mismatches.empty();
    }
    return all_held;
}

bool evaluate_standing_rules(const Json::Value& expect, const Json::Value& transcript,
                             Json::Value& outcomes) {
    std::vector<Mismatch> mismatches;
    if (!expect.isMember("exceptions") && !transcript["exceptions"].empty()) {
        mismatches.push_back({"exceptions", "none leaves the module", compact(transcript["exceptions"])});
    }
    for (const Json::Value& box : transcript["boxes"]) {
        if (box["unanswered"].asBool()) {
            const Json::Value& numbers = box["text_numbers"];
            const std::string number = numbers.empty() ? "?" : compact(numbers[0]);
            mismatches.push_back({"answers." + number, "an answer to this question", "no such key"});
        }
    }
    append_mismatches(mismatches, outcomes);
    return mismatches.empty();
}

} // namespace stage

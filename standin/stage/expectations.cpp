#include "standin/stage/expectations.h"

#include "standin/base/text.h"
#include "standin/base/wildcards.h"
#include "standin/stage/json_match.h"

namespace stage {

namespace {

// One expectation of a scenario, with the list of its differences.
struct Check {
    const Matcher& matcher;
    const Json::Value& transcript;
    std::string key;
    std::string place;
    std::vector<Mismatch>& mismatches;

    void differ(const std::string& where, const std::string& expected, const std::string& got) const {
        mismatches.push_back({where, expected, got});
    }
    void compare(const Json::Value& expected, const Json::Value& got) const {
        matcher.match(expected, got, place, mismatches);
    }
};

bool holds_number(const Json::Value& numbers, const Json::Value& number) {
    for (const Json::Value& candidate : numbers) {
        if (candidate.asInt() == number.asInt()) {
            return true;
        }
    }
    return false;
}

// The member `key` of every entry.
Json::Value texts_of(const Json::Value& entries, const char* key) {
    Json::Value texts(Json::arrayValue);
    for (const Json::Value& entry : entries) {
        texts.append(entry[key]);
    }
    return texts;
}

void check_box(const Check& check, const Json::Value& wanted, const Json::Value& box,
               const std::string& place) {
    Json::Value rest = wanted;
    if (wanted["text"].isInt()) {
        rest.removeMember("text");
        if (!holds_number(box["text_numbers"], wanted["text"])) {
            check.differ(place_of(place, "text"),
                         compact(wanted["text"]) + " (" + check.matcher.text(wanted["text"].asUInt()) + ")",
                         compact(box["text_numbers"]) + " (" + box["text"].asString() + ")");
        }
    }
    // A caption is given by its text's number; 0 is the empty caption.
    if (wanted["caption"].isInt()) {
        rest["caption"] =
            wanted["caption"].asInt() == 0 ? "" : check.matcher.text(wanted["caption"].asUInt());
    }
    check.matcher.match(rest, box, place, check.mismatches);
}

std::string summary(const Json::Value& boxes) {
    std::string text;
    for (const Json::Value& box : boxes) {
        text += (text.empty() ? "" : ", ") + compact(box["text_numbers"]) + " " + box["text"].asString();
    }
    return text.empty() ? "no box" : text;
}

void check_boxes(const Check& check, const Json::Value& wanted) {
    const Json::Value& boxes = check.transcript["boxes"];
    if (wanted.size() != boxes.size()) {
        check.differ(check.place, std::to_string(wanted.size()) + " boxes",
                     std::to_string(boxes.size()) + ": " + summary(boxes));
    }
    for (Json::ArrayIndex i = 0; i < wanted.size() && i < boxes.size(); ++i) {
        check_box(check, wanted[i], boxes[i], place_of(check.place, i));
    }
}

// The last box has this text; null: there was no box.
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

void check_dialog_state(const Check& check, const Json::Value& wanted) {
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
    check.compare(state, check.transcript["dialog_state"][check.key]);
}

// Finds each wanted command, in this order; others may be between them.
void check_commands(const Check& check, const Json::Value& wanted) {
    const Json::Value& commands = check.transcript["commands"];
    Json::ArrayIndex at = 0;
    for (Json::ArrayIndex i = 0; i < wanted.size(); ++i, ++at) {
        while (at < commands.size() && !check.matcher.matches(wanted[i], commands[at])) {
            ++at;
        }
        if (at == commands.size()) {
            check.differ(place_of(check.place, i), compact(wanted[i]), compact(commands));
            return;
        }
    }
}

void check_menu_lines(const Check& check, const Json::Value& wanted) {
    Json::Value filled(Json::arrayValue);
    for (const Json::Value& line : wanted) {
        filled.append(line.isString() ? Json::Value(check.matcher.fill_in(line.asString())) : line);
    }
    check.compare(filled, check.transcript[check.key]);
}

void check_request_count(const Check& check, const Json::Value& count) {
    check.compare(count, Json::Value(check.transcript["requests"].size()));
}

void check_file_content(const Check& check, const Json::Value& wanted, const Json::Value& file,
                        const std::string& place) {
    if (wanted.isMember("min_size") && file["size"].asInt64() < wanted["min_size"].asInt64()) {
        check.differ(place_of(place, "min_size"), compact(wanted["min_size"]), compact(file["size"]));
    }
    for (const char* key : {"json", "text", "infection"}) {
        if (wanted.isMember(key)) {
            check.matcher.match(wanted[key], file[key], place_of(place, key), check.mismatches,
                                file.isMember(key));
        }
    }
}

void check_files(const Check& check, const Json::Value& wanted) {
    const Json::Value& files = check.transcript["files"];
    for (Json::ArrayIndex i = 0; i < wanted.size(); ++i) {
        const std::string place = place_of(check.place, i);
        unsigned found = 0;
        for (const Json::Value& file : files) {
            if (base::matches_wildcards(file["name"].asString(), wanted[i]["name"].asString())) {
                ++found;
                check_file_content(check, wanted[i], file, place);
            }
        }
        const bool counted = wanted[i].isMember("count");
        if (counted ? found != wanted[i]["count"].asUInt() : found == 0) {
            check.differ(place, wanted[i]["name"].asString(),
                         std::to_string(found) + " of " + compact(texts_of(files, "name")));
        }
    }
}

void check_no_files(const Check& check, const Json::Value& wanted) {
    for (const Json::Value& file : check.transcript["files"]) {
        for (const Json::Value& pattern : wanted) {
            if (base::matches_wildcards(file["name"].asString(), pattern.asString())) {
                check.differ(check.place, "no " + pattern.asString(), file["name"].asString());
            }
        }
    }
}

// "[INFO] message", which is what a scenario writes.
Json::Value log_texts(const Json::Value& lines) {
    Json::Value texts(Json::arrayValue);
    for (const Json::Value& line : lines) {
        texts.append("[" + line["level"].asString() + "] " + line["message"].asString());
    }
    return texts;
}

bool contains(const Matcher& matcher, const Json::Value& entries, const Json::Value& wanted) {
    for (const Json::Value& entry : entries) {
        if (matcher.matches(wanted, entry)) {
            return true;
        }
    }
    return false;
}

void check_none_with(const Check& check, const Json::Value& lines, const Json::Value& words,
                     const std::string& place) {
    for (const Json::Value& word : words) {
        for (const Json::Value& line : lines) {
            if (line.asString().find(word.asString()) != std::string::npos) {
                check.differ(place, "no line with " + word.asString(), line.asString());
            }
        }
    }
}

void check_log(const Check& check, const Json::Value& wanted) {
    for (const std::string& channel : wanted.getMemberNames()) {
        const Json::Value lines = log_texts(check.transcript["logs"][channel]);
        const Json::Value& rules = wanted[channel];
        const std::string place = place_of(check.place, channel);
        if (rules.isMember("exact")) {
            check.matcher.match(rules["exact"], lines, place_of(place, "exact"), check.mismatches);
        }
        for (const Json::Value& line : rules["contains"]) {
            if (!contains(check.matcher, lines, line)) {
                check.differ(place_of(place, "contains"), compact(line), compact(lines));
            }
        }
        check_none_with(check, lines, rules["none_with"], place_of(place, "none_with"));
    }
}

// Index of the first call from `from` on that matches, else the size. A pattern is
// "IMenuManager::RegisterMenu", or with an opening bracket for the arguments too; * and ? are wildcards.
Json::ArrayIndex find_call(const Json::Value& calls, const std::string& pattern, Json::ArrayIndex from) {
    const bool with_arguments = pattern.find('(') != std::string::npos;
    for (; from < calls.size(); ++from) {
        const std::string name = calls[from]["name"].asString();
        const std::string call =
            with_arguments ? name + "(" + calls[from]["arguments"].asString() + ")" : name;
        if (base::matches_wildcards(call, pattern)) {
            break;
        }
    }
    return from;
}

void check_host_calls(const Check& check, const Json::Value& wanted) {
    const Json::Value& calls = check.transcript["host_calls"];
    for (const Json::Value& pattern : wanted["contains"]) {
        if (find_call(calls, pattern.asString(), 0) == calls.size()) {
            check.differ(place_of(check.place, "contains"), pattern.asString(),
                         compact(texts_of(calls, "name")));
        }
    }
    for (const Json::Value& pattern : wanted["none_of"]) {
        if (find_call(calls, pattern.asString(), 0) != calls.size()) {
            check.differ(place_of(check.place, "none_of"), "no " + pattern.asString(), "called");
        }
    }
    Json::ArrayIndex at = 0;
    for (const Json::Value& pattern : wanted["in_order"]) {
        at = find_call(calls, pattern.asString(), at) + 1;
        if (at > calls.size()) {
            check.differ(place_of(check.place, "in_order"), pattern.asString(),
                         compact(texts_of(calls, "name")));
            return;
        }
    }
}

void check_scripts(const Check& check, const Json::Value& wanted) {
    check.compare(wanted, texts_of(check.transcript["scripts"], "command"));
}

// What all scripts wrote into the host's listener, line by line.
void check_listener(const Check& check, const Json::Value& wanted) {
    Json::Value lines(Json::arrayValue);
    for (const Json::Value& script : check.transcript["scripts"]) {
        for (const std::string& line : base::lines_of(script["listener"].asString())) {
            lines.append(line);
        }
    }
    check.compare(wanted, lines);
}

void check_exceptions(const Check& check, const Json::Value& wanted) {
    check.compare(wanted, texts_of(check.transcript["exceptions"], "what"));
}

void check_released(const Check& check, const Json::Value& wanted) {
    const Json::Value& leaks = check.transcript["leaks"];
    if (leaks.empty() != wanted.asBool()) {
        check.differ(check.place, wanted.asBool() ? "everything released" : "something left", compact(leaks));
    }
}

void check_as_recorded(const Check& check, const Json::Value& wanted) {
    check.compare(wanted, check.transcript[check.key]);
}

struct Kind {
    const char* key;
    void (*check)(const Check& check, const Json::Value& wanted);
};

const Kind kKinds[] = {
    {"boxes", check_boxes},
    {"told", check_told},
    {"dialogs", check_as_recorded},
    {"main", check_dialog_state},
    {"edit", check_dialog_state},
    {"commands", check_commands},
    {"menus", check_menu_lines},
    {"menus_after_stop", check_menu_lines},
    {"request_count", check_request_count},
    {"requests", check_as_recorded},
    {"files", check_files},
    {"no_files", check_no_files},
    {"log", check_log},
    {"host_calls", check_host_calls},
    {"scripts", check_scripts},
    {"listener", check_listener},
    {"processes", check_as_recorded},
    {"opened", check_as_recorded},
    {"exceptions", check_exceptions},
    {"released", check_released},
    {"repeats", check_as_recorded},
    {"soaks", check_as_recorded},
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

void evaluate_expectations(const Json::Value& expect, const Json::Value& transcript, const std::string& place,
                           Json::Value& outcomes) {
    const Matcher matcher(transcript["texts"], transcript["language"].asString());
    for (const Kind& kind : kKinds) {
        if (!expect.isMember(kind.key)) {
            continue;
        }
        std::vector<Mismatch> mismatches;
        const Check check = {matcher, transcript, kind.key, place_of(place, kind.key), mismatches};
        kind.check(check, expect[kind.key]);
        if (mismatches.empty()) {
            outcomes.append(outcome(check.place, true));
        }
        append_mismatches(mismatches, outcomes);
    }
}

void evaluate_standing_rules(const Json::Value& expect, const Json::Value& transcript,
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
}

} // namespace stage

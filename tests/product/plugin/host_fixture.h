// A freshly started host for every test, and a record of the calls to it.
#pragma once

#include "standin/host_sdk/control.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

class KeptCalls : public host_sdk::CallRecorder {
public:
    bool on_call(const char* name, const std::wstring& arguments) override {
        names.push_back(name);
        lines.push_back(std::wstring(names.back().begin(), names.back().end()) + L"(" + arguments + L")");
        if (names.back() == throws_in) {
            throws_in.clear();
            throw std::runtime_error("from the host");
        }
        if (names.back() == refuses_from && --refuses_after < 0) {
            host_sdk::Faults faults;
            faults.no_action_manager = true;
            host_sdk::set_faults(faults);
        }
        return names.back() != refused;
    }

    std::string refused;      // the host refuses each call of this name
    std::string throws_in;    // the next call of this name throws
    std::string refuses_from; // after `refuses_after` calls of this name the host has no action manager
    int refuses_after = 0;

    long count(const std::string& name) const { return std::count(names.begin(), names.end(), name); }
    bool has(const std::wstring& line) const {
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }

    std::vector<std::string> names;
    std::vector<std::wstring> lines;
};

class FixedScript : public host_sdk::ScriptRunner {
public:
    bool run(const std::wstring& command, std::wstring& result, bool& is_text) override {
        commands.push_back(command);
        result = text;
        is_text = returns_text;
        return succeeds;
    }

    std::vector<std::wstring> commands;
    std::wstring text;
    bool returns_text = true;
    bool succeeds = true;
};

class HostTest : public ::testing::Test {
protected:
    void SetUp() override {
        host_sdk::reset();
        host_sdk::set_call_recorder(&calls_);
        host_sdk::set_script_runner(&script_);
        host_sdk::set_text_tag(host_sdk::TextTag::string);
        heap_before_ = host_sdk::live_heap_objects();
    }

    void TearDown() override {
        EXPECT_EQ(0, host_sdk::escaped_exceptions());
        host_sdk::set_call_recorder(nullptr);
        host_sdk::set_script_runner(nullptr);
        host_sdk::set_main_window(nullptr);
        host_sdk::reset();
    }

    long new_heap_objects() const { return host_sdk::live_heap_objects() - heap_before_; }

    void set_fault(bool host_sdk::Faults::*part) {
        host_sdk::Faults faults;
        faults.*part = true;
        host_sdk::set_faults(faults);
    }

    KeptCalls calls_;
    FixedScript script_;

private:
    long heap_before_ = 0;
};

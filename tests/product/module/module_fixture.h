// The finished module in a host that was just started, used through its exports as the host uses it.
#pragma once

#include "tests/product/module/loaded_module.h"
#include "tests/product/plugin/host_fixture.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

using Calls = std::vector<std::wstring>;

constexpr int kSystemStartup = 80;
constexpr DWORD kTableId = 0x45AA4389;
constexpr DWORD kActionContext = 0x21933FB3;
constexpr MenuContextId kMenuContext = 0x411A1C29;
constexpr int kOpenDialog = 1497;
constexpr int kShowAbout = 1498;

inline Calls joined(std::initializer_list<Calls> parts) {
    Calls all;
    for (const Calls& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

class ModuleTest : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        module_.reset(new LoadedModule);
        ASSERT_NE(nullptr, module_->handle());
        plugin_ = module_->create_plugin();
    }

    void TearDown() override {
        if (plugin_ != nullptr) {
            plugin_->DeleteThis();
        }
        HostTest::TearDown();
        module_.reset();
        EXPECT_EQ(nullptr, ::GetModuleHandleW(kModuleName));
    }

    std::wstring text(UINT id) const { return module_->text(id); }
    std::wstring title() const { return text(31); }

    // "{31}" stands for text 31.
    std::wstring with_texts(std::wstring line) const {
        std::size_t at = 0;
        while ((at = line.find(L'{', at)) != std::wstring::npos) {
            const std::size_t end = line.find(L'}', at);
            const std::wstring value = text(static_cast<UINT>(std::stoul(line.substr(at + 1, end - at - 1))));
            line.replace(at, end + 1 - at, value);
            at += value.size();
        }
        return line;
    }

    // Compares all calls since the last comparison.
    void expect_calls(Calls expected) {
        for (std::wstring& line : expected) {
            line = with_texts(line);
        }
        EXPECT_EQ(expected, calls_.lines);
        forget_calls();
    }

    void forget_calls() {
        calls_.lines.clear();
        calls_.names.clear();
    }

    void start() { EXPECT_EQ(0u, plugin_->Start()); }

    void destroy() {
        plugin_->DeleteThis();
        plugin_ = nullptr;
    }

    void recreate() {
        destroy();
        plugin_ = module_->create_plugin();
    }

    // The menu bar as it reads with the plugin's menu and nothing else.
    std::wstring three_entries() const { return with_texts(L"{31} > {6}\n{31} > ---\n{31} > {12}\n"); }

    static IMenuManager& menus() { return *GetCOREInterface()->GetMenuManager(); }
    static IActionManager& actions() { return *GetCOREInterface()->GetActionManager(); }

    std::unique_ptr<LoadedModule> module_;
    GUP* plugin_ = nullptr;
};

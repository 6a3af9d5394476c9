// make_scene OUT.max [--camera NAME]... [--width N] [--height N] [--reference PATH]... [--start N] [--end N]
// Writes a small scene file for the stage and the tests. Exit code 0: written; 1: it cannot be written; 2:
// the command line is wrong.
#include "standin/scene/scene_composer.h"
#include "standin/scene/scene_text.h"
#include "standin/scene/scene_writer_win32.h"

#include <windows.h>

#include <shellapi.h>

#include <cstdio>

namespace {

using standin::SceneModel;

const char kUsage[] =
    "make_scene OUT.max [--camera NAME]... [--width N] [--height N] [--reference PATH]...\n"
    "           [--start N] [--end N]\n"
    "Without --camera the scene has three cameras, without --reference two referenced files, one\n"
    "of which exists nowhere.\n";

struct Order {
    std::wstring out;
    SceneModel model = standin::sample_model();
    std::vector<std::wstring> cameras;
    std::vector<std::wstring> references;
};

struct NumberOption {
    const wchar_t* name;
    std::int32_t smallest;
    std::int32_t SceneModel::*member;
};
constexpr NumberOption kNumberOptions[] = {
    {L"--width", 1, &SceneModel::width},
    {L"--height", 1, &SceneModel::height},
    {L"--start", -1000000, &SceneModel::start_frame},
    {L"--end", -1000000, &SceneModel::end_frame},
};

void print(std::FILE* stream, const std::wstring& text) {
    std::fputs((standin::utf8_from_wide(text) + "\n").c_str(), stream);
}

std::vector<std::wstring> command_line() {
    std::vector<std::wstring> arguments;
    int count = 0;
    wchar_t** const values = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    for (int index = 1; values != nullptr && index < count; ++index) {
        arguments.push_back(values[index]);
    }
    ::LocalFree(values);
    return arguments;
}

bool take_option(const std::wstring& name, const std::wstring& value, Order& order, std::wstring& problem) {
    if (name == L"--camera") {
        order.cameras.push_back(value);
        return true;
    }
    if (name == L"--reference") {
        order.references.push_back(value);
        return true;
    }
    for (const NumberOption& option : kNumberOptions) {
        std::int32_t number = 0;
        if (name == option.name && standin::read_decimal(value, number) && number >= option.smallest) {
            order.model.*option.member = number;
            return true;
        }
        if (name == option.name) {
            problem.append(L"'").append(value).append(L"' is no number for ").append(name).append(L".");
            return false;
        }
    }
    problem = L"There is no option " + name + L".";
    return false;
}

bool read_order(const std::vector<std::wstring>& arguments, Order& order, std::wstring& problem) {
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::wstring& argument = arguments[index];
        if (argument.compare(0, 2, L"--") != 0) {
            if (!order.out.empty()) {
                problem = L"There is one file too many: " + argument + L".";
                return false;
            }
            order.out = argument;
        } else if (index + 1 == arguments.size()) {
            problem = L"A value is missing after " + argument + L".";
            return false;
        } else if (!take_option(argument, arguments[++index], order, problem)) {
            return false;
        }
    }
    problem = order.out.empty() ? L"The file to write is not named." : L"";
    return problem.empty();
}

void complete(Order& order) {
    SceneModel& model = order.model;
    if (!order.cameras.empty()) {
        model.cameras = order.cameras;
        model.render_cameras = order.cameras;
        model.summary_camera_count = static_cast<std::int32_t>(order.cameras.size());
    }
    if (!order.references.empty()) {
        model.references.clear();
    }
    for (const std::wstring& path : order.references) {
        model.references.push_back({L"Bitmap", path, path});
    }
}

} // namespace

int main() {
    Order order;
    std::wstring problem;
    if (!read_order(command_line(), order, problem)) {
        print(stderr, problem);
        std::fputs(kUsage, stderr);
        return 2;
    }
    complete(order);
    if (!standin::write_scene_file(order.model, order.out, problem)) {
        print(stderr, problem);
        return 1;
    }
    print(stdout, order.out + L" is written: " + std::to_wstring(order.model.cameras.size()) + L" cameras, " +
                      std::to_wstring(order.model.references.size()) + L" referenced files.");
    return 0;
}

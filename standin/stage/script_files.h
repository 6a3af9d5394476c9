// The real files, for scripts that the stage runs.
#pragma once

#include "standin/maxscript/interpreter.h"

namespace stage {

class ScriptFiles : public maxscript::FileAccess {
public:
    using Text = maxscript::Text;

    bool exists(const Text& path) override;
    bool folder_exists(const Text& path) override;
    std::int64_t size(const Text& path) override;
    bool read(const Text& path, std::string& bytes) override;
    bool write(const Text& path, const std::string& bytes) override;
    std::vector<Text> list(const Text& pattern) override;
    bool remove(const Text& path) override;
    bool rename(const Text& from, const Text& to) override;
    bool copy(const Text& from, const Text& to) override;
    bool is_read_only(const Text& path) override;
    bool set_read_only(const Text& path, bool read_only) override;
};

} // namespace stage

// Scripts of commands: the input of "tavio run".
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <tl/expected.hpp>
#include <vector>

#include "tools/tavio/options.h"

namespace tavio::tool {

// The words of a line. Quoting is as in a shell: single quotes keep everything, in double quotes a
// backslash quotes ", \, $ and `, elsewhere any character. Nothing is expanded. A word that begins
// with # begins a comment. The error is a sentence.
tl::expected<std::vector<std::string>, std::string> wordsOf(std::string_view line);

struct ScriptLine {
    std::size_t number = 0;  // from 1
    Options options;
};

struct WrongLine {
    std::size_t number = 0;  // from 1
    std::string sentence;
};

struct Script {
    std::vector<ScriptLine> lines;  // the commands, with the settings that hold for them
    std::vector<WrongLine> wrong;
};

// settings: those that hold from the first line on.
Script readScript(std::string_view text, const Settings& settings);

}  // namespace tavio::tool

// Commands and their options as data, for the library that reads command lines and for scripts.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/tavio/options.h"

namespace tavio::tool {

// An option, a flag or an argument.
struct OptionSpec {
    // kFlagOrNumber: with or without a number from 0 on, "--name", "--name=5" or "--name 5";
    // "--name=false" is the number -1.
    enum class Kind { kValue, kValues, kFlag, kFlagOrNumber, kArgument, kArguments };

    Kind kind = Kind::kValue;
    std::string name;  // "--row", "-o,--output"; of an argument "FILE"
    std::string help;
    std::string value = {};  // of a kValue, its value's name in the help; of a kFlagOrNumber, the
                             // value without a number

    // Takes a value (of a flag "true" or "false"): stores it and returns "", or returns a sentence
    // about what is wrong with it. Called once for each value.
    std::function<std::string(const std::string&)> set;

    std::string group = {};
    std::string excludes = {};  // the option that must not be given with it
};

using OptionSpecs = std::vector<OptionSpec>;

struct CommandSpec {
    std::optional<Command> command;  // none if it only has commands of its own
    std::string name;
    std::string what;
    std::string example;  // the lines after "Example:"
    OptionSpecs options;
    std::vector<CommandSpec> commands;
};

// ---- Common kinds of options --------------------------------------------------------------------

// Stores true or false.
OptionSpec flag(std::string name, std::string help, std::function<void(bool)> set);

// Stores a whole number of 32 bits.
OptionSpec number(std::string name, std::string value, std::string help, std::int32_t& number);

// Stores any text.
OptionSpec argument(std::string name, std::string help, std::string& text);

OptionSpecs operator+(OptionSpecs left, OptionSpecs right);

}  // namespace tavio::tool

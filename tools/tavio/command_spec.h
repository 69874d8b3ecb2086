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
    enum class Kind {
        kValue,
        kValues,
        kFlag,
        kFlagOrNumber,
        kArgument,
        kArguments,
        kOptionalArgument,
    };

    Kind kind = Kind::kValue;
    std::string name;  // "--row", "-o,--output"; of an argument "FILE"
    std::string help;
    std::string value = {};  // of a kValue, its value's name in the help; of a kFlagOrNumber, the
                             // value without a number

    // Takes a value (of a flag "true" or "false"): stores it and returns "", or returns a sentence
    // about what is wrong with it. Called once for each value.
    std::function<std::string(const std::string&)> set;

    std::string group = {};
    bool isRequired = false;                 // of a kValue
    std::vector<std::string> excludes = {};  // what must not be given with it
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

struct DecimalRange {
    double min = 0;
    double max = 0;
    const char* text = "";  // "0.1 to 10"
};

// Hands over a decimal number within the range.
OptionSpec decimal(std::string name, std::string help, DecimalRange range,
                   std::function<void(double)> set);

// Hands over a whole number of dots, 1 or more.
OptionSpec dots(std::string name, std::string help, std::function<void(std::int32_t)> set);

// Stores any text.
OptionSpec argument(std::string name, std::string help, std::string& text);

OptionSpecs operator+(OptionSpecs left, OptionSpecs right);

}  // namespace tavio::tool

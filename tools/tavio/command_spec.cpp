#include "tools/tavio/command_spec.h"

#include <iterator>
#include <utility>

#include "tools/tavio/option_values.h"

namespace tavio::tool {

OptionSpec flag(std::string name, std::string help, std::function<void(bool)> set) {
    return {.kind = OptionSpec::Kind::kFlag,
            .name = std::move(name),
            .help = std::move(help),
            .set = [set = std::move(set)](const std::string& text) {
                set(text == "true");
                return std::string();
            }};
}

OptionSpec number(std::string name, std::string value, std::string help, std::int32_t& number) {
    const auto kind = value.empty() ? OptionSpec::Kind::kArgument : OptionSpec::Kind::kValue;
    return {.kind = kind,
            .name = std::move(name),
            .help = std::move(help),
            .value = std::move(value),
            .set = [&number](const std::string& text) -> std::string {
                const auto parsed = parseNumber(text);
                if (!parsed) return "\"" + text + "\" is not a whole number of 32 bits";
                number = *parsed;
                return "";
            }};
}

OptionSpec decimal(std::string name, std::string help, DecimalRange range,
                   std::function<void(double)> set) {
    return {.name = std::move(name),
            .help = std::move(help),
            .value = "N",
            .set = [range, set = std::move(set)](const std::string& text) -> std::string {
                const auto number = parseDecimal(text);
                if (!number || *number < range.min || *number > range.max)
                    return "\"" + text + "\" is no number from " + range.text;
                set(*number);
                return "";
            }};
}

OptionSpec dots(std::string name, std::string help, std::function<void(std::int32_t)> set) {
    return {.name = std::move(name),
            .help = std::move(help),
            .value = "N",
            .set = [set = std::move(set)](const std::string& text) -> std::string {
                const auto number = parseNumber(text);
                if (!number || *number < 1)
                    return "\"" + text + "\" is no number of dots, which is 1 or more";
                set(*number);
                return "";
            }};
}

OptionSpec argument(std::string name, std::string help, std::string& text) {
    return {.kind = OptionSpec::Kind::kArgument,
            .name = std::move(name),
            .help = std::move(help),
            .set = [&text](const std::string& given) {
                text = given;
                return std::string();
            }};
}

OptionSpecs operator+(OptionSpecs left, OptionSpecs right) {
    left.insert(left.end(), std::make_move_iterator(right.begin()),
                std::make_move_iterator(right.end()));
    return left;
}

}  // namespace tavio::tool

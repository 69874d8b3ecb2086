#include "tavio/virtual-printer/command_table.h"

#include <algorithm>
#include <cassert>
#include <limits>

namespace tavio::virtual_printer {
namespace {

struct TableEntry {
    std::string_view name;
    int arguments;  // numbers after the name, separated by commas
    CommandKind kind;
};

// No name with numbers is the beginning of another, so the order does not matter.
constexpr auto kTable = std::to_array<TableEntry>({
    {"P", 1, CommandKind::kPath},
    {"LM", 0, CommandKind::kLandscape},
    {"PM", 0, CommandKind::kPortrait},
    {"RE", 1, CommandKind::kRe},
    {"DI", 0, CommandKind::kDi},
    {"RC", 2, CommandKind::kPosition},
    {"G", 1, CommandKind::kGraphics},
    {"SP", 2, CommandKind::kLogoPlace},
    {"LD", 1, CommandKind::kPrintLogo},
    {"p", 0, CommandKind::kCut},
    {"q", 0, CommandKind::kEject},
});

// True if a command of this kind is a name between "<" and ">". The others have an ESC.
constexpr bool hasName(CommandKind kind) {
    switch (kind) {
        case CommandKind::kPath:
        case CommandKind::kLandscape:
        case CommandKind::kPortrait:
        case CommandKind::kRe:
        case CommandKind::kDi:
        case CommandKind::kPosition:
        case CommandKind::kGraphics:
        case CommandKind::kLogoPlace:
        case CommandKind::kPrintLogo:
        case CommandKind::kCut:
        case CommandKind::kEject:
            return true;
        case CommandKind::kBeginLogo:
        case CommandKind::kEndLogo:
        case CommandKind::kClearMemory:
        case CommandKind::kUnknown:
            return false;
    }
    return false;
}

constexpr bool isEachNamedKindThereOnce() {
    for (int number = 0; number <= static_cast<int>(CommandKind::kUnknown); ++number) {
        const auto kind = static_cast<CommandKind>(number);
        const auto count = std::ranges::count(kTable, kind, &TableEntry::kind);
        if (count != (hasName(kind) ? 1 : 0)) return false;
    }
    return true;
}
static_assert(isEachNamedKindThereOnce());

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// The numbers of a command, if there are exactly `count`.
std::optional<std::array<std::int32_t, 2>> parseArguments(std::string_view text, int count) {
    std::array<std::int32_t, 2> values{};
    if (count == 0) return text.empty() ? std::optional(values) : std::nullopt;

    const std::size_t end = count == 2 ? text.find(',') : text.size();
    if (end == std::string_view::npos) return std::nullopt;
    const auto first = parseNumber(text.substr(0, end));
    const auto second = count == 2 ? parseNumber(text.substr(end + 1)) : std::optional(0);
    if (!first || !second) return std::nullopt;
    values = {*first, *second};
    return values;
}

}  // namespace

std::optional<std::int32_t> parseNumber(std::string_view text) {
    const bool negative = text.starts_with('-');
    if (negative) text.remove_prefix(1);
    if (text.empty() || !std::all_of(text.begin(), text.end(), isDigit)) return std::nullopt;

    using Limits = std::numeric_limits<std::int32_t>;
    const std::int64_t limit = negative ? -std::int64_t{Limits::min()} : Limits::max();
    std::int64_t value = 0;
    for (const char digit : text) value = std::min(value * 10 + (digit - '0'), limit);
    return static_cast<std::int32_t>(negative ? -value : value);
}

ParsedCommand parseCommand(std::string_view text) {
    assert(text.size() >= 2 && text.front() == '<' && text.back() == '>');
    const std::string_view inner = text.substr(1, text.size() - 2);
    for (const TableEntry& entry : kTable) {
        if (!inner.starts_with(entry.name)) continue;
        const auto arguments = parseArguments(inner.substr(entry.name.size()), entry.arguments);
        if (arguments) return {entry.kind, *arguments};
    }
    return {};
}

}  // namespace tavio::virtual_printer

#include "tavio/printing/reply.h"

#include <algorithm>

namespace tavio::printing {

namespace {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    text.remove_suffix(text.size() - (text.find_last_not_of(kBlanks) + 1));
    return text;
}

bool matches(std::string_view reply, const ReplyPattern& pattern) {
    switch (pattern.match) {
        case Match::kExact:
            return trimmed(reply) == pattern.text;
        case Match::kPrefix:
            return reply.starts_with(pattern.text);
        case Match::kContains:
            return reply.find(pattern.text) != std::string_view::npos;
    }
    return false;
}

}  // namespace

const char* nameOf(PrinterState state) noexcept {
    switch (state) {
        case PrinterState::kUnknown:
            return "unknown";
        case PrinterState::kReady:
            return "ready";
        case PrinterState::kOutOfPaper:
            return "out-of-paper";
        case PrinterState::kCoverOpen:
            return "cover-open";
        case PrinterState::kError:
            return "error";
        case PrinterState::kOther:
            return "other";
    }
    return "";
}

PrinterState stateOf(std::string_view reply, const ReplyTable& table) noexcept {
    for (const ReplyPattern& pattern : table) {
        if (matches(reply, pattern)) return pattern.state;
    }
    return PrinterState::kUnknown;
}

}  // namespace tavio::printing

#include "tools/common/ticket_options.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

#include "tavio/virtual-printer/ticket.h"

namespace tavio::command_line {

namespace {

bool equalIgnoringCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) ==
               std::tolower(static_cast<unsigned char>(b));
    });
}

}  // namespace

std::optional<std::int32_t> parseStock(std::string_view text) {
    constexpr auto& kStocks = virtual_printer::kTicketStocks;
    for (std::size_t index = 0; index < kStocks.size(); ++index) {
        const std::string_view name = kStocks.at(index).name;
        const bool named = !name.empty() && equalIgnoringCase(text, name);
        if (named || text == std::to_string(index)) return static_cast<std::int32_t>(index);
    }
    return std::nullopt;
}

std::string stockChoices() {
    std::string choices = "0 to " + std::to_string(virtual_printer::kTicketStocks.size() - 1);
    std::string last;
    for (const auto& stock : virtual_printer::kTicketStocks) {
        if (*stock.name == '\0') continue;
        if (!last.empty()) choices.append(", ").append(last);
        last = stock.name;
    }
    return choices + " or " + last;
}

std::string asStock(std::string& text) {
    const auto index = parseStock(text);
    if (!index) return "\"" + text + "\" is no stock: give " + stockChoices();
    text = std::to_string(*index);
    return {};
}

std::string asResolution(std::string& text) {
    if (text == "200" || text == "300" || text == "600") return {};
    return "\"" + text + "\" is none of the resolutions 200, 300 and 600";
}

std::string asOrientation(std::string& text) {
    if (text == "landscape" || text == "portrait") return {};
    return "\"" + text + "\" is no orientation: give landscape or portrait";
}

}  // namespace tavio::command_line

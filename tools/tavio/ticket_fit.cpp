#include "tools/tavio/ticket_fit.h"

#include <optional>

#include "TavioIpadSDK/settings/dot_width_table.h"
#include "tavio/virtual-printer/ticket.h"

namespace tavio::tool {

namespace {

std::string dots(intake::DotSize size) {
    return std::to_string(size.width) + " x " + std::to_string(size.height) + " dots";
}

// Only whole bands of 8 rows are sent; the first band of a logo is not stored.
std::optional<std::string> nothingComesOut(intake::DotSize size, Use use) {
    std::string subject = "the picture is " + dots(size) + ": ";
    if (use == Use::kPrint && size.height < 8) {
        return subject + "of fewer than 8 rows nothing prints";
    }
    if (use == Use::kLogo && size.height < 16) {
        return subject + "of fewer than 16 rows nothing is stored as a logo";
    }
    return std::nullopt;
}

// In landscape a picture's rows are printer rows, in portrait its columns are. In portrait the row
// of its place is the distance from the ticket's left edge, and the column that from its top.
std::optional<std::string> reachesBeyond(intake::DotSize size, std::int32_t row,
                                         std::int32_t column, const Settings& settings) {
    const intake::DotSize ticket = ticketDots(settings);
    const std::int64_t left = settings.portrait ? row : column;
    const std::int64_t top = settings.portrait ? column : row;
    std::string subject = "the picture of " + dots(size);
    if (size.width > ticket.width || size.height > ticket.height) {
        return subject + " is larger than the ticket of " + dots(ticket);
    }
    if (left < 0 || top < 0 || left + size.width > ticket.width ||
        top + size.height > ticket.height) {
        return subject + " at row " + std::to_string(row) + ", column " + std::to_string(column) +
               " reaches beyond the ticket of " + dots(ticket);
    }
    return std::nullopt;
}

}  // namespace

intake::DotSize ticketDots(const Settings& settings) {
    auto paper = virtual_printer::ticketSize(settings.stock, settings.resolution);
    if (!paper) return {};
    if (!settings.portrait) return {paper->columns, paper->rows};
    auto width = settings::portraitDotsOf(settings.stock, settings.resolution);
    return {width.value_or(0), paper->columns};
}

std::vector<std::string> fitWarnings(intake::DotSize size, Use use, std::int32_t row,
                                     std::int32_t column, const Settings& settings) {
    std::vector<std::string> warnings;
    if (size.width <= 0 || size.height <= 0) return warnings;  // refused by the library's notice
    if (auto warning = nothingComesOut(size, use)) warnings.push_back(std::move(*warning));
    if (auto warning = reachesBeyond(size, row, column, settings)) {
        warnings.push_back(std::move(*warning));
    }
    return warnings;
}

}  // namespace tavio::tool

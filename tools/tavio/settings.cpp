#include "tools/tavio/settings.h"

namespace tavio::tool {

namespace {

template <typename Value>
const std::optional<Value>& firstOf(const std::optional<Value>& value,
                                    const std::optional<Value>& below) {
    return value ? value : below;
}

}  // namespace

Settings Settings::over(const Settings& below) const {
    return {firstOf(path, below.path),     firstOf(resolution, below.resolution),
            firstOf(scaled, below.scaled), firstOf(threshold, below.threshold),
            firstOf(stock, below.stock),   firstOf(orientation, below.orientation)};
}

printing::TicketSettings ticketSettings(const Settings& settings) {
    printing::TicketSettings result;
    if (settings.path) result.path = *settings.path;
    if (settings.resolution) result.resolution = *settings.resolution;
    if (settings.stock) result.stock = *settings.stock;
    if (settings.orientation) result.orientation = *settings.orientation;
    return result;
}

printing::DrawOptions drawOptions(const Settings& settings, std::int32_t page) {
    printing::DrawOptions result;
    result.scaled = settings.scaled.value_or(false);
    if (settings.threshold.value_or(false)) {
        result.blackAndWhite = printing::BlackAndWhite::kThreshold;
    }
    result.page = page;
    return result;
}

}  // namespace tavio::tool

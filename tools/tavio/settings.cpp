#include "tools/tavio/settings.h"

namespace tavio::tool {

namespace {

template <typename Value>
void fill(std::optional<Value>& value, const std::optional<Value>& below) {
    if (!value) value = below;
}

template <typename Value>
void take(Value& value, const std::optional<Value>& given) {
    if (given) value = *given;
}

}  // namespace

Settings Settings::over(const Settings& below) const {
    Settings result = *this;
    fill(result.path, below.path);
    fill(result.resolution, below.resolution);
    fill(result.stock, below.stock);
    fill(result.orientation, below.orientation);
    fill(result.classic, below.classic);
    fill(result.scaled, below.scaled);
    fill(result.fit, below.fit);
    fill(result.turn, below.turn);
    fill(result.align, below.align);
    fill(result.margin, below.margin);
    fill(result.blackAndWhite, below.blackAndWhite);
    fill(result.threshold, below.threshold);
    fill(result.brightness, below.brightness);
    fill(result.contrast, below.contrast);
    fill(result.gamma, below.gamma);
    fill(result.dotGain, below.dotGain);
    if (!result.face && !result.font) {
        result.face = below.face;
        result.font = below.font;
    }
    return result;
}

printing::TicketSettings ticketSettings(const Settings& settings) {
    printing::TicketSettings result;
    take(result.path, settings.path);
    take(result.resolution, settings.resolution);
    take(result.stock, settings.stock);
    take(result.orientation, settings.orientation);
    return result;
}

printing::DrawOptions drawOptions(const Settings& settings, std::int32_t page) {
    const bool isScaled = settings.scaled.value_or(false);
    printing::DrawOptions result;
    result.page = page;
    take(result.blackAndWhite, settings.blackAndWhite);
    take(result.fit, settings.fit);
    take(result.turn, settings.turn);
    take(result.align, settings.align);
    take(result.margin, settings.margin);
    take(result.threshold, settings.threshold);
    take(result.tone.brightness, settings.brightness);
    take(result.tone.contrast, settings.contrast);
    take(result.tone.gamma, settings.gamma);
    if (settings.dotGain) result.tone.dotGain = settings.dotGain;
    if (settings.classic.value_or(false)) {
        result.classic = printing::Classic{.scaled = isScaled};
    } else if (isScaled) {
        result.fit = printing::Fit::kStretch;
    }
    return result;
}

}  // namespace tavio::tool

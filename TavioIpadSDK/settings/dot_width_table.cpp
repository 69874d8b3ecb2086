#include "TavioIpadSDK/settings/dot_width_table.h"

#include "TavioIpadSDK/settings/settings.h"

namespace tavio {

constinit settings::PortraitDotTable portrait_dot_array{};
constinit std::int32_t portrait_dots = 0;

void InitDotArray() {
    portrait_dot_array = settings::kPortraitDots;
    set_portrait_dots();
}

void set_portrait_dots() {
    if (PrinterOrientation != "<PM>") {
        portrait_dots = 0;
        return;
    }
    const auto entry = settings::entryOf(portrait_dot_array, size_indicator, PrinterResolution);
    portrait_dots = entry.value_or(portrait_dots);
}

}  // namespace tavio

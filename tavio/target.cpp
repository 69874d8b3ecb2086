#include "tavio/target.h"

#include <array>

namespace tavio::tool {

bool isPictureName(std::string_view name) {
    return name.ends_with(".png") || name.ends_with(".PNG");
}

std::optional<Target> parseTarget(std::string_view text) {
    constexpr std::array<std::string_view, 3> kPrinterSchemes{"tcp://", "bt://", "tty:"};
    for (std::string_view scheme : kPrinterSchemes) {
        if (text.starts_with(scheme)) return Target{Target::Kind::kPrinter, std::string(text)};
    }
    constexpr std::string_view kFileScheme = "file:";
    if (text.starts_with(kFileScheme)) {
        std::string_view name = text.substr(kFileScheme.size());
        if (name.empty()) return std::nullopt;
        return Target{Target::Kind::kFile, std::string(name)};
    }
    if (!isPictureName(text)) return std::nullopt;
    return Target{Target::Kind::kPreview, std::string(text)};
}

}  // namespace tavio::tool

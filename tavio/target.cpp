#include "tavio/target.h"

#include <array>

namespace tavio::tool {

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
    bool isPicture = text.ends_with(".png") || text.ends_with(".PNG");
    if (!isPicture) return std::nullopt;
    return Target{Target::Kind::kPreview, std::string(text)};
}

}  // namespace tavio::tool

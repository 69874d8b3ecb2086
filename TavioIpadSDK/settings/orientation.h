// The orientation commands.
#pragma once

#include <string_view>

namespace tavio::settings {

inline constexpr const char* kLandscape = "<LM>";
inline constexpr const char* kPortrait = "<PM>";

// True for exactly "<LM>"; every other text is laid out as portrait.
constexpr bool isLandscape(std::string_view orientation) {
    return orientation == kLandscape;
}

}  // namespace tavio::settings

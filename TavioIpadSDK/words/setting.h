// How words are set.
#pragma once

#include <cstdint>

namespace tavio::words {

// The side of a box that lines, or all of them together, lie at.
enum class Side : std::uint8_t { kBegin, kMiddle, kEnd };

struct Setting {
    std::int32_t resolution = 300;  // dots per inch, 1 or more
    double size = 10;               // points, more than 0
    double minSize = 10;            // more than 0, at most `size`
    bool isBold = false;
    bool isItalic = false;

    // The box in dots, 1 to kMaxSide. Lines are wrapped at its width, less the inset at the left and
    // at the right.
    std::int32_t width = 1;
    std::int32_t height = 1;
    std::int32_t inset = 0;  // dots, 0 to kMaxSide

    // kBegin of a line that runs from right to left is the right side.
    Side across = Side::kBegin;
    Side down = Side::kBegin;

    // True: the drawing is the whole box. False: it is as large as the words, with the inset, and no
    // larger than the box; lines lie beside each other as they would in a box of that width.
    bool fillsBox = true;
};

inline constexpr std::int32_t kMaxSide = 32767;
inline constexpr double kMinSize = 1;
inline constexpr double kMaxSize = 1000;

// Sizes between the asked one and the smallest are tried in steps of this many points.
inline constexpr double kSizeStep = 0.25;

}  // namespace tavio::words

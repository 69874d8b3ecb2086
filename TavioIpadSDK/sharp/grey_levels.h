// How many different grey values a picture has.
#pragma once

#include "TavioIpadSDK/pictures/stored_grey.h"

namespace tavio::sharp {

enum class GreyLevels : std::uint8_t {
    kBlackAndWhite,  // 0 and 255 only
    kFew,            // at most kMaxFewLevels
    kMany,
};

inline constexpr int kMaxFewLevels = 16;

// Reads the source, of which nothing has been read yet, until it is known. Throws as
// pictures::StoredGrey::read.
GreyLevels greyLevels(pictures::StoredGrey& source);

}  // namespace tavio::sharp

#include "TavioIpadSDK/sharp/grey_levels.h"

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <span>

#include "TavioIpadSDK/machine/uncleared_bytes.h"

namespace tavio::sharp {
namespace {

using Levels = std::bitset<256>;

constexpr std::int32_t kStripPixels = 1 << 14;

GreyLevels kindOf(const Levels& levels) {
    if (levels.count() > kMaxFewLevels) return GreyLevels::kMany;
    Levels others = levels;
    others.reset(0).reset(255);
    return others.none() ? GreyLevels::kBlackAndWhite : GreyLevels::kFew;
}

}  // namespace

GreyLevels greyLevels(pictures::StoredGrey& source) {
    const std::int32_t height = source.height();
    const std::int32_t stripRows =
        source.comesWhole() ? height : std::max(kStripPixels / source.width(), 1);
    machine::UnclearedBytes strip;
    Levels levels;
    for (std::int32_t left = height; left > 0; left -= std::min(left, stripRows)) {
        const auto rows = static_cast<std::size_t>(std::min(left, stripRows));
        strip.resize(rows * static_cast<std::size_t>(source.width()));
        source.read(strip);
        for (const Byte value : strip) levels.set(value);
        if (kindOf(levels) == GreyLevels::kMany) break;
    }
    return kindOf(levels);
}

}  // namespace tavio::sharp

#include "TavioIpadSDK/sharp/mark_white.h"

#include <cstddef>
#include <cstdint>

#include "TavioIpadSDK/machine/instruction_set.h"
#include "TavioIpadSDK/sharp/pixel_value.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/sharp/mark_white.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tavio::sharp::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

constexpr hn::ScalableTag<std::uint32_t> kWords;
constexpr std::size_t kLanes = hn::MaxLanes(hn::ScalableTag<std::uint32_t>());

// count: a multiple of kPiece.
HWY_INLINE bool isWhiteRow(const std::uint32_t* pixels, std::size_t count) {
    auto all = hn::Set(kWords, kColour);
    for (std::size_t i = 0; i < count; i += kLanes) {
        all = hn::And(all, hn::LoadU(kWords, pixels + i));
    }
    return hn::AllTrue(kWords, hn::Eq(all, hn::Set(kWords, kColour)));
}

bool markVectors(const PixelRows& pixels, std::size_t pieces, Byte* isWhite) {
    const std::size_t columns = kPiece * pixels.factor;
    for (std::size_t piece = 0; piece < pieces; ++piece) {
        const std::uint32_t* const corner = pixels.top + piece * columns;
        bool isBlank = true;
        for (std::size_t y = 0; y < pixels.factor && isBlank; ++y) {
            isBlank = isWhiteRow(corner + y * pixels.stride, columns);
        }
        isWhite[piece] = isBlank ? 1 : 0;
    }
    return true;
}

#else

bool markVectors(const PixelRows& /*pixels*/, std::size_t /*pieces*/, Byte* /*isWhite*/) {
    return false;
}

#endif

}  // namespace tavio::sharp::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::sharp {
namespace {

void markPlainly(const PixelRows& pixels, std::size_t pieces, Byte* isWhite) {
    const std::size_t columns = kPiece * pixels.factor;
    for (std::size_t piece = 0; piece < pieces; ++piece) {
        std::uint32_t all = kColour;
        for (std::size_t y = 0; y < pixels.factor; ++y) {
            const std::uint32_t* const row = pixels.top + y * pixels.stride + piece * columns;
            for (std::size_t x = 0; x < columns; ++x) all &= row[x];
        }
        isWhite[piece] = all == kColour ? 1 : 0;
    }
}

}  // namespace

void markWhite(const PixelRows& pixels, std::size_t pieces, Byte* isWhite) {
    if (!TAVIO_CHOSEN_FORM(markVectors)(pixels, pieces, isWhite)) {
        markPlainly(pixels, pieces, isWhite);
    }
}

}  // namespace tavio::sharp
#endif

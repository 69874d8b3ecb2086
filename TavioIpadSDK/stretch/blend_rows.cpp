#include "TavioIpadSDK/stretch/blend_rows.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>

#include "TavioIpadSDK/machine/instruction_set.h"
#include "TavioIpadSDK/stretch/axis.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/stretch/blend_rows.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"
#include "TavioIpadSDK/stretch/blend-inl.h"

#ifndef TAVIO_STRETCH_BLEND_ROWS_ONCE
#define TAVIO_STRETCH_BLEND_ROWS_ONCE
namespace tavio::stretch {
namespace {

// Blocks of both rows, and the lower one's share of the blend.
struct RowPair {
    const PassedBlock* upper;
    const PassedBlock* lower;
    double share;
};

}  // namespace
}  // namespace tavio::stretch
#endif

HWY_BEFORE_NAMESPACE();
namespace tavio::stretch::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

// A vector of each channel: halves of blends in the lower 23 bits, anything above.
struct Blends {
    Word red, green, blue, alpha;
};

// All channels; `upper` and `lower` point to red.
template <bool kAlpha>
HWY_INLINE Blends exactly(const float* upper, const float* lower, double share) {
    const auto channel = [&](std::size_t index) HWY_ATTR {
        const std::size_t from = index * kBlockColumns;
        return exactly(upper + from, lower + from, share);
    };
    return {channel(0), channel(1), channel(2),
            kAlpha ? channel(3) : hn::Set(Words(), 255 << kHalvesBits)};
}

HWY_INLINE Word pixels(const Blends& blends) {
    const Words d;
    const Word red = hn::And(hn::ShiftRight<kHalvesBits>(blends.red), hn::Set(d, 0xFF));
    const Word green = hn::And(hn::ShiftRight<kHalvesBits - 8>(blends.green), hn::Set(d, 0xFF00));
    const Word blue = hn::And(hn::ShiftLeft<16 - kHalvesBits>(blends.blue), hn::Set(d, 0xFF0000));
    const Word alpha = hn::And(hn::ShiftLeft<24 - kHalvesBits>(blends.alpha), hn::Set(d, -1 << 24));
    return hn::Or(hn::Or(red, green), hn::Or(blue, alpha));
}

// The pixels of whole blocks. Without kAlpha both rows are opaque, and alphas are not read.
template <bool kAlpha>
void blendBlocks(const RowPair& rows, std::size_t blocks, UInt32* target) {
    const Words d;
    const auto share = hn::Set(Floats(), static_cast<float>(rows.share));
    auto* words = reinterpret_cast<std::int32_t*>(target);
    for (std::size_t block = 0; block < blocks; ++block) {
        for (std::size_t at = 0; at < kBlockColumns; at += hn::Lanes(d), words += hn::Lanes(d)) {
            const float* upper = rows.upper[block].values + at;
            const float* lower = rows.lower[block].values + at;
            const auto channel = [&](std::size_t index) HWY_ATTR {
                const std::size_t from = index * kBlockColumns;
                return blended(upper + from, lower + from, share);
            };
            Blends blends{channel(0), channel(1), channel(2), hn::Set(d, 255 << kHalvesBits)};
            auto doubts =
                hn::Or(hn::Or(doubtful(blends.red), doubtful(blends.green)), doubtful(blends.blue));
            if constexpr (kAlpha) {
                blends.alpha = channel(3);
                doubts = hn::Or(doubts, doubtful(blends.alpha));
            }
            if (HWY_UNLIKELY(!hn::AllFalse(d, doubts)))
                blends = exactly<kAlpha>(upper, lower, rows.share);
            hn::StoreU(pixels(blends), d, words);
        }
    }
}

void blendVectors(const RowPair& rows, std::size_t blocks, bool areOpaque, UInt32* target) {
    if (areOpaque) return blendBlocks<false>(rows, blocks, target);
    blendBlocks<true>(rows, blocks, target);
}

#else

void blendVectors(const RowPair& /*rows*/, std::size_t /*blocks*/, bool /*areOpaque*/,
                  UInt32* /*target*/) {}

#endif

}  // namespace tavio::stretch::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::stretch {
namespace {

void blendPlainly(const PassedRow& upper, const PassedRow& lower, std::uint64_t beyond,
                  std::uint64_t total, std::span<UInt32> target) {
    const Divider divider(total);
    for (std::size_t column = 0; column < target.size(); ++column) {
        const float* above = upper.blocks[column / kBlockColumns].values + column % kBlockColumns;
        const float* below = lower.blocks[column / kBlockColumns].values + column % kBlockColumns;
        UInt32 pixel = 0;
        for (std::size_t channel = 0; channel < kChannels; ++channel) {
            const auto u = static_cast<std::uint64_t>(above[channel * kBlockColumns]) - kMargin;
            const auto v = static_cast<std::uint64_t>(below[channel * kBlockColumns]) - kMargin;
            const std::uint64_t sum = u * (total - beyond) + v * beyond;
            const std::uint64_t value = divider.quotient(sum >> kFractionBits);
            pixel |= static_cast<UInt32>(value) << (8 * channel);
        }
        target[column] = pixel;
    }
}

}  // namespace

void blendRows(const PassedRow& upper, const PassedRow& lower, std::uint64_t beyond,
               std::uint64_t total, std::span<UInt32> target) {
    assert(total >= 2 && total % 2 == 0 && total <= std::uint64_t{1} << 29 && beyond <= total);
    assert(upper.blocks.size() == blocksOf(target.size()));
    assert(lower.blocks.size() == upper.blocks.size());
    if (total > kMaxBlendTotal || machine::instructionSet() == machine::InstructionSet::kPlain)
        return blendPlainly(upper, lower, beyond, total, target);
    const bool areOpaque = upper.isOpaque && lower.isOpaque;
    const double share = static_cast<double>(beyond) / static_cast<double>(total);
    RowPair rows{upper.blocks.data(), lower.blocks.data(), share};
    const std::size_t blocks = target.size() / kBlockColumns;
    TAVIO_CHOSEN_FORM(blendVectors)(rows, blocks, areOpaque, target.data());
    const std::span<UInt32> rest = target.subspan(blocks * kBlockColumns);
    if (rest.empty()) return;
    std::array<UInt32, kBlockColumns> last{};
    rows.upper += blocks;
    rows.lower += blocks;
    TAVIO_CHOSEN_FORM(blendVectors)(rows, 1, areOpaque, last.data());
    std::copy_n(last.begin(), rest.size(), rest.begin());
}

}  // namespace tavio::stretch
#endif

#include "TavioIpadSDK/stretch/blend_channels.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>

#include "TavioIpadSDK/machine/instruction_set.h"
#include "TavioIpadSDK/stretch/axis.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/stretch/blend_channels.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"
#include "TavioIpadSDK/stretch/blend-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tavio::stretch::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

// Whole blocks from block `begin` to before `end`.
void blendChannelBlocks(const PassedChannel& upper, const PassedChannel& lower, double share,
                        std::size_t begin, std::size_t end, Byte* target) {
    const Words d;
    const hn::RebindToUnsigned<Words> words;
    const hn::Rebind<std::uint8_t, Words> bytes;
    const auto factor = hn::Set(Floats(), static_cast<float>(share));
    const PassedChannel above = upper;  // copies, which the stores below cannot change
    const PassedChannel below = lower;
    for (std::size_t block = begin; block < end; ++block, target += kBlockColumns) {
        const float* u = above.values(block);
        const float* v = below.values(block);
        for (std::size_t at = 0; at < kBlockColumns; at += hn::Lanes(d)) {
            Word halves = blended(u + at, v + at, factor);
            if (HWY_UNLIKELY(!hn::AllFalse(d, doubtful(halves))))
                halves = exactly(u + at, v + at, share);
            const auto values = hn::BitCast(words, hn::ShiftRight<kHalvesBits>(halves));
            hn::StoreU(hn::TruncateTo(bytes, values), bytes, target + at);
        }
    }
}

#else

void blendChannelBlocks(const PassedChannel& /*upper*/, const PassedChannel& /*lower*/,
                        double /*share*/, std::size_t /*begin*/, std::size_t /*end*/,
                        Byte* /*target*/) {}

#endif

}  // namespace tavio::stretch::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::stretch {
namespace {

void blendPlainly(const PassedChannel& upper, const PassedChannel& lower, std::uint64_t beyond,
                  std::uint64_t total, std::span<Byte> target) {
    const Divider divider(total);
    for (std::size_t column = 0; column < target.size(); ++column) {
        const std::size_t block = column / kBlockColumns;
        const std::size_t at = column % kBlockColumns;
        const auto u = static_cast<std::uint64_t>(upper.values(block)[at]) - kMargin;
        const auto v = static_cast<std::uint64_t>(lower.values(block)[at]) - kMargin;
        const std::uint64_t sum = u * (total - beyond) + v * beyond;
        target[column] = static_cast<Byte>(divider.quotient(sum >> kFractionBits));
    }
}

}  // namespace

void blendChannels(const PassedChannel& upper, const PassedChannel& lower, std::uint64_t beyond,
                   std::uint64_t total, std::span<Byte> target) {
    assert(total >= 2 && total % 2 == 0 && total <= std::uint64_t{1} << 29 && beyond <= total);
    assert(upper.blocks.size() == blocksOf(target.size()));
    assert(lower.blocks.size() == upper.blocks.size());
    if (total > kMaxBlendTotal || machine::instructionSet() == machine::InstructionSet::kPlain)
        return blendPlainly(upper, lower, beyond, total, target);
    const double share = static_cast<double>(beyond) / static_cast<double>(total);
    const std::size_t blocks = target.size() / kBlockColumns;
    TAVIO_CHOSEN_FORM(blendChannelBlocks)(upper, lower, share, 0, blocks, target.data());
    const std::span<Byte> rest = target.subspan(blocks * kBlockColumns);
    if (rest.empty()) return;
    std::array<Byte, kBlockColumns> last{};
    TAVIO_CHOSEN_FORM(blendChannelBlocks)(upper, lower, share, blocks, blocks + 1, last.data());
    std::copy_n(last.begin(), rest.size(), rest.begin());
}

}  // namespace tavio::stretch
#endif

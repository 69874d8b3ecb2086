// As average_rows.cpp, with its proof.
#include "TavioIpadSDK/stretch/average_channels.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "TavioIpadSDK/machine/instruction_set.h"
#include "TavioIpadSDK/stretch/axis.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/stretch/average_channels.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"
#include "TavioIpadSDK/stretch/average-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tavio::stretch::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

void addChannel(const PassedChannel& row, double weight, ChannelSums* sums) {
    const auto factor = hn::Set(Doubles(), weight);
    for (std::size_t block = 0; block < row.blocks.size(); ++block)
        addValues<kBlockColumns>(row.values(block), factor, sums[block].values);
}

void averageChannelBlocks(const ChannelSums* sums, double constant, double factor,
                          std::size_t blocks, Byte* target) {
    const hn::Rebind<std::uint8_t, Words> bytes;
    const auto added = hn::Set(Doubles(), constant);
    const auto times = hn::Set(Doubles(), factor);
    for (std::size_t block = 0; block < blocks; ++block, target += kBlockColumns) {
        for (std::size_t at = 0; at < kBlockColumns; at += hn::Lanes(bytes)) {
            const Word values = averages(sums[block].values + at, added, times);
            hn::StoreU(hn::DemoteTo(bytes, values), bytes, target + at);
        }
    }
}

#else

void addChannel(const PassedChannel& /*row*/, double /*weight*/, ChannelSums* /*sums*/) {}

void averageChannelBlocks(const ChannelSums* /*sums*/, double /*constant*/, double /*factor*/,
                          std::size_t /*blocks*/, Byte* /*target*/) {}

#endif

}  // namespace tavio::stretch::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::stretch {
namespace {

bool isPlain() {
    return machine::instructionSet() == machine::InstructionSet::kPlain;
}

void addPlainly(const PassedChannel& row, double weight, std::vector<ChannelSums>& sums) {
    for (std::size_t block = 0; block < sums.size(); ++block) {
        for (std::size_t at = 0; at < kBlockColumns; ++at)
            sums[block].values[at] += weight * static_cast<double>(row.values(block)[at]);
    }
}

}  // namespace

void AverageChannels::add(const PassedChannel& row, std::uint64_t weight) {
    assert(sums_.empty() || sums_.size() == row.blocks.size());
    sums_.resize(row.blocks.size());
    const auto factor = static_cast<double>(weight);
    if (isPlain()) return addPlainly(row, factor, sums_);
    TAVIO_CHOSEN_FORM(addChannel)(row, factor, sums_.data());
}

void AverageChannels::average(std::span<Byte> target) {
    assert(sums_.size() == blocksOf(target.size()));
    if (total_ > kMaxAverageTotal || isPlain()) {
        averagePlainly(target);
    } else {
        averageInVectors(target);
    }
    sums_.clear();
}

void AverageChannels::averagePlainly(std::span<Byte> target) const {
    const Divider divider(total_);
    for (std::size_t column = 0; column < target.size(); ++column) {
        const double sum = sums_[column / kBlockColumns].values[column % kBlockColumns];
        const std::uint64_t exact = static_cast<std::uint64_t>(sum) - kMargin * total_;
        target[column] = static_cast<Byte>(divider.quotient(exact >> kFractionBits));
    }
}

void AverageChannels::averageInVectors(std::span<Byte> target) const {
    const auto [constant, factor] = averageFactors(total_);
    const std::size_t blocks = target.size() / kBlockColumns;
    TAVIO_CHOSEN_FORM(averageChannelBlocks)
    (sums_.data(), constant, factor, blocks, target.data());
    const std::span<Byte> rest = target.subspan(blocks * kBlockColumns);
    if (rest.empty()) return;
    std::array<Byte, kBlockColumns> last{};
    TAVIO_CHOSEN_FORM(averageChannelBlocks)(&sums_[blocks], constant, factor, 1, last.data());
    std::copy_n(last.begin(), rest.size(), rest.begin());
}

}  // namespace tavio::stretch
#endif

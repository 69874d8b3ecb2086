#include "TavioIpadSDK/stretch/average_rows.h"

#include <algorithm>
#include <array>
#include <cassert>

#include "TavioIpadSDK/machine/instruction_set.h"
#include "TavioIpadSDK/stretch/axis.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/stretch/average_rows.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"
#include "TavioIpadSDK/stretch/average-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tavio::stretch::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

// sums += rows * weight
void addBlocks(const PassedBlock* rows, double weight, std::size_t blocks, SumBlock* sums) {
    const auto factor = hn::Set(Doubles(), weight);
    for (std::size_t block = 0; block < blocks; ++block)
        addValues<kBlockValues>(rows[block].values, factor, sums[block].values);
}

// The pixels of whole blocks.
void averageBlocks(const SumBlock* sums, double constant, double factor, std::size_t blocks,
                   UInt32* target) {
    const Words words;
    const auto added = hn::Set(Doubles(), constant);
    const auto times = hn::Set(Doubles(), factor);
    for (std::size_t column = 0; column < blocks * kBlockColumns; column += hn::Lanes(words)) {
        const double* values = sums[column / kBlockColumns].values + column % kBlockColumns;
        const Word red = averages(values, added, times);
        const Word green = averages(values + kBlockColumns, added, times);
        const Word blue = averages(values + 2 * kBlockColumns, added, times);
        const Word alpha = averages(values + 3 * kBlockColumns, added, times);
        const Word low = hn::Or(red, hn::ShiftLeft<8>(green));
        const Word high = hn::Or(blue, hn::ShiftLeft<8>(alpha));
        hn::StoreU(hn::Or(low, hn::ShiftLeft<16>(high)), words,
                   reinterpret_cast<std::int32_t*>(target) + column);
    }
}

#else

void addBlocks(const PassedBlock* /*rows*/, double /*weight*/, std::size_t /*blocks*/,
               SumBlock* /*sums*/) {}

void averageBlocks(const SumBlock* /*sums*/, double /*constant*/, double /*factor*/,
                   std::size_t /*blocks*/, UInt32* /*target*/) {}

#endif

}  // namespace tavio::stretch::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::stretch {
namespace {

void addPlainly(const PassedRow& row, double weight, std::vector<SumBlock>& sums) {
    for (std::size_t block = 0; block < sums.size(); ++block) {
        for (std::size_t at = 0; at < kBlockValues; ++at)
            sums[block].values[at] += weight * static_cast<double>(row.blocks[block].values[at]);
    }
}

}  // namespace

void AverageRows::add(const PassedRow& row, std::uint64_t weight) {
    assert(sums_.empty() || sums_.size() == row.blocks.size());
    sums_.resize(row.blocks.size());
    const auto factor = static_cast<double>(weight);
    if (machine::instructionSet() == machine::InstructionSet::kPlain)
        return addPlainly(row, factor, sums_);
    TAVIO_CHOSEN_FORM(addBlocks)(row.blocks.data(), factor, sums_.size(), sums_.data());
}

void AverageRows::average(std::span<UInt32> target) {
    assert(sums_.size() == blocksOf(target.size()));
    if (total_ > kMaxAverageTotal || machine::instructionSet() == machine::InstructionSet::kPlain) {
        averagePlainly(target);
    } else {
        averageInVectors(target);
    }
    sums_.clear();
}

void AverageRows::averagePlainly(std::span<UInt32> target) const {
    const Divider divider(total_);
    for (std::size_t column = 0; column < target.size(); ++column) {
        const double* values = sums_[column / kBlockColumns].values + column % kBlockColumns;
        UInt32 pixel = 0;
        for (std::size_t channel = 0; channel < kChannels; ++channel) {
            const double sum = values[channel * kBlockColumns];
            const std::uint64_t exact = static_cast<std::uint64_t>(sum) - kMargin * total_;
            const std::uint64_t value = divider.quotient(exact >> kFractionBits);
            pixel |= static_cast<UInt32>(value) << (8 * channel);
        }
        target[column] = pixel;
    }
}

void AverageRows::averageInVectors(std::span<UInt32> target) const {
    const auto [constant, factor] = averageFactors(total_);
    const std::size_t blocks = target.size() / kBlockColumns;
    TAVIO_CHOSEN_FORM(averageBlocks)(sums_.data(), constant, factor, blocks, target.data());
    const std::span<UInt32> rest = target.subspan(blocks * kBlockColumns);
    if (rest.empty()) return;
    std::array<UInt32, kBlockColumns> last{};
    TAVIO_CHOSEN_FORM(averageBlocks)(&sums_[blocks], constant, factor, 1, last.data());
    std::copy_n(last.begin(), rest.size(), rest.begin());
}

}  // namespace tavio::stretch
#endif

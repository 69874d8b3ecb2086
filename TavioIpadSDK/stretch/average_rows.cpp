// Passed rows are added up in double, times their weights. The sums are divided by the total T of
// the weights and by 2^16, for the fraction bits. Half a unit has been added to every passed row,
// so truncating rounds:
//
//     row 0 * w0 |
//     row 1 * w1 |  added up: S      result = floor(S / (2^16 * T))
//     row 2 * w2 |
//
// The sums are exact: whole numbers of at most 2^24 * T, below 2^53. Vectors then compute
//
//     (S + 1/2) * (1 / (2^16 * T))
//
// Proof that truncating this to a whole number is exact for T of up to 2^26: with the 1/2, which S
// has room for, the exact value is at least 2^-17 / T, so 2^-43, away from a whole number, and it
// is at most 2^8. The factor and the product have a relative error of 2^-53 each, together an error
// of at most 2^-44.
#include "TavioIpadSDK/stretch/average_rows.h"

#include <algorithm>
#include <array>
#include <cassert>

#include "TavioIpadSDK/machine/instruction_set.h"
#include "TavioIpadSDK/stretch/axis.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/stretch/average_rows.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"

#ifndef TAVIO_STRETCH_AVERAGE_ROWS_ONCE
#define TAVIO_STRETCH_AVERAGE_ROWS_ONCE
namespace tavio::stretch {
namespace {

constexpr std::uint64_t kMaxTotal = 1 << 26;

}  // namespace
}  // namespace tavio::stretch
#endif

HWY_BEFORE_NAMESPACE();
namespace tavio::stretch::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

using Doubles = hn::ScalableTag<double>;
using Floats = hn::Rebind<float, Doubles>;
using Words = hn::Rebind<std::int32_t, Doubles>;
using Word = hn::Vec<Words>;

// sums += rows * weight
void addBlocks(const PassedBlock* rows, double weight, std::size_t blocks, SumBlock* sums) {
    const Doubles d;
    const auto factor = hn::Set(d, weight);
    for (std::size_t block = 0; block < blocks; ++block) {
        for (std::size_t at = 0; at < kBlockValues; at += hn::Lanes(d)) {
            double* sum = sums[block].values + at;
            const auto value = hn::PromoteTo(d, hn::Load(Floats(), rows[block].values + at));
            hn::Store(hn::MulAdd(value, factor, hn::Load(d, sum)), d, sum);
        }
    }
}

// (sums + constant) * factor, truncated.
HWY_INLINE Word averages(const double* sums, hn::Vec<Doubles> constant, hn::Vec<Doubles> factor) {
    const auto sum = hn::Add(hn::Load(Doubles(), sums), constant);
    return hn::DemoteTo(Words(), hn::Mul(sum, factor));
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
    if (total_ > kMaxTotal || machine::instructionSet() == machine::InstructionSet::kPlain) {
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
    const auto total = static_cast<double>(total_);
    const double constant = 0.5 - kMargin * total;
    const double factor = 1 / (total * (1 << kFractionBits));
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

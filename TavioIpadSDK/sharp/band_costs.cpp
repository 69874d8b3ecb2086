// Each lane of a vector is a row on which a band begins, so no bit moves from lane to lane. Of a band
// of one row more the columns are those of the band before, and the new row's.
#include "TavioIpadSDK/sharp/band_costs.h"

#include <algorithm>
#include <bit>
#include <cassert>

#include "TavioIpadSDK/machine/instruction_set.h"
#include "TavioIpadSDK/sharp/drawn_out.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/sharp/band_costs.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tavio::sharp::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

// drawnOut() of each lane.
template <class V>
HWY_INLINE V drawnOutVector(V dots, V before, int price) {
    dots = hn::Or(dots, hn::ShiftRight<1>(dots));
    dots = hn::Or(dots, hn::ShiftRight<2>(dots));
    dots = hn::Or(dots, hn::ShiftRight<4>(dots));
    const int fourth = std::min(8, price - 7);
    dots = hn::Or(dots, hn::ShiftRightSame(dots, fourth));
    dots = hn::Or(dots, hn::ShiftRightSame(dots, price - 7 - fourth));
    const V spilling = hn::ShiftLeftSame(before, 64 - price);
    return hn::Or(dots, hn::Or(spilling, hn::Sub(hn::Zero(hn::DFromV<V>()), spilling)));
}

// Dots are counted in bytes, which hold the counts of this many words.
constexpr std::size_t kWordsOfCounts = 31;

// The costs of bands that begin on successive rows; `words` is on the first of them.
template <class D>
HWY_INLINE void costsOfRows(D d, const std::uint64_t* words, std::size_t wordCount, int price,
                            int height, std::uint64_t* ors, std::uint64_t* cost) {
    using V = hn::Vec<D>;
    const hn::Repartition<std::uint8_t, D> bytes;
    V before = hn::Zero(d), sum = hn::Zero(d);
    for (std::size_t first = 0; first <= wordCount; first += kWordsOfCounts) {
        auto counts = hn::Zero(bytes);
        const std::size_t end = std::min(first + kWordsOfCounts, wordCount);
        for (std::size_t w = first; w < end; ++w) {
            const V row = hn::LoadU(d, words + kBlockStride * w + (height - 1));
            const V dots = hn::Or(row, hn::LoadU(d, ors + kBlockStride * w));
            hn::StoreU(dots, d, ors + kBlockStride * w);
            const V paid = drawnOutVector(dots, before, price);
            counts = hn::Add(counts, hn::PopulationCount(hn::BitCast(bytes, paid)));
            before = dots;
        }
        sum = hn::Add(sum, hn::SumsOf8(counts));
    }
    const V paid = drawnOutVector(hn::Zero(d), before, price);  // after the last word
    sum = hn::Add(sum, hn::SumsOf8(hn::PopulationCount(hn::BitCast(bytes, paid))));
    hn::StoreU(sum, d, cost);
}

// Returns the number of rows whose costs are known: all.
std::size_t costsByVectors(const std::uint64_t* words, std::size_t wordCount, std::size_t rowCount,
                           int price, int height, std::uint64_t* ors, std::uint64_t* costs) {
    const hn::ScalableTag<std::uint64_t> d;
    for (std::size_t y = 0; y < rowCount; y += hn::Lanes(d))
        costsOfRows(d, words + y, wordCount, price, height, ors + y, costs + y);
    return rowCount;
}

#else

std::size_t costsByVectors(const std::uint64_t* /*words*/, std::size_t /*wordCount*/,
                           std::size_t /*rowCount*/, int /*price*/, int /*height*/,
                           std::uint64_t* /*ors*/, std::uint64_t* /*costs*/) {
    return 0;
}

#endif

}  // namespace tavio::sharp::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::sharp {
namespace {

std::uint64_t costPlainly(const std::uint64_t* words, std::size_t wordCount, int price, int height,
                          std::uint64_t* ors) {
    std::uint64_t before = 0;
    const auto count = [](std::uint64_t dots) {
        return static_cast<std::uint64_t>(std::popcount(dots));
    };
    std::uint64_t sum = 0;
    for (std::size_t w = 0; w < wordCount; ++w) {
        std::uint64_t& dots = ors[kBlockStride * w];
        dots |= words[kBlockStride * w + static_cast<std::size_t>(height - 1)];
        sum += count(drawnOut(dots, before, price));
        before = dots;
    }
    return sum + count(drawnOut(0, before, price));
}

// The columns of the bands of minHeight - 1 rows: of as many rows as fit twice over, and so on.
void startOrs(std::span<const std::uint64_t> words, int minHeight, std::span<std::uint64_t> ors) {
    const auto wanted = static_cast<std::size_t>(minHeight - 1);
    for (std::size_t first = 0; first < words.size(); first += kBlockStride) {
        std::uint64_t* const to = ors.data() + first;
        if (wanted == 0) {
            std::fill_n(to, kBlockStride, std::uint64_t{0});
            continue;
        }
        std::copy_n(words.data() + first, kBlockStride, to);
        for (std::size_t rows = 1; rows < wanted;) {
            const std::size_t more = std::min(rows, wanted - rows);
            for (std::size_t y = 0; y + more < kBlockStride; ++y) to[y] |= to[y + more];
            rows += more;
        }
    }
}

}  // namespace

void bandCosts(std::span<const std::uint64_t> words, std::size_t rowCount, int price, int minHeight,
               std::span<std::uint64_t> ors, std::span<std::uint64_t> costs) {
    assert(words.size() % kBlockStride == 0 && ors.size() >= words.size());
    assert(rowCount <= kBlockRows && costs.size() >= kMaxBandRows * kBlockRows);
    assert(price >= 8 && price <= kMaxPrice && minHeight >= 1 && minHeight <= kMaxBandRows);
    const bool isPlain = machine::instructionSet() == machine::InstructionSet::kPlain;
    const std::size_t wordCount = words.size() / kBlockStride;
    startOrs(words, minHeight, ors);
    for (int height = minHeight; height <= kMaxBandRows; ++height) {
        std::uint64_t* const to = costs.data() + kBlockRows * static_cast<std::size_t>(height - 1);
        std::size_t y = 0;
        if (!isPlain) {
            y = TAVIO_CHOSEN_FORM(costsByVectors)(words.data(), wordCount, rowCount, price, height,
                                                  ors.data(), to);
        }
        for (; y < rowCount; ++y)
            to[y] = costPlainly(words.data() + y, wordCount, price, height, ors.data() + y);
    }
}

}  // namespace tavio::sharp
#endif

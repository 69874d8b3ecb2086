// Three loads, each one byte further on, are compared with one letter each. If all three agree, a
// command begins. Graphics full of "<" or "<R" take no longer than others.
//
//   bytes      x < R < R C 7
//   is "<"     . 1 . 1 . .
//   next "R"   . 1 . 1 . .
//   then "C"   . . . 1 . .
//   all        . . . 1 . .
#include "TavioIpadSDK/encoder/mark_positions.h"

#include <algorithm>

#include "TavioIpadSDK/machine/instruction_set.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/encoder/mark_positions.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tavio::encoder::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

// Marks 64 bytes for each word that fills whole vectors, up to `count` words, reads two bytes more,
// and returns the number of words.
std::size_t markPositionVectors(const Byte* bytes, std::size_t count, std::uint64_t* words) {
    const hn::ScalableTag<Byte> d;
    const std::size_t lanes = hn::Lanes(d);
    const auto bracket = hn::Set(d, '<');
    const auto r = hn::Set(d, 'R');
    const auto c = hn::Set(d, 'C');
    auto* bits = reinterpret_cast<std::uint8_t*>(words);
    for (std::size_t i = 0; i < 64 * count; i += lanes) {
        const auto begins = hn::Eq(hn::LoadU(d, bytes + i), bracket);
        const auto goesOn = hn::Eq(hn::LoadU(d, bytes + i + 1), r);
        const auto ends = hn::Eq(hn::LoadU(d, bytes + i + 2), c);
        hn::StoreMaskBits(d, hn::And(hn::And(begins, goesOn), ends), bits + i / 8);
    }
    return count;
}

#else

std::size_t markPositionVectors(const Byte* /*bytes*/, std::size_t /*count*/,
                                std::uint64_t* /*words*/) {
    return 0;
}

#endif

}  // namespace tavio::encoder::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::encoder {
namespace {

constexpr std::size_t kCommandSize = 3;  // "<RC"

std::uint64_t markPlainly(std::span<const Byte> bytes, std::size_t first) {
    std::uint64_t bits = 0;
    for (std::size_t b = 0; b < 64 && first + b + kCommandSize <= bytes.size(); ++b) {
        const Byte* const at = bytes.data() + first + b;
        const bool isCommand = at[0] == '<' && at[1] == 'R' && at[2] == 'C';
        bits |= std::uint64_t{isCommand} << b;
    }
    return bits;
}

}  // namespace

void markPositions(std::span<const Byte> bytes, std::span<std::uint64_t> words) {
    constexpr std::size_t kReadAhead = kCommandSize - 1;
    const std::size_t whole = bytes.size() < kReadAhead ? 0 : (bytes.size() - kReadAhead) / 64;
    std::size_t word = 0;
    if (machine::instructionSet() != machine::InstructionSet::kPlain) {
        word = TAVIO_CHOSEN_FORM(markPositionVectors)(bytes.data(), std::min(whole, words.size()),
                                                      words.data());
    }
    for (; word < words.size(); ++word) words[word] = markPlainly(bytes, 64 * word);
}

}  // namespace tavio::encoder
#endif

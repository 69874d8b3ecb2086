// A comparison with 0 gives a mask, and a mask is stored as bits, the first lane's lowest:
//
//   bytes   41 00 00 07 FF 00 00 00
//   bits     0  1  1  0  0  1  1  1     as a byte E6
//
// 64 bytes fill a word with vectors of any length.
#include "TavioIpadSDK/encoder/mark_blanks.h"

#include <algorithm>

#include "TavioIpadSDK/machine/instruction_set.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/encoder/mark_blanks.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tavio::encoder::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

// Marks 64 bytes for each word that fills whole vectors, up to `count` words, and returns their
// number.
std::size_t markBlankVectors(const Byte* bytes, std::size_t count, std::uint64_t* words) {
    const hn::ScalableTag<Byte> d;
    const std::size_t lanes = hn::Lanes(d);
    const auto zero = hn::Zero(d);
    auto* bits = reinterpret_cast<std::uint8_t*>(words);
    for (std::size_t i = 0; i < 64 * count; i += lanes)
        hn::StoreMaskBits(d, hn::Eq(hn::LoadU(d, bytes + i), zero), bits + i / 8);
    return count;
}

#else

std::size_t markBlankVectors(const Byte* /*bytes*/, std::size_t /*count*/,
                             std::uint64_t* /*words*/) {
    return 0;
}

#endif

}  // namespace tavio::encoder::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::encoder {
namespace {

std::uint64_t markPlainly(std::span<const Byte> bytes, std::size_t first) {
    std::uint64_t bits = 0;
    for (std::size_t b = 0; b < 64; ++b) {
        const bool isBlank = first + b >= bytes.size() || bytes[first + b] == 0;
        bits |= std::uint64_t{isBlank} << b;
    }
    return bits;
}

}  // namespace

void markBlanks(std::span<const Byte> bytes, std::span<std::uint64_t> words) {
    const std::size_t whole = std::min(bytes.size() / 64, words.size());
    std::size_t word = 0;
    if (machine::instructionSet() != machine::InstructionSet::kPlain)
        word = TAVIO_CHOSEN_FORM(markBlankVectors)(bytes.data(), whole, words.data());
    for (; word < words.size(); ++word) words[word] = markPlainly(bytes, 64 * word);
}

}  // namespace tavio::encoder
#endif

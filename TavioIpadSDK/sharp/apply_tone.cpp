#include "TavioIpadSDK/sharp/apply_tone.h"

#include <algorithm>
#include <cstddef>

#include "TavioIpadSDK/machine/instruction_set.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/sharp/apply_tone.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tavio::sharp::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

using BytesTag = hn::ScalableTag<Byte>;
using WordsTag = hn::RepartitionToWide<BytesTag>;
using Values = hn::Vec<BytesTag>;

constexpr BytesTag kBytes;
constexpr std::size_t kLanes = hn::MaxLanes(BytesTag());

HWY_INLINE Values splat(Byte value) {
    return hn::Set(kBytes, value);
}

// Each byte divided by 2^kBits.
template <int kBits>
HWY_INLINE Values divided(Values values) {
    const auto words = hn::ShiftRight<kBits>(hn::BitCast(WordsTag(), values));
    return hn::And(hn::BitCast(kBytes, words), splat(0xFF >> kBits));
}

HWY_INLINE Values balanced(Values values) {
    const Values dark = hn::Min(divided<2>(values), splat(23));
    const Values more = hn::Min(dark, hn::Sub(splat(44), divided<3>(values)));
    return hn::Add(hn::SaturatedSub(values, splat(13)), more);
}

// Applies it to the first values, and returns how many these are.
std::size_t applyVectors(bool balances, std::span<const Byte> greys, Byte* to) {
    std::size_t at = 0;
    for (; at + kLanes <= greys.size(); at += kLanes) {
        Values values = hn::LoadU(kBytes, greys.data() + at);
        if (balances) values = balanced(values);
        hn::StoreU(hn::Xor(values, splat(0x80)), kBytes, to + at);
    }
    return at;
}

#else

std::size_t applyVectors(bool /*balances*/, std::span<const Byte> /*greys*/, Byte* /*to*/) {
    return 0;
}

#endif

}  // namespace tavio::sharp::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::sharp {

ToneCurve::ToneCurve(const ToneTable& table) : table_(table), kind_(Kind::kOther) {
    if (table == toneTable({.dotGain = 0})) kind_ = Kind::kNone;
    if (table == toneTable({})) kind_ = Kind::kBalanced;
}

void ToneCurve::apply(std::span<const Byte> greys, Byte* to) const {
    std::size_t at = 0;
    if (kind_ != Kind::kOther)
        at = TAVIO_CHOSEN_FORM(applyVectors)(kind_ == Kind::kBalanced, greys, to);
    for (; at < greys.size(); ++at) to[at] = static_cast<Byte>(table_[greys[at]] ^ 0x80);
}

}  // namespace tavio::sharp
#endif

// The kernel that brings grey values to the tone with which they are printed.
#pragma once

#include <span>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/sharp/tone.h"

namespace tavio::sharp {

// A tone, ready to be applied to many values. The default tone and one that changes nothing cost next
// to nothing; others are looked up value by value.
class ToneCurve {
  public:
    explicit ToneCurve(const ToneTable& table);

    // to[i] = table[greys[i]] ^ 0x80, for all of `greys`.
    void apply(std::span<const Byte> greys, Byte* to) const;

  private:
    enum class Kind { kNone, kBalanced, kOther };

    ToneTable table_;
    Kind kind_;
};

}  // namespace tavio::sharp

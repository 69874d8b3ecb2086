// Grey values become black and white dots.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/sharp/dots.h"
#include "TavioIpadSDK/sharp/grey_rows.h"
#include "TavioIpadSDK/sharp/tone.h"

namespace tavio::sharp {

enum class Method : std::uint8_t {
    kDithered,   // error diffusion
    kThreshold,  // darker than the threshold is black
};

struct Halftone {
    Method method = Method::kDithered;
    Byte threshold = 128;  // smaller grey values are black, after brightness, contrast and gamma
    Tone tone{};
};

// All rows as dots. Values that are solid after the tone stay solid: a 0 is a black dot and a 255 a white
// one, and neither passes an error on. A threshold makes no greys, so it does not balance dot gain. The same bytes on every machine, with and without threads. Throws what the rows
// throw, std::bad_alloc, and std::length_error above kMaxDots.
//
// mayUseThreads: large pictures are diffused on another thread than the one that asks for their rows,
// which is the caller's.
Dots halftoned(GreyRows& rows, const Halftone& halftone, bool mayUseThreads);

}  // namespace tavio::sharp

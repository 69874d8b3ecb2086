// Finding codes in dots, to warn of those that will not scan.
#pragma once

#include <cstdint>
#include <optional>

#include "TavioIpadSDK/sharp/dots.h"

namespace tavio::sharp {

// The width in dots of the narrowest module of the codes in the picture: QR codes, Data Matrix, and
// linear codes such as Code 128, upright or turned by quarters. None if there is no code. Text,
// drawings and photos are no codes. Its time is in proportion to the picture's dots. Throws
// std::bad_alloc.
std::optional<double> narrowestModule(const Dots& dots);

}  // namespace tavio::sharp

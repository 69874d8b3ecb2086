// The size of a page or photo in printer dots, with the present settings (dot_size.h has the rules).
#pragma once

#include <cstdint>

#include "TavioIpadSDK/intake/dot_size.h"

namespace tavio::intake {

DotSize pageTargetSize(double widthPoints, double heightPoints);
DotSize photoTargetSize(std::int32_t width, std::int32_t height);

}  // namespace tavio::intake

// A picture in memory, as applications name it: platform::Picture.
#pragma once

#include "TavioIpadSDK/pictures/picture.h"
#include "TavioIpadSDK/pictures/upright.h"

namespace tavio::platform {

using pictures::kMaxPixels;
using pictures::Picture;
using pictures::premultipliedPixel;
using pictures::upright;
using pictures::uprightHeight;
using pictures::uprightWidth;

}  // namespace tavio::platform

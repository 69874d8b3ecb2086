// Opening a picture whose pixels are decoded in grey.
#pragma once

#include <memory>
#include <span>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/picture.h"
#include "TavioIpadSDK/pictures/stored_grey.h"

namespace tavio::sharp {

// Opens a PNG, JPEG or BMP file. Grey is luminance (luminance.h); of a JPEG that stores a luminance of
// its own it is that, and it can be decoded smaller. Nothing is copied: the file must outlive the source. Throws
// std::bad_alloc.
pictures::OpenedGrey openGrey(std::span<const Byte> file);

// The pixels of a picture in memory, which must outlive the source.
std::unique_ptr<pictures::StoredGrey> greyOf(const pictures::Picture& picture);

}  // namespace tavio::sharp

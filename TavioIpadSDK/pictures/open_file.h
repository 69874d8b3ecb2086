// Opening a picture file of any format.
#pragma once

#include <span>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/stored_picture.h"

namespace tavio::pictures {

// Opens a PNG, JPEG or BMP file, recognised by content. Nothing is copied: the file must outlive
// the picture. Throws std::bad_alloc.
OpenedFile openFile(std::span<const Byte> file);

}  // namespace tavio::pictures

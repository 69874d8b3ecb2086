// The graphics encoder: a monochrome bitmap file becomes printer commands, and they are sent.
#pragma once

#include <span>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::encoder {

// Encodes the bitmap file and sends it: printed at row originalx, column originaly when LogoNumber
// is "", stored in the printer as that logo otherwise.
//
//   printed  SendData    the print
//   stored   SendString  what begins the logo
//            SendData    the rest of it
//
// (encode_bitmap.h has the commands.) A logo sets originalx and originaly to 0.
//
// myData: a bitmap file of one bit a pixel, its rows bottom first in the buffer's last bytes. A 0
// bit prints, whatever the colour table says. Refused with a notice titled "Alert", and then
// nothing is sent:
//   "Error - Invalid Image width/height/depth."  a size out of range, not one bit a pixel, a stream
//                                                of more than 2^31 - 1 bytes, or no memory for it
//   "Error - BMP file must be monochrome."       a colour count other than 0, 1 and 2
//   "Error - Image data is incomplete."          shorter than its 62 bytes of header and its rows
//
// Never throws.
void ParseBMP(std::span<const Byte> myData) noexcept;

}  // namespace tavio::encoder

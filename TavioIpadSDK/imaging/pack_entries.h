// The kernel that packs black and white entries into bits.
#pragma once

#include <span>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::imaging {

// packed[i] = the eight entries from 8 i on, for all whole groups of eight; entries are BLACK or
// WHITE, and `packed` has room for one byte a group. Bytes past these do not change.
//
// The first entry fills the two top bits and the eighth is dropped. Applications and printers rely
// on these bytes:
//
//   byte = entry[0]; 7 times, for j = 0 to 6: byte = (byte << 1) | entry[j], 8 bits of it
//
//   bit    7 6 5 4 3 2 1 0
//   entry  0 0 1 2 3 4 5 6          1,0,1,0,1,0,1,0 gives D5; 0,0,0,0,0,0,0,1 gives 00
void packEntries(std::span<const Byte> entries, std::span<Byte> packed);

}  // namespace tavio::imaging

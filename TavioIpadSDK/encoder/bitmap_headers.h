// The two headers at the front of a bitmap file.
#pragma once

#include <cstddef>
#include <cstdint>

#include "TavioIpadSDK/platform/bytes.h"

namespace tavio::encoder {

inline constexpr std::size_t kHeaderSize = 62;  // of both, in bytes

// Bytes 0 to 13 of a bitmap file. They are kept for inspection; none of them has an effect.
struct FileHeader {
    char bfType0 = 0;        // 0; not checked
    char bfType1 = 0;        // 1; not checked
    UInt32 bfSize = 0;       // 2
    std::uint16_t bfR1 = 0;  // 6
    std::uint16_t bfR2 = 0;  // 8
    UInt32 bfOffBits = 0;    // 10; not used: the rows are taken from the file's end

    bool operator==(const FileHeader&) const = default;
};

// Bytes 14 to 61 of a bitmap file.
struct InfoHeader {
    UInt32 biSize = 0;             // 14; not used
    UInt32 biWidth = 0;            // 18; pixels, 1 to 134217727
    UInt32 biHeight = 0;           // 22; rows, 1 to 2147483647; read unsigned, so that a file whose
                                   //     rows run top first (a negative height) is refused
    std::uint16_t biPlanes = 0;    // 26; not checked
    std::uint16_t biBitCount = 0;  // 28; must be 1
    UInt32 biCompression = 0;      // 30; not checked
    UInt32 biSizeImage = 0;        // 34; not used
    UInt32 biXPPMeter = 0;         // 38; 128 when either of the two is 0, not used otherwise
    UInt32 biYPPMeter = 0;         // 42
    UInt32 biClrUsed = 0;          // 46; 0, 1 or 2, kept as 2
    UInt32 biClrImportant = 0;     // 50; not used
    UInt32 biBlackBitMask = 0;     // 54; colour 0, not consulted: a 0 bit always prints
    UInt32 biWhiteBitMask = 0;     // 58; colour 1, not consulted

    bool operator==(const InfoHeader&) const = default;
};

}  // namespace tavio::encoder

// The headers of a BMP file.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/stored_picture.h"

namespace tavio::pictures {

enum class BmpCoding { kPlain, kRunLength8, kRunLength4, kJpeg, kPng };

// All that is needed to read the pixels, checked against the file's size.
struct BmpHeader {
    std::int32_t width = 0;   // 1 or more
    std::int32_t height = 0;  // 1 or more
    bool topDown = false;     // else the bottom row comes first
    unsigned bits = 0;        // a pixel: 1, 2, 4, 8, 16, 24, 32; 0 for an embedded file
    BmpCoding coding = BmpCoding::kPlain;
    std::array<UInt32, 4> masks{};  // red, green, blue, alpha; for 16 and 32 bits
    std::vector<UInt32> palette;    // opaque pixels; for up to 8 bits
    std::span<const Byte> data;     // from the first pixel on
    bool dataSizeStated = false;    // by the header; if not, data ends with the file
};

struct BmpHeaderRead {
    BmpHeader header;
    std::string why;  // empty, or why the header is refused
    Refusal refusal = Refusal::kDamaged;
};

// `file`: begins with "BM".
BmpHeaderRead readBmpHeader(std::span<const Byte> file);

}  // namespace tavio::pictures

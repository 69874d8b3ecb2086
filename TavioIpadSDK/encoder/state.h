// The encoder's module-wide state and its records.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::encoder {

// Bytes 0 to 13 of a bitmap file; stored to be looked at, none of it decides anything.
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

inline constexpr std::int32_t DATA = 1;   // every byte of the run prints
inline constexpr std::int32_t ZEROS = 0;  // every byte of the run is blank
inline constexpr std::int32_t NO_RUN = -1;

// One run of a band's graphics bytes.
struct LineParser {
    std::int32_t start = 0;            // index of its first byte in the band stream
    std::int32_t count = 0;            // its length in bytes, which are columns of dots
    std::int32_t block_type = NO_RUN;  // DATA, ZEROS or NO_RUN

    bool operator==(const LineParser&) const = default;
};

// ---- Of one picture: overwritten by each, kept until the next; written by ParseBMP only ---------

extern FileHeader bmfile;  // what the last file of 62 bytes or more held
extern InfoHeader bminfo;  // the same, with the defaults that ParseBMP filled in

// The runs of the last band of the last picture; unused entries are empty. Grows beyond LINEMAPMAX
// entries when a band has more runs.
inline constexpr std::size_t LINEMAPMAX = 2500;
extern std::vector<LineParser> linemap;

}  // namespace tavio::encoder

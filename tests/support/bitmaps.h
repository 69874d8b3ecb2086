// Pictures and bitmap files for tests, from and to text: "X" is a dot, " " is blank.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/picture.h"

namespace tavio::test {

using Rows = std::vector<std::string>;  // one text a row, the top row first, all of one length

// Bytes as text: printable ASCII as it stands, everything else as {1B}.
std::string readable(std::span<const Byte> bytes);
std::string readable(std::string_view text);

Bytes bytesOf(std::string_view text);

// The parts one after the other.
Bytes joined(std::initializer_list<Bytes> parts);

// A one-bit bitmap file whose dots ("X") are 0 bits; the padding of its rows is 0 bits or 1 bits.
Bytes bitmapFile(const Rows& rows, bool paddingBits = true);

// A width x height picture of dots only.
Rows allBlack(std::size_t width, std::size_t height);

// An opaque picture: black for "X", white for " ".
pictures::Picture pictureOf(const Rows& rows);

// An opaque picture of one colour.
pictures::Picture plainPicture(std::int32_t width, std::int32_t height, unsigned red,
                               unsigned green, unsigned blue);

}  // namespace tavio::test

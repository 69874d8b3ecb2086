// A printer's bytes as text.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::links {

// Well-formed UTF-8 unchanged; otherwise each byte becomes the character of the same number, so
// that most text of printers with a code page is readable: E9 becomes "é".
std::string replyText(std::span<const Byte> bytes);

// Appends `bytes` to `kept`, up to a total of `limit` bytes; the rest is dropped.
void appendUpTo(std::size_t limit, Bytes& kept, std::span<const Byte> bytes);

}  // namespace tavio::links

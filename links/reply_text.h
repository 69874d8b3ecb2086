// What a printer has sent, as a text.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::links {

// Well-formed UTF-8 as it is; otherwise each byte as the character of the same number, which is how
// printers with a code page of their own can still be read: E9 becomes "é".
std::string replyText(std::span<const Byte> bytes);

// Appends as much of `bytes` as leaves `kept` at no more than `most`; the rest is dropped.
void appendUpTo(std::size_t most, Bytes& kept, std::span<const Byte> bytes);

}  // namespace tavio::links

// Text values: UTF-8 in a std::string, or no text at all.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio {

// A text, or none. No text (std::nullopt) is what an undecodable file or an absent reply is; it is
// never the same as the empty text "".
using Text = std::optional<std::string>;

}  // namespace tavio

namespace tavio::platform {

// The bytes as a text if all of them together are well-formed UTF-8 (no overlong form, no
// surrogate, nothing above U+10FFFF), else no text. A leading byte-order mark stays in the text.
// Zero bytes of input give the empty text.
Text decodeUtf8(std::span<const Byte> bytes);

// The text's UTF-16 code units, of each the low 8 bits: how a command text is moved into a byte
// buffer. "A" gives 41, "é" gives E9, "€" (U+20AC) gives AC, a character above U+FFFF gives two
// bytes. A byte that is not part of well-formed UTF-8 stands for itself.
Bytes lowBytesOfUtf16(std::string_view text);

}  // namespace tavio::platform

// Text values: UTF-8 in a std::string, or no text at all.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/export.h"

namespace tavio {

// A text, or none. An undecodable file or a missing reply is no text (std::nullopt), which is not
// the empty text "".
using Text = std::optional<std::string>;

}  // namespace tavio

namespace tavio::platform {

// The bytes as a text if all of them together are well-formed UTF-8 (no overlong form, no
// surrogate, nothing above U+10FFFF), else no text. A leading byte-order mark stays in the text.
// Zero bytes of input give the empty text.
TAVIO_API Text decodeUtf8(std::span<const Byte> bytes);

// The low 8 bits of each of the text's UTF-16 code units. Command texts are written into byte
// buffers so. "A" gives 41, "é" gives E9, "€" (U+20AC) gives AC, a character above U+FFFF gives two
// bytes. A byte that is not part of well-formed UTF-8 stands for itself.
TAVIO_API Bytes lowBytesOfUtf16(std::string_view text);

}  // namespace tavio::platform

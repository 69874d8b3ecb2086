// Codes for tests, module by module.
#pragma once

#include <string>
#include <vector>

namespace tavio::test {

// A row of modules per text: '#' is black.
using TextPicture = std::vector<std::string>;

// "ROW F 12" and a longer text: 21 and 33 modules a side.
extern const TextPicture kSmallQr;
extern const TextPicture kLargeQr;

// Square, oblong, and so large that it has inner lines.
extern const TextPicture kSmallDataMatrix;
extern const TextPicture kOblongDataMatrix;
extern const TextPicture kLargeDataMatrix;

// Code 128 of printable characters, one row of modules.
std::string code128(const std::string& text);

}  // namespace tavio::test

// The question to tavio-scan and its answer.
//
// It has no words (helper/ask_program.h). Its input is a picture in dots: a binary PBM file. It
// answers with a count of bytes, 8 bytes of this machine's order, and that many bytes of text: for
// each code a line of words,
//
//   KIND LEFT TOP WIDTH HEIGHT MODULE COUNT
//
//   KIND             "qr", "code128", "datamatrix" and so on: small letters and digits
//   LEFT TOP         the corner of the symbol, without its quiet zone, in dots
//   WIDTH HEIGHT     its size in dots
//   MODULE           the width of its modules, in hundredths of a dot
//   COUNT            of the bytes that follow
//
// and after it as many bytes, the data of the code in UTF-8, and a line feed.
#pragma once

#include <cstdint>

namespace tavio::scan {

inline constexpr const char* kProgramName = "tavio-scan";

// Instead of the count: there was not enough memory.
inline constexpr std::uint64_t kOutOfMemory = ~std::uint64_t{0};

// A longer answer is malformed.
inline constexpr std::uint64_t kMaxAnswerBytes = std::uint64_t{1} << 24U;

}  // namespace tavio::scan

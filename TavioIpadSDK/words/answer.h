// The protocol between the library and the program tavio-words, above that of all helper programs
// (helper/ask_program.h).
//
//   words    = RESOLUTION SIZE MIN-SIZE BOLD ITALIC WIDTH HEIGHT INSET ACROSS DOWN FILLS-BOX
//              TEXT-BYTES FACE-BYTES, numbers; the first ones are those of Setting
//   input    = text face font
//              text and face are UTF-8; the font is a font file, of which the face is not used, or
//              nothing
//   answer   = header rows; nothing follows
//   header   = the 104 bytes of AnswerHeader, numbers in the machine's own form
//   rows     = of a drawing `height` rows from the top, each of whole words of 64 bits as in
//              sharp::Dots, padding bits are 0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace tavio::words {

inline constexpr std::uint32_t kAnswerMagic = 0x44575654;  // reads TVWD in memory
inline constexpr std::uint32_t kAnswerVersion = 1;

// Values of AnswerHeader::outcome.
enum class Answer : std::uint32_t {
    kDrawn = 0,
    kMissingLetters = 1,
    kNoFace = 2,
    kNoFont = 3,    // the file is no font that words can be set in
    kSmallBox = 4,  // they do not fit, not even at the smallest size
    kOutOfMemory = 5,
};

inline constexpr std::size_t kMaxLettersNamed = 16;

// Fields that an outcome does not name are 0.
struct AnswerHeader {
    std::uint32_t magic = kAnswerMagic;
    std::uint32_t version = kAnswerVersion;
    Answer outcome = Answer::kNoFont;

    // kDrawn: the size of the drawing. kSmallBox: a box that would do, at the smallest size; it may
    // have sides above kMaxSide.
    std::int32_t width = 0;
    std::int32_t height = 0;

    // kDrawn: 1 if there is a black dot, else 0.
    std::uint32_t hasInk = 0;

    double size = 0;  // kDrawn, kSmallBox: in points

    // kMissingLetters: the first code points, in the order of the text.
    std::uint32_t letterCount = 0;
    std::array<std::uint32_t, kMaxLettersNamed> letters{};
    std::uint32_t unused = 0;
};
static_assert(sizeof(AnswerHeader) == 104 && std::is_trivially_copyable_v<AnswerHeader>);

}  // namespace tavio::words

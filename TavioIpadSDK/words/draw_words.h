// Words as dots, drawn by the program tavio-words.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "TavioIpadSDK/helper/limits.h"
#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/uncleared_bytes.h"
#include "TavioIpadSDK/words/setting.h"

namespace tavio::words {

enum class Outcome {
    kDrawn,
    kNothing,         // there is no black dot: only spaces, or nothing at all
    kMissingLetters,  // no font has some of the letters
    kNoFace,          // this machine has no such face
    kNoFont,          // the file is no font that words can be set in
    kSmallBox,        // they do not fit, not even at the smallest size
    kCpuLimit,        // stopped: used more processor time than allowed
    kWallLimit,       // stopped: took longer than allowed
    kMemoryLimit,     // stopped: asked for more memory than allowed
    kHelperMissing,   // the program cannot be started
    kHelperFailed,    // the program died, or its answer is malformed
};

struct WordsOrder {
    std::string_view text;       // UTF-8 without NUL
    std::string_view face;       // UTF-8 without NUL: "sans", "serif", "mono", or a family
    std::span<const Byte> font;  // a font file instead of the face, or nothing
    Setting setting;             // with values as it says
};

struct DrawnWords {
    Outcome outcome = Outcome::kHelperFailed;

    // kDrawn: of the drawing. kSmallBox: of a box that would do, larger than the one of the order.
    std::int32_t width = 0;
    std::int32_t height = 0;

    double size = 0;                     // kDrawn, kSmallBox: of the face, in points
    machine::UnclearedBytes bits;        // kDrawn: as in sharp::Dots
    std::vector<std::uint32_t> letters;  // kMissingLetters: the first code points
};

// Letters are solid, their stems are whole dots. The same font file gives the same dots on every
// machine. Blocks until the words are drawn or a limit is reached. Never throws.
//
// helper: the path of the program; "" looks for it as for the one that draws pages.
DrawnWords drawWords(const WordsOrder& order, const helper::Limits& limits = {},
                     const std::string& helper = "") noexcept;

}  // namespace tavio::words

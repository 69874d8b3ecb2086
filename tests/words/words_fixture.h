// Orders of words in the font of the examples.
#pragma once

#include <fstream>
#include <iterator>
#include <ostream>
#include <string_view>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/words/draw_words.h"

namespace tavio::words {

// How googletest prints an outcome.
inline void PrintTo(Outcome outcome, std::ostream* out) {
    *out << "outcome " << static_cast<int>(outcome);
}

}  // namespace tavio::words

namespace tavio::test {

inline const Bytes& exampleFont() {
    static const Bytes bytes = [] {
        std::ifstream file(TAVIO_EXAMPLES_DIR "/fonts/DejaVuSans.ttf", std::ios::binary);
        return Bytes(std::istreambuf_iterator<char>(file), {});
    }();
    return bytes;
}

// Words of 5 points in a box of 200 x 100 dots at 200 dots an inch, drawn as large as they are.
inline words::WordsOrder orderOf(std::string_view text) {
    words::WordsOrder order;
    order.text = text;
    order.face = "sans";
    order.font = exampleFont();
    order.setting = {
        .resolution = 200, .size = 5, .minSize = 5, .width = 200, .height = 100, .fillsBox = false};
    return order;
}

}  // namespace tavio::test

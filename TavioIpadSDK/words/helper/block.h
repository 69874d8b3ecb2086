// Words that are set: lines at their places.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "TavioIpadSDK/words/helper/fonts.h"
#include "TavioIpadSDK/words/setting.h"

namespace tavio::words_helper {

// In dots, from any point; right and bottom are the first ones outside.
struct Bounds {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;

    std::int32_t width() const { return right - left; }
    std::int32_t height() const { return bottom - top; }
};

struct Line {
    PangoLayoutLine* line = nullptr;  // of the text's layout
    std::int32_t left = 0;
    std::int32_t baseline = 0;
};

// Lines, valid until the text is set another time.
struct Block {
    std::vector<Line> lines;
    Bounds bounds;  // of the lines, with all parts of letters that reach out of them
    bool hasBrokenWords = false;
};

// A text that can be set at any size.
class Text {
  public:
    // `text` and the rest must outlive this.
    Text(const Fonts& fonts, std::string_view text, const words::Setting& setting);

    // Sets it at a size in points. A text with a paragraph that is too long for the library's numbers
    // has a block that fits nowhere, without lines.
    Block set(double size);

    // The text as it was last set.
    PangoLayout* layout() const { return layout_.get(); }

  private:
    double faceDots(double size) const;
    bool isTooLong(double size) const;
    void wrap(double size, std::int32_t width);
    Block placed(std::int32_t width) const;
    bool breaksWords() const;

    const words::Setting& setting_;
    std::size_t longestParagraph_;  // letters
    Description face_;
    TextContext context_;
    Layout layout_;
};

}  // namespace tavio::words_helper

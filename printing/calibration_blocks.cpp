#include "tavio/printing/calibration_blocks.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "TavioIpadSDK/sharp/options.h"
#include "tavio/printing/bar_reduction.h"

namespace tavio::printing {
namespace {

// Something with a size. draw(left, top) draws it.
struct Block {
    Size size;
    std::function<void(std::int32_t left, std::int32_t top)> draw;
};

// ---- Tones --------------------------------------------------------------------------------------

constexpr std::int32_t kTones = sharp::kMaxDotGain + 1;
constexpr std::int32_t kStripe = 4;  // dots of a stripe of the pattern, and between two of them

struct ToneMeasures {
    std::int32_t columns = 0;  // tones in a row
    std::int32_t side = 0;     // of a tone
    std::int32_t pattern = 0;  // the width of the pattern beside it
};

// The grey that stripes look like from far away, on a printer whose dots grow as much: their edges grow,
// too.
Byte greyOfStripes(std::int32_t dotGain) {
    const double grown = barGrowthFor({.tone = dotGain});
    return static_cast<Byte>(std::lround(255 * (0.5 - grown / (2 * kStripe))));
}

class Tones {
  public:
    Tones(CalibrationSheet& sheet, const ToneMeasures& measures)
        : sheet_(sheet), measures_(measures) {}

    Block block() const {
        const std::int32_t rows = (kTones + measures_.columns - 1) / measures_.columns;
        const Size size{measures_.columns * step() + measures_.pattern, rows * rowHeight()};
        return {size, [*this](std::int32_t left, std::int32_t top) {
                    for (std::int32_t tone = 0; tone < kTones; ++tone) {
                        drawTone(tone, left + tone % measures_.columns * step(),
                                 top + tone / measures_.columns * rowHeight());
                    }
                }};
    }

  private:
    std::int32_t step() const { return measures_.pattern + measures_.side; }
    std::int32_t rowHeight() const {
        return measures_.side + sheet_.textSize("0").height + 3 * sheet_.unit();
    }

    // Between two stripes of the pattern.
    void drawTone(std::int32_t tone, std::int32_t left, std::int32_t top) const {
        const auto [columns, side, pattern] = measures_;
        sheet_.lineDown(left, top, side, pattern, kStripe);
        const std::int32_t from = left + pattern;
        sheet_.grey({from, top, from + side, top + side}, greyOfStripes(tone), tone);
        if (tone % columns == columns - 1)
            sheet_.lineDown(from + side, top, side, pattern, kStripe);
        sheet_.textAt(std::to_string(tone), from + side / 2, top + side + sheet_.unit());
    }

    CalibrationSheet& sheet_;
    ToneMeasures measures_;
};

std::vector<Block> toneBlocks(CalibrationSheet& sheet) {
    const std::int32_t unit = sheet.unit();
    std::vector<Block> blocks;
    for (const std::int32_t columns : {10, 5}) {
        for (const auto& [side, pattern] : {std::pair{20, 10}, std::pair{14, 8}})
            blocks.push_back(Tones(sheet, {columns, side * unit, pattern * unit}).block());
    }
    return blocks;
}

// ---- Modules and lines --------------------------------------------------------------------------

constexpr std::int32_t kMaxModule = 6;
constexpr std::int32_t kMatrixSide = 12;  // modules of a one-digit Data Matrix with its quiet zone
constexpr std::int32_t kMatrixHeight = kMatrixSide * kMaxModule;
constexpr std::int32_t kMaxLine = 5;

Block matrixBlock(CalibrationSheet& sheet) {
    const std::int32_t gap = 4 * sheet.unit();
    const std::int32_t sides = kMatrixSide * kMaxModule * (kMaxModule + 1) / 2;
    const Size size{sides + (kMaxModule - 1) * gap, kMatrixHeight + sheet.textSize("0").height};
    return {size, [&sheet, gap](std::int32_t left, std::int32_t top) {
                for (std::int32_t module = 1; module <= kMaxModule; ++module) {
                    const std::int32_t side = kMatrixSide * module;
                    const std::string number = std::to_string(module);
                    sheet.code(CodeKind::kDataMatrix, number, left, top + kMatrixHeight - side,
                               {.size = ModuleDots{module}});
                    sheet.textAt(number, left + side / 2, top + kMatrixHeight);
                    left += side + gap;
                }
            }};
}

Block linesBlock(CalibrationSheet& sheet) {
    const std::int32_t unit = sheet.unit();
    const Size digit = sheet.textSize("0");
    const std::int32_t step = digit.height + 2 * unit;
    const std::int32_t length = 30 * unit;
    const std::int32_t numberLeft = length + unit;
    const std::int32_t downLeft = numberLeft + digit.width + 4 * unit;
    const Size size{downLeft + kMaxLine * step, kMaxLine * step};
    return {size, [=, &sheet](std::int32_t left, std::int32_t top) {
                for (std::int32_t line = 1; line <= kMaxLine; ++line) {
                    const std::string number = std::to_string(line);
                    const std::int32_t at = (line - 1) * step;
                    sheet.lineAcross(left, top + at + digit.height / 2, length, line);
                    sheet.text(number, left + numberLeft, top + at);
                    sheet.lineDown(left + downLeft + at + digit.width / 2, top,
                                   size.height - digit.height - unit, line);
                    sheet.text(number, left + downLeft + at, top + size.height - digit.height);
                }
            }};
}

Block barsBlock(CalibrationSheet& sheet, std::int32_t module) {
    constexpr std::int32_t kModules = 66;  // of a Code 128 of one digit, with its quiet zones
    const std::string caption = "BARS " + std::to_string(module);
    const std::int32_t height = 14 * sheet.unit();
    const std::int32_t width = std::max(kModules * module, sheet.textSize(caption).width);
    const std::int32_t gap = sheet.unit();
    return {{width, height + gap + sheet.textSize(caption).height},
            [=, &sheet](std::int32_t left, std::int32_t top) {
                sheet.code(CodeKind::kCode128, std::to_string(module), left, top,
                           {.size = ModuleDots{module}, .barHeight = height});
                sheet.textAt(caption, left + width / 2, top + height + gap);
            }};
}

// ---- The page -----------------------------------------------------------------------------------

// With a line of letters above it.
Block captioned(const std::string& caption, Block block, CalibrationSheet& sheet) {
    const Size text = sheet.textSize(caption);
    const std::int32_t down = text.height + 2 * sheet.unit();
    const Size size{std::max(block.size.width, text.width), block.size.height + down};
    return {size, [&sheet, caption, down, draw = std::move(block.draw)](std::int32_t left,
                                                                        std::int32_t top) {
                sheet.text(caption, left, top);
                draw(left, top + down);
            }};
}

// Places blocks in rows, each from the left.
class Rows {
  public:
    Rows(const SheetArea& area, std::int32_t gap)
        : area_(area), gap_(gap), left_(area.left), top_(area.top), bottom_(area.top) {}

    // False if there is no room for it.
    bool place(const Block& block) {
        if (!fits(block.size)) {
            if (!fitsBelow(block.size)) return false;
            left_ = area_.left;
            top_ = bottom_ + gap_;
        }
        block.draw(left_, top_);
        left_ += block.size.width + gap_;
        bottom_ = std::max(bottom_, top_ + block.size.height);
        return true;
    }

  private:
    bool fits(Size size) const {
        return left_ + size.width <= area_.right && top_ + size.height <= area_.bottom;
    }
    bool fitsBelow(Size size) const {
        return area_.left + size.width <= area_.right &&
               bottom_ + gap_ + size.height <= area_.bottom;
    }

    SheetArea area_;
    std::int32_t gap_;
    std::int32_t left_;
    std::int32_t top_;
    std::int32_t bottom_;  // of the row
};

}  // namespace

void drawBlocks(const SheetArea& area, CalibrationSheet& sheet) {
    Rows rows(area, 6 * sheet.unit());
    for (const Block& block : toneBlocks(sheet))
        if (rows.place(captioned("TONE", block, sheet))) break;
    rows.place(captioned("MODULE", matrixBlock(sheet), sheet));
    rows.place(captioned("LINE", linesBlock(sheet), sheet));
    for (std::int32_t module = 1; module <= kMaxModule; ++module)
        rows.place(barsBlock(sheet, module));
}

}  // namespace tavio::printing

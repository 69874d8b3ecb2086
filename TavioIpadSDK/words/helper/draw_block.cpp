#include "TavioIpadSDK/words/helper/draw_block.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <span>

namespace tavio::words_helper {

namespace {

using words::Setting;

struct Corner {
    std::int32_t left = 0;
    std::int32_t top = 0;
};

// Where the block's own 0, 0 lies in a drawing of this size. Lines already lie at their sides of the
// box, but for letters that reach out of it.
Corner cornerOf(const FittedBlock& fitted, const Setting& setting, std::int32_t height) {
    const Bounds& bounds = fitted.block.bounds;
    const std::int32_t inset = setting.inset;
    const std::int32_t down =
        (height - bounds.height()) * static_cast<std::int32_t>(setting.down) / 2;
    if (!setting.fillsBox) return {inset - bounds.left, down - bounds.top};
    const std::int32_t rightmost = setting.width - inset - bounds.right;
    return {std::max(std::min(inset, rightmost), inset - bounds.left), down - bounds.top};
}

void drawLines(cairo_surface_t* surface, const Block& block, Corner corner) {
    const Context context(cairo_create(surface));
    cairo_set_antialias(context.get(), CAIRO_ANTIALIAS_NONE);
    for (const Line& line : block.lines) {
        cairo_move_to(context.get(), corner.left + line.left, corner.top + line.baseline);
        pango_cairo_show_layout_line(context.get(), line.line);
    }
    if (cairo_status(context.get()) != CAIRO_STATUS_SUCCESS) cairo_surface_finish(surface);
}

// On a machine whose words begin with their lowest byte, the surface's leftmost dot is the lowest bit.
constexpr Byte leftmostFirst(Byte dots) {
    if constexpr (std::endian::native == std::endian::big) return dots;
    unsigned turned = 0;
    for (unsigned bit = 0; bit < 8; ++bit) turned |= (dots >> bit & 1U) << (7U - bit);
    return static_cast<Byte>(turned);
}

constexpr auto kTurned = [] {
    std::array<Byte, 256> turned{};
    for (unsigned dots = 0; dots < turned.size(); ++dots)
        turned[dots] = leftmostFirst(static_cast<Byte>(dots));
    return turned;
}();

Bytes rowsOf(cairo_surface_t* surface, const Drawing& drawing) {
    cairo_surface_flush(surface);
    const Byte* from = cairo_image_surface_get_data(surface);
    if (from == nullptr) return {};
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface));
    const auto width = static_cast<std::size_t>(drawing.width);
    const std::size_t rowBytes = (width + 63) / 64 * 8;
    const std::size_t used = (width + 7) / 8;
    Bytes rows(rowBytes * static_cast<std::size_t>(drawing.height));
    for (auto row = rows.begin(); row != rows.end();
         row += static_cast<std::ptrdiff_t>(rowBytes), from += stride) {
        std::transform(from, from + used, row, [](Byte dots) { return kTurned[dots]; });
        Byte& last = row[static_cast<std::ptrdiff_t>(used) - 1];
        if (width % 8 != 0) last = static_cast<Byte>(last & 0xFF00U >> width % 8);
    }
    return rows;
}

}  // namespace

Drawing drawBlock(const FittedBlock& fitted, const Setting& setting) {
    Drawing drawing;
    // Words without letters may be without extent.
    drawing.width = setting.fillsBox ? setting.width : std::max(fitted.width, 1);
    drawing.height = setting.fillsBox ? setting.height : std::max(fitted.height, 1);
    const Surface surface(
        cairo_image_surface_create(CAIRO_FORMAT_A1, drawing.width, drawing.height));
    drawLines(surface.get(), fitted.block, cornerOf(fitted, setting, drawing.height));
    drawing.rows = rowsOf(surface.get(), drawing);
    drawing.hasInk = std::ranges::any_of(drawing.rows, [](Byte dots) { return dots != 0; });
    return drawing;
}

}  // namespace tavio::words_helper

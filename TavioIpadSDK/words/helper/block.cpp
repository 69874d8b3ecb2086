#include "TavioIpadSDK/words/helper/block.h"

#include <algorithm>
#include <cstddef>

namespace tavio::words_helper {

namespace {

using words::Setting;
using words::Side;

constexpr double kPointsPerInch = 72;

// Higher blocks fit nowhere; the library's numbers would not hold them.
constexpr std::int32_t kMaxHeight = 1 << 20;

// The library sets a paragraph as one line before it wraps it, in units of which its numbers hold 2^21
// dots. Letters are less than four times as wide as the face is high, but for single ones.
constexpr double kMaxParagraphDots = 1 << 19;

Description faceOf(const Fonts& fonts, const Setting& setting) {
    Description face(pango_font_description_new());
    pango_font_description_set_family(face.get(), fonts.family.c_str());
    pango_font_description_set_weight(face.get(),
                                      setting.isBold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
    pango_font_description_set_style(face.get(),
                                     setting.isItalic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
    return face;
}

// In letters.
std::size_t longestParagraph(std::string_view text) {
    std::size_t longest = 0;
    std::size_t letters = 0;
    for (const char byte : text) {
        const bool continues = (static_cast<unsigned char>(byte) & 0xC0U) == 0x80;
        letters = byte == '\n' ? 0 : letters + (continues ? 0 : 1);
        longest = std::max(longest, letters);
    }
    return longest;
}

std::int32_t shifted(std::int32_t room, Side side) {
    return room * static_cast<std::int32_t>(side) / 2;
}

bool runsFromRight(PangoLayoutLine* line) {
    return pango_layout_line_get_resolved_direction(line) == PANGO_DIRECTION_RTL;
}

// A broken word is often a number, which a hyphen would change. The attribute counts for the places
// inside of its range: those after soft hyphens lie between two ranges, and show them.
TextAttributes withoutAddedHyphens(std::string_view text) {
    constexpr std::string_view kSoftHyphen = "\u00AD";
    TextAttributes attributes(pango_attr_list_new());
    std::size_t begin = 0;
    while (begin < text.size()) {
        const std::size_t hyphen = text.find(kSoftHyphen, begin);
        const std::size_t end =
            hyphen == std::string_view::npos ? text.size() : hyphen + kSoftHyphen.size();
        PangoAttribute* const none = pango_attr_insert_hyphens_new(FALSE);
        none->start_index = static_cast<guint>(begin);
        none->end_index = static_cast<guint>(end);
        pango_attr_list_insert(attributes.get(), none);
        begin = end;
    }
    return attributes;
}

// The whole dots that a rectangle in the layout's units touches.
Bounds boundsOf(PangoRectangle rectangle) {
    pango_extents_to_pixels(&rectangle, nullptr);
    return {rectangle.x, rectangle.y, rectangle.x + rectangle.width,
            rectangle.y + rectangle.height};
}

void include(Bounds& bounds, const Bounds& other) {
    bounds = {std::min(bounds.left, other.left), std::min(bounds.top, other.top),
              std::max(bounds.right, other.right), std::max(bounds.bottom, other.bottom)};
}

Bounds moved(const Bounds& bounds, std::int32_t right, std::int32_t down) {
    return {bounds.left + right, bounds.top + down, bounds.right + right, bounds.bottom + down};
}

// A line with its baseline at 0, 0.
struct Extents {
    Bounds ink;
    Bounds line;
};

Extents extentsOf(PangoLayoutLine* line) {
    PangoRectangle ink{};
    PangoRectangle logical{};
    pango_layout_line_get_extents(line, &ink, &logical);
    Extents extents{boundsOf(ink), boundsOf(logical)};
    if (ink.width <= 0 || ink.height <= 0) extents.ink = extents.line;
    return extents;
}

}  // namespace

Text::Text(const Fonts& fonts, std::string_view text, const Setting& setting)
    : setting_(setting),
      longestParagraph_(longestParagraph(text)),
      face_(faceOf(fonts, setting)),
      context_(textContext(fonts)),
      layout_(pango_layout_new(context_.get())) {
    pango_layout_set_wrap(layout_.get(), PANGO_WRAP_WORD_CHAR);
    pango_layout_set_attributes(layout_.get(), withoutAddedHyphens(text).get());
    pango_layout_set_text(layout_.get(), text.data(), static_cast<int>(text.size()));
}

Block Text::set(double size) {
    if (isTooLong(size)) return {{}, {0, 0, 1, kMaxHeight}, false};
    const std::int32_t width = std::max(setting_.width - 2 * setting_.inset, 1);
    wrap(size, width);
    Block block = placed(width);
    // Letters may reach out of their line: then the lines are made shorter by as much.
    const std::int32_t beyond = block.bounds.width() - width;
    if (beyond > 0 && beyond < width) {
        wrap(size, width - beyond);
        block = placed(width - beyond);
    }
    block.hasBrokenWords = breaksWords();
    return block;
}

double Text::faceDots(double size) const {
    return size / kPointsPerInch * setting_.resolution;
}

bool Text::isTooLong(double size) const {
    return static_cast<double>(longestParagraph_) * faceDots(size) > kMaxParagraphDots;
}

void Text::wrap(double size, std::int32_t width) {
    pango_font_description_set_absolute_size(face_.get(), faceDots(size) * PANGO_SCALE);
    pango_layout_set_font_description(layout_.get(), face_.get());
    pango_layout_set_width(layout_.get(), width * PANGO_SCALE);
}

// Lines are placed here, one below the other: the layout's own numbers are too small for a long text,
// and its left side is the right one of lines that run from the right.
Block Text::placed(std::int32_t width) const {
    Block block;
    std::vector<Extents> extents;
    std::int32_t top = 0;
    std::int32_t widest = 0;
    for (GSList* node = pango_layout_get_lines_readonly(layout_.get());
         node != nullptr && top < kMaxHeight; node = node->next) {
        auto* line = static_cast<PangoLayoutLine*>(node->data);
        const Extents& added = extents.emplace_back(extentsOf(line));
        block.lines.push_back({line, 0, top - added.line.top});
        top += added.line.height();
        widest = std::max(widest, added.line.width());
    }
    const std::int32_t room = setting_.fillsBox ? width : widest;
    for (std::size_t i = 0; i < block.lines.size(); ++i) {
        Line& line = block.lines[i];
        const bool isTurned = setting_.across == Side::kBegin && runsFromRight(line.line);
        const Side side = isTurned ? Side::kEnd : setting_.across;
        line.left = shifted(room - extents[i].line.width(), side) - extents[i].line.left;
        if (i == 0) block.bounds = moved(extents[i].line, line.left, line.baseline);
        include(block.bounds, moved(extents[i].line, line.left, line.baseline));
        include(block.bounds, moved(extents[i].ink, line.left, line.baseline));
    }
    return block;
}

bool Text::breaksWords() const {
    int count = 0;
    const PangoLogAttr* letters = pango_layout_get_log_attrs_readonly(layout_.get(), &count);
    const char* text = pango_layout_get_text(layout_.get());
    glong letter = 0;
    int reached = 0;
    for (const GSList* node = pango_layout_get_lines_readonly(layout_.get()); node != nullptr;
         node = node->next) {
        const auto* line = static_cast<const PangoLayoutLine*>(node->data);
        letter += g_utf8_pointer_to_offset(text + reached, text + line->start_index);
        reached = line->start_index;
        if (line->is_paragraph_start == 0 && letter < count && letters[letter].is_line_break == 0)
            return true;
    }
    return false;
}

}  // namespace tavio::words_helper

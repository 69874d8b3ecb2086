#include "TavioIpadSDK/pdf/helper/draw_rows.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "TavioIpadSDK/sharp/settle_dots.h"

namespace tavio::pdf_helper {

namespace {

// A strip of this many bytes stays in the processor's cache from its first pixel to its last dot. Where
// strips begin shows in gradients, by a grey or two.
constexpr int kStripBytes = 1 << 20;

// Rows are handed on in pieces of at least this size: each wakes the reader.
constexpr std::size_t kBytesAtOnce = 1 << 16;

// An image surface into which a page is drawn strip by strip.
class Strip {
  public:
    Strip(int columns, int rows)
        : surface_(cairo_image_surface_create(CAIRO_FORMAT_RGB24, columns, rows)) {}

    // Draws what is `top` pixels below the page's top edge.
    bool draw(cairo_surface_t* page, int top) {
        const Context context(cairo_create(surface_.get()));
        cairo_set_operator(context.get(), CAIRO_OPERATOR_SOURCE);
        cairo_set_source_surface(context.get(), page, 0, -top);
        cairo_paint(context.get());
        cairo_surface_flush(surface_.get());
        return cairo_status(context.get()) == CAIRO_STATUS_SUCCESS;
    }

    // The surface aligns its rows for pixels of 32 bits.
    const std::uint32_t* row(int row) const {
        const unsigned char* const data = cairo_image_surface_get_data(surface_.get());
        return reinterpret_cast<const std::uint32_t*>(data) +
               stride() * static_cast<std::size_t>(row);
    }
    std::size_t stride() const {
        return static_cast<std::size_t>(cairo_image_surface_get_stride(surface_.get())) / 4;
    }

  private:
    Surface surface_;
};

void append(std::vector<Byte>& rows, std::span<const Byte> row) {
    rows.insert(rows.end(), row.begin(), row.end());
}

}  // namespace

bool drawRows(const RecordedPage& page, const std::function<bool(std::span<const Byte>)>& send) {
    const int factor = page.factor;
    const int width = static_cast<int>(page.header.columns);
    const int height = static_cast<int>(page.header.rows);
    const int dotsAtOnce = std::clamp(kStripBytes / (4 * factor * factor * width), 1, height);
    Strip strip(width * factor, dotsAtOnce * factor);
    sharp::DotSettler settler(width, factor);
    std::vector<Byte> rows;
    for (int first = 0; first < height; first += dotsAtOnce) {
        if (!strip.draw(page.recording.get(), first * factor)) return false;
        for (int dot = 0; dot < std::min(dotsAtOnce, height - first); ++dot) {
            append(rows, settler.add(strip.row(dot * factor), strip.stride()));
        }
        if (rows.size() < kBytesAtOnce) continue;
        if (!send(rows)) return false;
        rows.clear();
    }
    append(rows, settler.finish());
    return send(rows);
}

}  // namespace tavio::pdf_helper

#include "TavioIpadSDK/pictures/decode_bmp_rle.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace tavio::pictures {
namespace {

constexpr Byte kEndOfLine = 0;
constexpr Byte kEndOfBitmap = 1;
constexpr Byte kDelta = 2;

class RunReader {
  public:
    RunReader(const BmpHeader& header, std::span<UInt32> pixels)
        : header_(header), rest_(header.data), pixels_(pixels) {}

    std::string read() {
        while (problem_.empty() && !ended_) {
            if (rest_.empty() && header_.dataSizeStated) break;
            if (has(2)) readPair();
        }
        return problem_;
    }

  private:
    bool has(std::size_t count) {
        if (rest_.size() < count) refuse("the BMP file is cut short");
        return rest_.size() >= count;
    }

    Byte take() {
        const Byte value = rest_.front();
        rest_ = rest_.subspan(1);
        return value;
    }

    void refuse(const char* why) { problem_ = why; }

    void readPair() {
        const Byte count = take();
        const Byte value = take();
        if (count > 0) return repeat(count, value);
        switch (value) {
            case kEndOfLine:
                return move(-column_, 1);
            case kEndOfBitmap:
                ended_ = true;
                return;
            case kDelta:
                if (has(2)) readDelta();
                return;
            default:
                return copy(value);
        }
    }

    void readDelta() {
        const std::int32_t right = take();
        const std::int32_t up = take();
        move(right, up);
    }

    // A move may end in the row above the top one, but nothing is drawn there.
    void move(std::int32_t right, std::int32_t up) {
        column_ += right;
        row_ += up;
        if (column_ > header_.width || row_ > header_.height) refuse(kOutside);
    }

    void repeat(unsigned count, Byte value) {
        for (unsigned index = 0; index < count && problem_.empty(); ++index)
            draw(indexIn(value, index));
    }

    // Padded to an even number of bytes.
    void copy(unsigned count) {
        const std::size_t bytes = isNibbles() ? (count + 1) / 2 : count;
        if (!has(bytes + bytes % 2)) return;
        const std::span<const Byte> values = rest_.first(bytes);
        rest_ = rest_.subspan(bytes + bytes % 2);
        for (unsigned index = 0; index < count && problem_.empty(); ++index)
            draw(indexIn(values[isNibbles() ? index / 2 : index], index));
    }

    bool isNibbles() const { return header_.coding == BmpCoding::kRunLength4; }

    unsigned indexIn(Byte value, unsigned position) const {
        if (!isNibbles()) return value;
        return position % 2 == 0 ? value >> 4 : value & 0x0F;
    }

    void draw(unsigned index) {
        if (column_ >= header_.width || row_ >= header_.height) return refuse(kOutside);
        if (index >= header_.palette.size())
            return refuse("the BMP file has a pixel outside of its palette");
        const auto fromTop = static_cast<std::size_t>(header_.height - 1 - row_);
        const auto line = static_cast<std::size_t>(header_.width);
        pixels_[fromTop * line + static_cast<std::size_t>(column_)] = header_.palette[index];
        ++column_;
    }

    static constexpr const char* kOutside = "the BMP file draws outside of its picture";

    const BmpHeader& header_;
    std::span<const Byte> rest_;
    std::span<UInt32> pixels_;
    std::int32_t column_ = 0;
    std::int32_t row_ = 0;  // from the bottom
    bool ended_ = false;
    std::string problem_;
};

}  // namespace

std::string readBmpRuns(const BmpHeader& header, std::span<UInt32> pixels) {
    return RunReader(header, pixels).read();
}

}  // namespace tavio::pictures

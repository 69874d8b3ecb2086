#include "TavioIpadSDK/pictures/exif_orientation.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace tavio::pictures {
namespace {

constexpr std::size_t kEntryBytes = 12;
constexpr unsigned kOrientationTag = 0x0112;
constexpr unsigned kShortType = 3;

// Reads numbers in the block's byte order; 0 outside of the block.
class TiffReader {
  public:
    TiffReader(std::span<const Byte> block, bool bigEndian)
        : block_(block), bigEndian_(bigEndian) {}

    unsigned number16(std::size_t at) const {
        if (at > block_.size() || block_.size() - at < 2) return 0;
        const unsigned first = block_[at];
        const unsigned second = block_[at + 1];
        return bigEndian_ ? (first << 8) | second : first | (second << 8);
    }

    std::uint32_t number32(std::size_t at) const {
        const std::uint32_t first = number16(at);
        const std::uint32_t second = number16(at + 2);
        return bigEndian_ ? (first << 16) | second : first | (second << 16);
    }

    bool holds(std::size_t at, std::size_t count) const {
        return at <= block_.size() && block_.size() - at >= count;
    }

  private:
    std::span<const Byte> block_;
    bool bigEndian_;
};

std::optional<TiffReader> openTiff(std::span<const Byte> block) {
    if (block.size() < 8 || block[0] != block[1]) return std::nullopt;
    if (block[0] != 'I' && block[0] != 'M') return std::nullopt;
    const TiffReader reader(block, block[0] == 'M');
    if (reader.number16(2) != 42) return std::nullopt;
    return reader;
}

int orientationIn(const TiffReader& tiff, std::size_t entry) {
    if (tiff.number16(entry + 2) != kShortType || tiff.number32(entry + 4) != 1) return 1;
    const unsigned value = tiff.number16(entry + 8);
    return value >= 1 && value <= 8 ? static_cast<int>(value) : 1;
}

}  // namespace

int exifOrientation(std::span<const Byte> exif) {
    const std::optional<TiffReader> tiff = openTiff(exif);
    if (!tiff) return 1;
    const std::size_t directory = tiff->number32(4);
    const unsigned entries = tiff->number16(directory);
    for (unsigned index = 0; index < entries; ++index) {
        const std::size_t entry = directory + 2 + index * kEntryBytes;
        if (!tiff->holds(entry, kEntryBytes)) return 1;
        if (tiff->number16(entry) == kOrientationTag) return orientationIn(*tiff, entry);
    }
    return 1;
}

}  // namespace tavio::pictures

#include "TavioIpadSDK/pictures/decode_bmp_header.h"

#include <algorithm>
#include <optional>

#include "TavioIpadSDK/pictures/picture.h"

namespace tavio::pictures {
namespace {

constexpr std::size_t kFileHeaderBytes = 14;
constexpr std::uint32_t kCoreHeader = 12;  // OS/2 1: 16-bit sizes, three bytes a palette entry
constexpr std::uint32_t kInfoHeader = 40;

constexpr const char* kCutShort = "the BMP file is cut short";
constexpr const char* kBadHeader = "the BMP file has a damaged header";
constexpr const char* kBadMasks = "the BMP file has damaged bit masks";

enum StoredCoding : std::uint32_t {
    kRgb = 0,
    kRle8 = 1,
    kRle4 = 2,
    kBitFields = 3,
    kEmbeddedJpeg = 4,
    kEmbeddedPng = 5,
    kAlphaBitFields = 6,
};

class HeaderReader {
  public:
    explicit HeaderReader(std::span<const Byte> file) : file_(file) {}

    BmpHeaderRead read() {
        if (!readSizes() || !readCoding() || !readMasks() || !readPalette() || !findData())
            return {{}, why_, refusal_};
        return {std::move(header_), {}};
    }

  private:
    bool refuse(const char* why, Refusal refusal = Refusal::kDamaged) {
        why_ = why;
        refusal_ = refusal;
        return false;
    }

    bool refuseKind() {
        return refuse("the BMP file is of a kind not supported", Refusal::kUnknownFormat);
    }

    std::uint32_t number(std::size_t at, unsigned bytes) const {
        std::uint32_t value = 0;
        for (unsigned index = 0; index < bytes; ++index)
            value |= std::uint32_t{file_[at + index]} << (8 * index);
        return value;
    }

    // A field of the info header, at an offset from its beginning; 0 if the header is too short for
    // it.
    std::uint32_t field(std::size_t at, unsigned bytes = 4) const {
        return at + bytes <= headerBytes_ ? number(kFileHeaderBytes + at, bytes) : 0;
    }

    bool isCore() const { return headerBytes_ == kCoreHeader; }
    bool isOs2() const { return headerBytes_ == 16 || headerBytes_ == 64; }

    bool readSizes() {
        constexpr std::array<std::uint32_t, 8> kKnown = {kCoreHeader, 16, kInfoHeader, 52,
                                                         56,          64, 108,         124};
        if (file_.size() < kFileHeaderBytes + 4) return refuse(kCutShort);
        headerBytes_ = number(kFileHeaderBytes, 4);
        if (std::find(kKnown.begin(), kKnown.end(), headerBytes_) == kKnown.end())
            return refuseKind();
        headerEnd_ = kFileHeaderBytes + headerBytes_;
        if (file_.size() < headerEnd_) return refuse(kCutShort);

        const std::int64_t width = isCore() ? std::int64_t{field(4, 2)} : signedField(4);
        const std::int64_t height = isCore() ? std::int64_t{field(6, 2)} : signedField(8);
        header_.topDown = height < 0;
        const std::int64_t rows = header_.topDown ? -height : height;
        if (width <= 0 || rows == 0) return refuse(kBadHeader);
        if (width > kMaxPixels / rows)
            return refuse("the BMP file has too many pixels", Refusal::kTooLarge);
        header_.width = static_cast<std::int32_t>(width);
        header_.height = static_cast<std::int32_t>(rows);
        return true;
    }

    std::int64_t signedField(std::size_t at) const { return static_cast<std::int32_t>(field(at)); }

    bool readCoding() {
        const std::uint32_t planes = isCore() ? field(8, 2) : field(12, 2);
        header_.bits = isCore() ? field(10, 2) : field(14, 2);
        stored_ = field(16);
        if (planes != 1) return refuse(kBadHeader);
        switch (stored_) {
            case kRgb:
                return isPlainDepth() || refuseKind();
            case kRle8:
                return useRuns(BmpCoding::kRunLength8, 8);
            case kRle4:
                return useRuns(BmpCoding::kRunLength4, 4);
            case kBitFields:
            case kAlphaBitFields:
                if (isOs2() || !hasMasks()) return refuseKind();
                return true;
            case kEmbeddedJpeg:
                return useEmbedded(BmpCoding::kJpeg);
            case kEmbeddedPng:
                return useEmbedded(BmpCoding::kPng);
            default:
                return refuseKind();
        }
    }

    bool isPlainDepth() const {
        constexpr std::array<unsigned, 7> kDepths = {1, 2, 4, 8, 16, 24, 32};
        return std::find(kDepths.begin(), kDepths.end(), header_.bits) != kDepths.end();
    }

    bool useRuns(BmpCoding coding, unsigned bits) {
        header_.coding = coding;
        if (header_.bits != bits || header_.topDown) return refuse(kBadHeader);
        return true;
    }

    bool useEmbedded(BmpCoding coding) {
        header_.coding = coding;
        if (isOs2() || header_.bits != 0) return refuseKind();
        return true;
    }

    bool hasMasks() const { return header_.bits == 16 || header_.bits == 32; }

    // Masks lie in the header or, if it is too short for them, after it.
    bool readMasks() {
        if (!hasMasks()) return true;
        if (stored_ == kRgb) {
            header_.masks = header_.bits == 16
                                ? std::array<UInt32, 4>{0x7C00, 0x03E0, 0x001F, 0}
                                : std::array<UInt32, 4>{0x00FF0000, 0x0000FF00, 0x000000FF, 0};
            return true;
        }
        std::size_t count = headerBytes_ >= 56 ? 4 : 3;
        if (headerBytes_ == kInfoHeader) {
            if (stored_ == kAlphaBitFields) count = 4;
            headerEnd_ += 4 * count;
            if (file_.size() < headerEnd_) return refuse(kCutShort);
        }
        for (std::size_t index = 0; index < count; ++index)
            header_.masks[index] = number(kFileHeaderBytes + kInfoHeader + 4 * index, 4);
        const bool good = std::all_of(header_.masks.begin(), header_.masks.end(),
                                      [this](UInt32 mask) { return isGoodMask(mask); });
        return good || refuse(kBadMasks);
    }

    // One run of bits within the pixel, or none.
    bool isGoodMask(UInt32 mask) const {
        if (header_.bits == 16 && mask > 0xFFFF) return false;
        const UInt32 lowest = mask & (~mask + 1);
        return (mask & (mask + lowest)) == 0;
    }

    // A palette without a stated size is as large as the depth allows, or ends where the pixels
    // begin. A stated size may be larger than the number of usable entries.
    bool readPalette() {
        const std::uint64_t pixelsBegin = number(10, 4);
        if (pixelsBegin < headerEnd_ || pixelsBegin > file_.size())
            return refuse(pixelsBegin < headerEnd_ ? kBadHeader : kCutShort);
        if (header_.bits == 0 || header_.bits > 8) return true;
        const std::size_t entryBytes = isCore() ? 3 : 4;
        const std::uint64_t room = (pixelsBegin - headerEnd_) / entryBytes;
        const std::uint64_t useful = std::uint64_t{1} << header_.bits;
        const std::uint64_t stated = field(32);
        if (stated > room) return refuse("the BMP file has no room for its palette");
        const std::uint64_t count = std::min(stated == 0 ? room : stated, useful);
        for (std::uint64_t index = 0; index < count; ++index) {
            const std::size_t at = headerEnd_ + static_cast<std::size_t>(index) * entryBytes;
            header_.palette.push_back(
                premultipliedPixel(file_[at + 2], file_[at + 1], file_[at], 0xFF));
        }
        return true;
    }

    // The stated size matters only where the size does not follow from width, height and depth.
    bool findData() {
        header_.data = file_.subspan(number(10, 4));
        if (header_.coding == BmpCoding::kPlain) return true;
        const std::size_t stated = field(20);
        if (stated > header_.data.size()) return refuse(kCutShort);
        header_.dataSizeStated = stated != 0;
        if (header_.dataSizeStated) header_.data = header_.data.first(stated);
        return true;
    }

    std::span<const Byte> file_;
    std::uint32_t headerBytes_ = 0;
    std::size_t headerEnd_ = 0;  // with the masks after it
    std::uint32_t stored_ = kRgb;
    BmpHeader header_;
    const char* why_ = "";
    Refusal refusal_ = Refusal::kDamaged;
};

}  // namespace

BmpHeaderRead readBmpHeader(std::span<const Byte> file) {
    return HeaderReader(file).read();
}

}  // namespace tavio::pictures

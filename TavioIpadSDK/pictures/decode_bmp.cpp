#include "TavioIpadSDK/pictures/decode_bmp.h"

#include <array>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "TavioIpadSDK/pictures/decode_bmp_header.h"
#include "TavioIpadSDK/pictures/decode_bmp_rle.h"
#include "TavioIpadSDK/pictures/decode_jpeg.h"
#include "TavioIpadSDK/pictures/decode_png.h"
#include "TavioIpadSDK/pictures/picture_rows.h"

namespace tavio::pictures {
namespace {

constexpr std::uint64_t kRowAlignmentBits = 32;

// One colour out of a pixel's bits, spread over 0 to 255.
class Component {
  public:
    explicit Component(UInt32 mask)
        : mask_(mask),
          shift_(mask == 0 ? 0 : std::countr_zero(mask)),
          largest_(std::uint64_t{mask} >> shift_) {
        for (std::uint64_t value = 0; value < small_.size() && value <= largest_; ++value)
            small_[static_cast<std::size_t>(value)] = spread(value);
    }

    bool absent() const { return mask_ == 0; }

    unsigned of(UInt32 bits) const {
        const UInt32 value = (bits & mask_) >> shift_;
        return value < small_.size() ? small_[value] : spread(value);
    }

  private:
    Byte spread(std::uint64_t value) const {
        return largest_ == 0 ? Byte{0} : static_cast<Byte>((value * 255 + largest_ / 2) / largest_);
    }

    UInt32 mask_;
    int shift_;
    std::uint64_t largest_;
    std::array<Byte, 256> small_{};
};

UInt32 littleEndian(const Byte* bytes, unsigned count) {
    UInt32 value = 0;
    for (unsigned index = 0; index < count; ++index) value |= UInt32{bytes[index]} << (8 * index);
    return value;
}

bool readIndexedRow(const BmpHeader& header, const Byte* line, UInt32* row) {
    const unsigned each = header.bits;
    const unsigned mask = (1U << each) - 1;
    for (std::size_t column = 0; column < static_cast<std::size_t>(header.width); ++column) {
        const std::size_t bit = column * each;
        const unsigned index = (line[bit / 8] >> (8 - each - bit % 8)) & mask;
        if (index >= header.palette.size()) return false;
        row[column] = header.palette[index];
    }
    return true;
}

void readTrueColourRow(const BmpHeader& header, const Byte* line, UInt32* row) {
    for (std::int32_t column = 0; column < header.width; ++column, line += 3)
        row[column] = premultipliedPixel(line[2], line[1], line[0], 0xFF);
}

void readMaskedRow(const BmpHeader& header, const std::array<Component, 4>& components,
                   const Byte* line, UInt32* row) {
    const auto& [red, green, blue, alpha] = components;
    const unsigned bytes = header.bits / 8;
    for (std::int32_t column = 0; column < header.width; ++column, line += bytes) {
        const UInt32 bits = littleEndian(line, bytes);
        row[column] = premultipliedPixel(red.of(bits), green.of(bits), blue.of(bits),
                                         alpha.absent() ? 0xFF : alpha.of(bits));
    }
}

std::uint64_t rowBytes(const BmpHeader& header) {
    const std::uint64_t bits =
        std::uint64_t{header.bits} * static_cast<std::uint64_t>(header.width);
    return (bits + kRowAlignmentBits - 1) / kRowAlignmentBits * (kRowAlignmentBits / 8);
}

// Rows can be read in any order, so they are read from the top.
class PlainBmp : public StoredPicture {
  public:
    explicit PlainBmp(BmpHeader header)
        : StoredPicture(header.width, header.height, 1),
          header_(std::move(header)),
          components_{Component(header_.masks[0]), Component(header_.masks[1]),
                      Component(header_.masks[2]), Component(header_.masks[3])} {}

    void read(std::span<UInt32> rows) override {
        assert(rows.size() % static_cast<std::size_t>(width()) == 0);
        for (; !rows.empty(); rows = rows.subspan(static_cast<std::size_t>(width())))
            readRow(rows.data());
    }

  private:
    void readRow(UInt32* row) {
        const std::int32_t stored = header_.topDown ? row_ : height() - 1 - row_;
        const auto line = static_cast<std::size_t>(rowBytes(header_));
        const Byte* from = header_.data.data() + static_cast<std::size_t>(stored) * line;
        ++row_;
        if (header_.bits <= 8) {
            if (!readIndexedRow(header_, from, row))
                throw DamagedPicture("the BMP file has a pixel outside of its palette");
        } else if (header_.bits == 24) {
            readTrueColourRow(header_, from, row);
        } else {
            readMaskedRow(header_, components_, from, row);
        }
    }

    BmpHeader header_;
    std::array<Component, 4> components_;
    std::int32_t row_ = 0;  // the next one, from the top
};

class RunLengthBmp : public StoredPicture {
  public:
    explicit RunLengthBmp(BmpHeader header)
        : StoredPicture(header.width, header.height, 1), header_(std::move(header)) {}

    bool comesWhole() const override { return true; }

    void read(std::span<UInt32> rows) override {
        if (std::string why = readBmpRuns(header_, rows); !why.empty()) throw DamagedPicture(why);
    }

  private:
    BmpHeader header_;
};

// A picture whose file lies in a BMP file. Its orientation is ignored.
class EmbeddedPicture : public StoredPicture {
  public:
    explicit EmbeddedPicture(std::unique_ptr<StoredPicture> inner)
        : StoredPicture(inner->width(), inner->height(), 1), inner_(std::move(inner)) {}

    bool comesWhole() const override { return inner_->comesWhole(); }
    void read(std::span<UInt32> rows) override { inner_->read(rows); }

  private:
    std::unique_ptr<StoredPicture> inner_;
};

OpenedFile openEmbedded(const BmpHeader& header) {
    OpenedFile opened =
        header.coding == BmpCoding::kPng ? openPng(header.data) : openJpeg(header.data);
    if (!opened.picture) return opened;
    if (opened.picture->width() != header.width || opened.picture->height() != header.height)
        return {nullptr, "the BMP file holds a picture of another size"};
    return {std::make_unique<EmbeddedPicture>(std::move(opened.picture)), {}};
}

}  // namespace

bool looksLikeBmp(std::span<const Byte> file) {
    return file.size() >= 2 && file[0] == 'B' && file[1] == 'M';
}

OpenedFile openBmp(std::span<const Byte> file) {
    auto [header, why, refusal] = readBmpHeader(file);
    if (!why.empty()) return {nullptr, why, refusal};
    switch (header.coding) {
        case BmpCoding::kPng:
        case BmpCoding::kJpeg:
            return openEmbedded(header);
        case BmpCoding::kRunLength4:
        case BmpCoding::kRunLength8:
            return {std::make_unique<RunLengthBmp>(std::move(header)), {}};
        case BmpCoding::kPlain:
            break;
    }
    if (rowBytes(header) * static_cast<std::uint64_t>(header.height) > header.data.size())
        return {nullptr, "the BMP file is cut short"};
    return {std::make_unique<PlainBmp>(std::move(header)), {}};
}

}  // namespace tavio::pictures

#include "benchmarks/bench_inputs.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "TavioIpadSDK/encoder/bitmap_reader.h"
#include "TavioIpadSDK/imaging/print_bmp.h"
#include "TavioIpadSDK/imaging/state.h"
#include "TavioIpadSDK/settings/settings.h"
#include "tavio/links/local_link.h"
#include "tavio/links/transport_operations.h"

namespace tavio::benchmarks {

class DiscardingLink : public links::LocalLink {
  public:
    std::uint64_t count() const { return count_; }

  protected:
    bool take(std::span<const Byte> bytes) override {
        count_ += bytes.size();
        return true;
    }
    bool takesAlways() const override { return true; }

  private:
    std::uint64_t count_ = 0;
};

std::shared_ptr<DiscardingLink> sendToNobody() {
    auto link = std::make_shared<DiscardingLink>();
    links::useLink(link);
    return link;
}

std::uint64_t bytesSent(const DiscardingLink& link) {
    return link.count();
}

namespace {

using pictures::Picture;

// Uses the top bits: the low ones have short periods.
class Noise {
  public:
    std::uint32_t bits(int count) {
        state_ = state_ * 1664525U + 1013904223U;
        return state_ >> (32 - count);
    }

  private:
    std::uint32_t state_ = 1;
};

template <typename ShadeAt>
Picture draw(std::int32_t width, std::int32_t height, ShadeAt shadeAt) {
    Picture picture{width, height, {}, 1};
    picture.pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (std::int32_t y = 0; y < height; ++y)
        for (std::int32_t x = 0; x < width; ++x) picture.pixels.push_back(shadeAt(x, y));
    return picture;
}

UInt32 opaque(std::int64_t red, std::int64_t green, std::int64_t blue) {
    const auto component = [](std::int64_t value) {
        return static_cast<unsigned>(std::clamp<std::int64_t>(value, 0, 255));
    };
    return pictures::premultipliedPixel(component(red), component(green), component(blue), 255);
}

constexpr std::array<std::pair<OneBit, const char*>, 9> kNames{{
    {OneBit::kText, "text"},
    {OneBit::kPhoto, "photo"},
    {OneBit::kBlack, "black"},
    {OneBit::kStripes, "stripes"},
    {OneBit::kComb, "comb"},
    {OneBit::kHalfCommand, "half-command"},
    {OneBit::kCommands, "commands"},
    {OneBit::kFalseCounts, "false-counts"},
    {OneBit::kTooLong, "too-long"},
}};

void put(Bytes& file, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) file.push_back(static_cast<Byte>(value >> (8 * i)));
}

// Header and blank rows.
Bytes blankFile(std::uint32_t width, std::uint32_t height, std::size_t rowSize) {
    const auto rows = static_cast<std::uint32_t>(rowSize * height);
    const auto header = static_cast<std::uint32_t>(encoder::kHeaderSize);
    Bytes file{'B', 'M'};
    for (std::uint32_t field : {rows + header, 0U, header, 40U, width, height}) put(file, field, 4);
    put(file, 1, 2);
    put(file, 1, 2);
    for (std::uint32_t field : {0U, rows, 0U, 0U, 0U, 0U, 0U, 0x00FFFFFFU}) put(file, field, 4);
    file.resize(header + rowSize * height, Byte{0xFF});
    return file;
}

// A file in which column c of band b (0 is at the top) is the byte columnAt(b, c).
template <typename ColumnAt>
Bytes bandFile(std::int32_t width, std::int32_t height, ColumnAt columnAt) {
    const auto columns = static_cast<std::size_t>(width);
    const auto rows = static_cast<std::size_t>(height);
    const std::size_t rowSize = (columns + 31) / 32 * 4;
    Bytes file =
        blankFile(static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), rowSize);
    for (std::size_t y = 0; y < rows / 8 * 8; ++y) {
        Byte* row = file.data() + encoder::kHeaderSize + (rows - 1 - y) * rowSize;
        for (std::size_t x = 0; x < columns; ++x) {
            const unsigned column = static_cast<Byte>(columnAt(y / 8, x));
            const unsigned prints = (column >> (7 - y % 8)) & 1U;
            row[x / 8] = static_cast<Byte>(row[x / 8] & ~(prints << (7 - x % 8)));
        }
    }
    return file;
}

Bytes repeated(std::string_view text, std::int32_t width, std::int32_t height) {
    return bandFile(width, height, [text](std::size_t /*band*/, std::size_t column) {
        return text[column % text.size()];
    });
}

Bytes commands(std::int32_t width, std::int32_t height) {
    constexpr std::string_view kCommand = "<RC";
    constexpr std::size_t kApart = 64;  // bands
    return bandFile(width, height, [kCommand](std::size_t band, std::size_t column) {
        if (band % kApart == 0) return kCommand[column % kCommand.size()];
        return band % kApart == 1 ? '\xFF' : '\0';
    });
}

Bytes falseCounts(std::int32_t width, std::int32_t height) {
    constexpr std::string_view kCommand = "<RC1,1><G2147483647>";
    return bandFile(width, height, [kCommand](std::size_t band, std::size_t column) {
        return band % 2 == 0 && column < kCommand.size() ? kCommand[column] : '\0';
    });
}

// The picture as the library converts it.
Bytes converted(const Picture& picture, bool dithered) {
    const auto nobody = sendToNobody();
    const bool before = ImageDithered;
    ImageDithered = dithered;
    imaging::PrintBMP(picture.width, picture.height, picture);
    ImageDithered = before;
    return *imaging::myImageData;
}

}  // namespace

Picture textPage(std::int32_t width, std::int32_t height) {
    Noise noise;
    const std::int32_t margin = width / 10;
    const std::int32_t letter = std::max(width / 400, 1);  // a letter's stroke
    return draw(width, height, [=](std::int32_t x, std::int32_t y) mutable {
        const bool inMargin =
            std::min({x, y, width - 1 - x, height - 1 - y}) < std::min(margin, height / 10);
        const bool onLine = y / letter % 8 < 4;
        const bool onStroke = x / letter % 6 % 2 == 0 && x / letter % 36 < 30;
        const bool isInk = !inMargin && onLine && onStroke && noise.bits(2) != 0;
        return isInk ? opaque(20, 20, 24) : opaque(255, 255, 255);
    });
}

Picture photoLike(std::int32_t width, std::int32_t height) {
    Noise noise;
    return draw(width, height, [=](std::int32_t x, std::int32_t y) mutable {
        const std::int64_t across = x * 255LL / width;
        const std::int64_t down = y * 255LL / height;
        const auto grain = static_cast<std::int64_t>(noise.bits(4)) - 8;
        const std::int64_t edge = (x * 7LL / width + y * 9LL / height) % 2 == 0 ? 24 : -24;
        return opaque(across + grain + edge, (across + down) / 2 + grain, 255 - down + grain);
    });
}

std::vector<OneBit> allOneBitKinds() {
    std::vector<OneBit> kinds;
    kinds.reserve(kNames.size());
    for (const auto& [kind, name] : kNames) kinds.push_back(kind);
    return kinds;
}

std::string nameOf(OneBit kind) {
    for (const auto& [known, name] : kNames)
        if (known == kind) return name;
    return {};
}

std::optional<OneBit> oneBitNamed(const std::string& name) {
    for (const auto& [kind, known] : kNames)
        if (known == name) return kind;
    return std::nullopt;
}

bool isOrdinary(OneBit kind) {
    return kind != OneBit::kCommands && kind != OneBit::kFalseCounts && kind != OneBit::kTooLong;
}

Bytes oneBitFile(OneBit kind, std::int32_t width, std::int32_t height) {
    switch (kind) {
        case OneBit::kText:
            return converted(textPage(width, height), false);
        case OneBit::kPhoto:
            return converted(photoLike(width, height), true);
        case OneBit::kBlack:
            return repeated("\xFF", width, height);
        case OneBit::kStripes:
            return repeated({"\xFF\x00", 2}, width, height);
        case OneBit::kComb:
            return repeated("\xFF" + std::string(19, '\0'), width, height);
        case OneBit::kHalfCommand:
            return repeated("<R", width, height);
        case OneBit::kCommands:
            return commands(width, height);
        case OneBit::kFalseCounts:
            return falseCounts(width, height);
        case OneBit::kTooLong:
            return repeated("<RC", width, height);
    }
    return {};
}

}  // namespace tavio::benchmarks

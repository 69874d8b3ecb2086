#include "tools/tavio-scan/find_codes.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

#define ZX_USE_UTF8 1  // texts are UTF-8
#include <ZXing/ReadBarcode.h>

#include "tools/tavio-scan/module_width.h"
#include "tools/tavio-scan/part.h"

namespace tavio::scan {

namespace {

using ZXing::BarcodeFormat;

// Kinds that drawings and greys are seldom mistaken for. The library finds the first ones anywhere in a
// picture, the others only about its centre.
const ZXing::BarcodeFormats kAnywhere =
    BarcodeFormat::QRCode | BarcodeFormat::MicroQRCode | BarcodeFormat::PDF417 |
    BarcodeFormat::Code128 | BarcodeFormat::EAN13 | BarcodeFormat::EAN8 | BarcodeFormat::UPCA |
    BarcodeFormat::UPCE | BarcodeFormat::ITF | BarcodeFormat::Code39;
const ZXing::BarcodeFormats kInTheCentre = BarcodeFormat::DataMatrix | BarcodeFormat::Aztec;

// The white around a part that is looked at alone.
constexpr std::int32_t kMargin = 16;

struct Found {
    BarcodeFormat format = BarcodeFormat::None;
    std::string data;
    Part part;
    double module = 0;
};

const char* nameOf(BarcodeFormat format) {
    switch (format) {
        case BarcodeFormat::QRCode:
            return "qr";
        case BarcodeFormat::MicroQRCode:
            return "microqr";
        case BarcodeFormat::DataMatrix:
            return "datamatrix";
        case BarcodeFormat::Aztec:
            return "aztec";
        case BarcodeFormat::PDF417:
            return "pdf417";
        case BarcodeFormat::Code128:
            return "code128";
        case BarcodeFormat::EAN13:
            return "ean13";
        case BarcodeFormat::EAN8:
            return "ean8";
        case BarcodeFormat::UPCA:
            return "upca";
        case BarcodeFormat::UPCE:
            return "upce";
        case BarcodeFormat::ITF:
            return "itf";
        default:
            return "code39";
    }
}

// The rectangle around the code's corners, which lie on a part of the bitmap.
Part partOf(const ZXing::Position& corners, ZXing::PointI offset, const Bitmap& bitmap) {
    std::int32_t left = bitmap.width;
    std::int32_t top = bitmap.height;
    std::int32_t right = 0;
    std::int32_t bottom = 0;
    for (const ZXing::PointI corner : corners) {
        const ZXing::PointI dot = corner + offset;
        left = std::min(left, std::clamp(dot.x, 0, bitmap.width));
        top = std::min(top, std::clamp(dot.y, 0, bitmap.height));
        right = std::max(right, std::clamp(dot.x + 1, 0, bitmap.width));
        bottom = std::max(bottom, std::clamp(dot.y + 1, 0, bitmap.height));
    }
    return trimmed(bitmap, {left, top, std::max(right - left, 0), std::max(bottom - top, 0)});
}

Along directionOf(const ZXing::Position& corners) {
    const ZXing::PointI along = corners.topRight() - corners.topLeft();
    return std::abs(along.x) >= std::abs(along.y) ? Along::kRows : Along::kColumns;
}

ZXing::Results scanned(const Bitmap& bitmap, ZXing::BarcodeFormats formats) {
    const ZXing::ImageView view(bitmap.dots.data(), bitmap.width, bitmap.height,
                                ZXing::ImageFormat::Lum);
    // Dots need not be made smaller; and where it is done, this version compares linear codes in a way
    // that an assertion of its own forbids.
    return ZXing::ReadBarcodes(view, ZXing::DecodeHints()
                                         .setFormats(formats)
                                         .setBinarizer(ZXing::Binarizer::FixedThreshold)
                                         .setTryDownscale(false));
}

// offset: of the picture that was scanned, on the bitmap.
Found measured(const ZXing::Result& code, ZXing::PointI offset, const Bitmap& bitmap) {
    Found found{code.format(), code.text(), partOf(code.position(), offset, bitmap), 0};
    const Along along = directionOf(code.position());
    const bool isWideAndNarrow =
        code.format() == BarcodeFormat::ITF || code.format() == BarcodeFormat::Code39;
    found.module = moduleWidth(bitmap, found.part, along, isWideAndNarrow);
    if (!ZXing::BarcodeFormats(BarcodeFormat::LinearCodes).testFlag(code.format())) return found;
    // The library tells some lines of a linear code, not all of them to their ends. Its gaps are at most
    // 4 modules wide, the white at its ends is wider.
    const auto maxGap = static_cast<std::int32_t>(std::lround(found.module * 5));
    found.part = withAllBars(bitmap, found.part, along, maxGap);
    found.part = withWholeBars(bitmap, found.part, along);
    found.module = moduleWidth(bitmap, found.part, along, isWideAndNarrow);
    return found;
}

// Matrix codes have 8 modules or more a side, and one side is at most four times the other.
bool mayBeCode(const Part& part) {
    constexpr std::int32_t kMinSide = 8;
    const auto [shorter, longer] = std::minmax(part.width, part.height);
    return shorter >= kMinSide && longer <= 5 * shorter;
}

void scanParts(const Bitmap& bitmap, std::vector<Found>& codes) {
    std::vector<Part> looked;
    for (const std::int32_t square : {4, 8, 16, 32}) {
        for (const Part& part : blotsOf(bitmap, square)) {
            const bool isKnown =
                std::ranges::find(looked, part) != looked.end() ||
                std::ranges::any_of(codes, [&](const Found& code) { return code.part == part; });
            if (isKnown || !mayBeCode(part)) continue;
            looked.push_back(part);
            const ZXing::PointI offset(part.left - kMargin, part.top - kMargin);
            for (const ZXing::Result& code : scanned(cutOut(bitmap, part, kMargin), kInTheCentre))
                codes.push_back(measured(code, offset, bitmap));
        }
    }
}

bool areSame(const Found& left, const Found& right) {
    return left.format == right.format && left.data == right.data &&
           doOverlap(left.part, right.part);
}

void append(const Found& code, std::string& text) {
    text += nameOf(code.format);
    for (const std::int64_t number :
         {std::int64_t{code.part.left}, std::int64_t{code.part.top}, std::int64_t{code.part.width},
          std::int64_t{code.part.height}, std::int64_t{std::lround(code.module * 100)},
          static_cast<std::int64_t>(code.data.size())}) {
        text.append(" ").append(std::to_string(number));
    }
    text.append("\n").append(code.data).append("\n");
}

}  // namespace

std::string foundCodes(const Bitmap& bitmap) {
    std::vector<Found> codes;
    for (const ZXing::Result& code : scanned(bitmap, kAnywhere))
        codes.push_back(measured(code, {}, bitmap));
    scanParts(bitmap, codes);
    std::string text;
    for (auto code = codes.begin(); code != codes.end(); ++code) {
        const bool isTold = std::any_of(
            codes.begin(), code, [&](const Found& earlier) { return areSame(earlier, *code); });
        if (!isTold) append(*code, text);
    }
    return text;
}

}  // namespace tavio::scan

#include "tavio/printing/classic_graphics.h"

#include <algorithm>
#include <span>
#include <string>
#include <utility>

#include "TavioIpadSDK/encoder/bitmap_reader.h"
#include "TavioIpadSDK/encoder/encode_bitmap.h"
#include "TavioIpadSDK/encoder/stream_size.h"
#include "TavioIpadSDK/imaging/bitmap_image.h"
#include "TavioIpadSDK/imaging/convert_picture.h"
#include "TavioIpadSDK/imaging/entries.h"
#include "TavioIpadSDK/imaging/fit_picture.h"
#include "TavioIpadSDK/imaging/pack_entries.h"
#include "TavioIpadSDK/machine/large_pages.h"
#include "TavioIpadSDK/machine/uncleared_bytes.h"
#include "TavioIpadSDK/pictures/rows_ahead.h"
#include "TavioIpadSDK/stretch/resampled_rows.h"
#include "tavio/printing/fit_warnings.h"
#include "tavio/printing/losses.h"
#include "tavio/printing/read_document.h"
#include "tavio/printing/read_source.h"
#include "tavio/printing/transparency.h"

namespace tavio::printing {
namespace {

using intake::DotSize;
using machine::UnclearedBytes;
using pictures::PictureRows;

// Rows that are decoded at once, on another core.
constexpr std::int32_t kRowsDecodedAhead = 64;

constexpr std::size_t kHeaderSize = encoder::kHeaderSize;

imaging::Conversion conversionOf(BlackAndWhite blackAndWhite) {
    return blackAndWhite == BlackAndWhite::kDithered ? imaging::Conversion::kDithered
                                                     : imaging::Conversion::kThreshold;
}

std::unique_ptr<PictureRows> rowsAtSize(std::unique_ptr<PictureRows> rows, DotSize size,
                                        bool mayUseThreads) {
    if (!mayUseThreads) return stretch::resampledRows(std::move(rows), size.width, size.height);
    return imaging::fittedRows(pictures::rowsAhead(std::move(rows), kRowsDecodedAhead), size.width,
                               size.height, nullptr);
}

// The picture as a one-bit bitmap file.
UnclearedBytes bitmapFileOf(std::unique_ptr<PictureRows> rows, DotSize size,
                            const ClassicOrder& order) {
    const auto entryCount = static_cast<std::size_t>(imaging::paddedWidth(size.width)) *
                            static_cast<std::size_t>(size.height);
    UnclearedBytes entries;
    machine::resizeOnLargePages(entries, entryCount);
    const auto fitted = rowsAtSize(std::move(rows), size, order.mayUseThreads);
    imaging::convertRows(*fitted, conversionOf(order.blackAndWhite), entries);

    const auto rowBytes = static_cast<std::int32_t>(entryCount / 8);
    const auto header = imaging::bitmapHeader(size.width, size.height, rowBytes);
    UnclearedBytes file;
    machine::resizeOnLargePages(file, kHeaderSize + entryCount / 8);
    std::ranges::copy(header, file.begin());
    imaging::packEntries(entries, std::span(file).subspan(kHeaderSize));
    return file;
}

void append(Bytes& bytes, std::span<const Byte> more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

void append(Bytes& bytes, const std::string& text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

// False if the bitmap is beyond what the encoder takes.
bool appendCommands(std::span<const Byte> file, const Layout& layout, const ClassicOrder& order,
                    Bytes& bytes) {
    const auto headerBytes = file.first<kHeaderSize>();
    encoder::InfoHeader info = encoder::readInfoHeader(headerBytes);
    if (encoder::judge(info, file.size()) != encoder::Verdict::kAccepted) return false;
    std::vector<encoder::LineParser> lineMap;
    try {
        if (order.logo) {
            const auto stream = encodeLogo(file, info, placementAt(layout, {}), lineMap);
            append(bytes, encoder::beginLogo(std::to_string(*order.logo)));
            append(bytes, std::span(stream.data(), stream.size()));
        } else {
            const auto stream =
                encodePrint(file, info, encoder::openingCommands(layout.path, layout.orientation),
                            placementAt(layout, order.place), lineMap);
            append(bytes, std::span(stream.data(), stream.size()));
        }
    } catch (const encoder::StreamTooLong&) {
        return false;
    }
    return true;
}

tl::unexpected<Problem> tooLarge(const std::string& name, DotSize size) {
    return problem(ProblemKind::kTooLarge,
                   name + " comes to " + dotsText(size) + ", more than can be printed: scale it");
}

}  // namespace

Expected<std::vector<Warning>, Problem> appendClassic(ClassicDrawing drawing, const Layout& layout,
                                                      const ClassicOrder& order, Bytes& bytes) {
    const DotSize size = drawing.size;
    if (size.width <= 0 || size.height <= 0) {
        return problem(ProblemKind::kNoDots, drawing.name + " comes to " + dotsText(size) +
                                                 ", so there is nothing to print: enlarge it");
    }
    if (!imaging::isPrintableSize(size.width, size.height)) return tooLarge(drawing.name, size);

    bool isTransparent = false;
    UnclearedBytes file;
    try {
        file = bitmapFileOf(
            std::make_unique<TransparencyWatch>(std::move(drawing.rows), isTransparent), size,
            order);
    } catch (const pictures::DamagedPicture& damage) {
        return noPicture(drawing.name, pictures::Refusal::kDamaged, damage.what());
    }
    if (!appendCommands(file, layout, order, bytes)) return tooLarge(drawing.name, size);
    const bool isLogo = order.logo.has_value();
    const Losses losses =
        lossesOf(std::span(file).subspan(kHeaderSize), size.width, size.height, isLogo);
    auto warnings = pictureWarnings(
        {size, isLogo ? Place{} : order.place, isLogo, losses, isTransparent}, layout);
    if (auto coarse = coarseText(drawing.name, drawing.smallestTextPoints))
        warnings.push_back(std::move(*coarse));
    return warnings;
}

}  // namespace tavio::printing

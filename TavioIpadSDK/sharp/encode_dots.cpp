#include "TavioIpadSDK/sharp/encode_dots.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstring>
#include <string>

#include "TavioIpadSDK/encoder/band_columns.h"
#include "TavioIpadSDK/encoder/command_text.h"
#include "TavioIpadSDK/encoder/stream_size.h"
#include "TavioIpadSDK/sharp/choose_bands.h"
#include "TavioIpadSDK/sharp/cut_band.h"
#include "TavioIpadSDK/sharp/islands.h"

namespace tavio::sharp {
namespace {

constexpr std::int32_t kBandRows = kMaxBandRows;
constexpr char kEscape = 27;

void append(std::string_view text, Bytes& bytes) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

// The bytes of the commands of a stretch in this rectangle: of one in its middle, of at least `columns`
// columns.
int commandBytes(const Rectangle& part, const DotsPlace& place, std::int32_t columns) {
    const PrinterPosition at =
        positionOf(place, part.left + (part.right - part.left) / 2, part.top);
    const std::int32_t width = std::min(columns, part.right - part.left);
    return static_cast<int>(encoder::StretchCommands::size(at.row, at.column, width));
}

// Most stretches have 10 to 99 columns.
constexpr std::int32_t kUsualColumns = 10;

// A new stretch never costs more.
int maxCommandBytes(const Dots& dots, const DotsPlace& place) {
    const PrinterPosition first = positionOf(place, 0, 0);
    const PrinterPosition last = positionOf(place, dots.width, dots.height);
    return static_cast<int>(encoder::StretchCommands::size(
        std::max(first.row, last.row), std::max(first.column, last.column), dots.width));
}

// The lowest row on which a stretch begins, so that its dots stay in the picture, or at least among
// the places that commands can name.
std::int32_t lowestTop(const Dots& dots, const DotsPlace& place) {
    const std::int32_t firstRow = place.isLandscape ? place.row : place.column;
    const std::int32_t inPicture = std::max(dots.height, kBandRows) - kBandRows;
    return std::min(inPicture, kMaxPosition - (kBandRows - 1) - firstRow);
}

class DotsWriter {
  public:
    DotsWriter(const Dots& dots, const DotsPlace& place, Bytes& bytes)
        : dots_(dots),
          place_(place),
          lowestTop_(lowestTop(dots, place)),
          cutter_(place),
          bytes_(bytes) {}

    void writeAll() {
        BandChooser chooser(dots_);
        for (const Rectangle& island : islandsOf(dots_, maxCommandBytes(dots_, place_))) {
            const DotWindow window(dots_, island);
            const int price = commandBytes(island, place_, kUsualColumns);
            for (const Band& band : chooser.choose(island, price)) writeBand(window, band);
        }
    }

  private:
    void writeBand(const DotWindow& window, const Band& band);
    void readRows(const DotWindow& window, const Band& band, std::int32_t top);
    void findRuns(std::int32_t firstColumn);
    void writeStretches(std::span<const Run> stretches, std::int32_t firstColumn, std::int32_t top);

    const Dots& dots_;
    const DotsPlace place_;
    const std::int32_t lowestTop_;
    BandCutter cutter_;
    Bytes& bytes_;

    // Of the band that is being written.
    Bytes rows_;                          // as transposeBand() takes them
    std::vector<std::uint64_t> isBlack_;  // a bit for each column
    std::vector<Run> runs_;
    Bytes columns_;
    Bytes stretches_;
    encoder::StretchCommands commands_;
};

void DotsWriter::writeBand(const DotWindow& window, const Band& band) {
    const std::int32_t top = std::min(band.row, lowestTop_);
    readRows(window, band, top);
    findRuns(window.firstColumn());
    writeStretches(cutter_.cut(runs_, top), window.firstColumn(), top);
}

// The band's rows become 0 bits for black and 1 bits for white, the lowest row first. Those of the
// 8 rows that are not the band's are white.
void DotsWriter::readRows(const DotWindow& window, const Band& band, std::int32_t top) {
    const std::size_t rowBytes = 8 * window.words();
    rows_.assign(encoder::kBandRows * rowBytes, 0xFF);
    isBlack_.assign(window.words(), 0);
    for (std::int32_t row = band.row; row < band.row + band.height; ++row) {
        const auto fromBottom = static_cast<std::size_t>(kBandRows - 1 - (row - top));
        Byte* const to = rows_.data() + fromBottom * rowBytes;
        window.forEachWord(row, [this, to](std::size_t i, std::uint64_t word) {
            isBlack_[i] |= word;
            storeDotWord(~word, to + 8 * i);
        });
    }
    columns_.resize(8 * rowBytes);
    encoder::transposeBand(rows_, rowBytes, columns_);
}

void DotsWriter::findRuns(std::int32_t firstColumn) {
    runs_.clear();
    forEachRun(isBlack_, [this, firstColumn](const Run& run) {
        const std::int32_t start = firstColumn + run.start;
        if (!runs_.empty() && start - runs_.back().end <= kMaxJoined) {
            runs_.back().end = firstColumn + run.end;
        } else {
            runs_.push_back({start, firstColumn + run.end});
        }
    });
}

void DotsWriter::writeStretches(std::span<const Run> stretches, std::int32_t firstColumn,
                                std::int32_t top) {
    if (cutter_.bytes() > encoder::kMaxStreamBytes - bytes_.size()) throw encoder::StreamTooLong();
    stretches_.resize(cutter_.bytes() + encoder::StretchCommands::kRoom);
    Byte* to = stretches_.data();
    for (std::size_t i = stretches.size(); i-- > 0;) {
        const Run& run = stretches[i];
        const PrinterPosition at = positionOf(place_, run.start, top);
        const std::int32_t count = run.end - run.start;
        to = commands_.write(at.row, at.column, count, to);
        std::memcpy(to, columns_.data() + (run.start - firstColumn),
                    static_cast<std::size_t>(count));
        to += count;
    }
    assert(to == stretches_.data() + cutter_.bytes());
    bytes_.insert(bytes_.end(), stretches_.data(), to);
}

}  // namespace

bool canBePlaced(std::int32_t width, std::int32_t height, const DotsPlace& place) {
    const auto isNamed = [](std::int64_t row, std::int64_t column) {
        return row >= 0 && row <= kMaxPosition && column >= 0 && column <= kMaxPosition;
    };
    const std::int64_t lastColumn = std::max(std::int64_t{width}, std::int64_t{1}) - 1;
    const std::int64_t lastRow = std::max(std::int64_t{height}, std::int64_t{1}) - 1;
    if (!isNamed(place.row, place.column)) return false;
    if (place.isLandscape) return isNamed(place.row + lastRow, place.column + lastColumn);
    return isNamed(place.row - lastColumn, place.column + lastRow);
}

void appendPicture(const Dots& dots, const DotsPlace& place, std::string_view opening,
                   Bytes& bytes) {
    assert(canBePlaced(dots.width, dots.height, place));
    append(opening, bytes);
    DotsWriter(dots, place, bytes).writeAll();
}

void appendLogo(const Dots& dots, const DotsPlace& place, std::string_view opening,
                std::int32_t number, Bytes& bytes) {
    append(opening, bytes);
    append(encoder::positionCommand(0, 0) + '<' + std::to_string(number) + '>' + kEscape, bytes);
    appendPicture(dots, place, "", bytes);
    bytes.push_back(kEscape);
}

}  // namespace tavio::sharp

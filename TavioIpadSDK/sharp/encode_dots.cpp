#include "TavioIpadSDK/sharp/encode_dots.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <string>
#include <vector>

#include "TavioIpadSDK/encoder/command_text.h"
#include "TavioIpadSDK/sharp/band_writer.h"
#include "TavioIpadSDK/sharp/choose_bands.h"
#include "TavioIpadSDK/sharp/islands.h"

namespace tavio::sharp {
namespace {

constexpr char kEscape = 27;

void append(std::string_view text, Bytes& bytes) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

// The bytes of the commands of an average stretch of the island: most have 10 to 99 columns.
int averagePrice(const Rectangle& island, const DotsPlace& place) {
    constexpr std::int32_t kAverageColumns = 10;
    const std::int32_t width = island.right - island.left;
    const PrinterPosition at = positionOf(place, island.left + width / 2, island.top);
    return static_cast<int>(
        encoder::StretchCommands::size(at.row, at.column, std::min(kAverageColumns, width)));
}

// No stretch of the picture has more bytes of commands.
int maxPrice(const Dots& dots, const DotsPlace& place) {
    const PrinterPosition first = positionOf(place, 0, 0);
    const PrinterPosition last = positionOf(place, dots.width, dots.height);
    return static_cast<int>(encoder::StretchCommands::size(
        std::max(first.row, last.row), std::max(first.column, last.column), dots.width));
}

struct ChosenBands {
    std::vector<Rectangle> islands;
    std::vector<std::size_t> ends;  // of each island's bands, in all bands
    std::vector<Band> bands;
    std::uint64_t cost = 0;  // bytes, about
};

ChosenBands chosenBands(const Dots& dots, const DotsPlace& place) {
    ChosenBands chosen;
    chosen.islands = islandsOf(dots, maxPrice(dots, place));
    BandChooser chooser(dots);
    for (const Rectangle& island : chosen.islands) {
        const auto bands = chooser.choose(island, averagePrice(island, place));
        chosen.bands.insert(chosen.bands.end(), bands.begin(), bands.end());
        chosen.ends.push_back(chosen.bands.size());
        chosen.cost += chooser.cost();
    }
    return chosen;
}

// Twice the memory at least, so that any number of pictures can follow each other.
void reserveMore(std::uint64_t count, Bytes& bytes) {
    const std::size_t needed = bytes.size() + static_cast<std::size_t>(count);
    if (needed > bytes.capacity()) bytes.reserve(std::max(needed, 2 * bytes.capacity()));
}

void appendStretches(const Dots& dots, const DotsPlace& place, Bytes& bytes) {
    const ChosenBands chosen = chosenBands(dots, place);
    reserveMore(chosen.cost + chosen.cost / 32, bytes);
    BandWriter writer(dots, place, bytes);
    std::size_t next = 0;
    for (std::size_t i = 0; i < chosen.islands.size(); ++i)
        for (; next < chosen.ends[i]; ++next) writer.write(chosen.islands[i], chosen.bands[next]);
}

}  // namespace

bool canBePlaced(std::int32_t width, std::int32_t height, const DotsPlace& place) {
    const auto isNamed = [](std::int64_t position) {
        return position >= 0 && position <= kMaxPosition;
    };
    const std::int64_t right = std::max<std::int64_t>(width, 1) - 1;
    const std::int64_t down = std::max<std::int64_t>(height, 1) - 1;
    if (!isNamed(place.row) || !isNamed(place.column)) return false;
    if (place.isLandscape) return isNamed(place.row + down) && isNamed(place.column + right);
    return isNamed(place.row - right) && isNamed(place.column + down);
}

void appendPicture(const Dots& dots, const DotsPlace& place, std::string_view opening,
                   Bytes& bytes) {
    assert(canBePlaced(dots.width, dots.height, place));
    append(opening, bytes);
    appendStretches(dots, place, bytes);
}

void appendLogo(const Dots& dots, const DotsPlace& place, std::string_view opening,
                std::int32_t number, Bytes& bytes) {
    assert(canBePlaced(dots.width, dots.height, place));
    append(opening, bytes);
    append(encoder::positionCommand(0, 0) + '<' + std::to_string(number) + '>' + kEscape, bytes);
    appendStretches(dots, place, bytes);
    bytes.push_back(kEscape);
}

}  // namespace tavio::sharp

#include "TavioIpadSDK/encoder/line_map.h"

#include <algorithm>
#include <cassert>

namespace tavio::encoder {
namespace {

// The number of neighbours of which only one is blank.
std::size_t changesIn(std::span<const Byte> bytes) {
    std::size_t changes = 0;
    for (std::size_t i = 1; i < bytes.size(); ++i)
        changes += static_cast<std::size_t>((bytes[i] != 0) != (bytes[i - 1] != 0));
    return changes;
}

// Lists the runs and returns their number; the map must have room for all.
std::size_t listRuns(std::span<const Byte> bytes, std::int64_t start,
                     std::vector<LineParser>& map) {
    std::size_t used = 0;
    for (std::size_t first = 0, i = 1; first < bytes.size(); ++i) {
        const bool isData = bytes[first] != 0;
        if (i < bytes.size() && (bytes[i] != 0) == isData) continue;
        map[used++] = {static_cast<std::int32_t>(start + static_cast<std::int64_t>(first)),
                       static_cast<std::int32_t>(i - first), isData ? DATA : ZEROS};
        first = i;
    }
    return used;
}

}  // namespace

std::size_t mapRuns(std::span<const Byte> columns, std::int64_t start, std::int32_t count,
                    std::vector<LineParser>& map) {
    assert(start >= 0);
    assert(columns.size() <= static_cast<std::size_t>(std::max(count, 0)));
    const std::int64_t end = start + std::max(count, 0);
    const auto streamEnd = start + static_cast<std::int64_t>(columns.size());
    const std::int64_t zeros = end - streamEnd;  // past the stream's end
    const bool areZerosARun = zeros > 0 && (columns.empty() || columns.back() != 0);
    const std::size_t inside = columns.empty() ? 0 : changesIn(columns) + 1;

    const std::size_t used = inside + std::size_t{areZerosARun};
    map.assign(std::max({used, map.size(), LINEMAPMAX}), LineParser{});
    [[maybe_unused]] const std::size_t listed = listRuns(columns, start, map);
    assert(listed == inside);
    if (areZerosARun) map[inside] = {static_cast<std::int32_t>(streamEnd), 0, ZEROS};
    if (zeros > 0) map[used - 1].count += static_cast<std::int32_t>(zeros);
    return used;
}

}  // namespace tavio::encoder

#include "TavioIpadSDK/encoder/line_map.h"

#include <algorithm>

namespace tavio::encoder {

RunIndex::RunIndex(std::span<const Byte> stream)
    : size_(static_cast<std::int64_t>(stream.size())),
      firstIsData_(!stream.empty() && stream[0] != 0) {
    for (std::size_t i = 0; i < stream.size(); ++i) {
        const bool changes = i == 0 || (stream[i] != 0) != (stream[i - 1] != 0);
        if (changes) starts_.push_back(static_cast<std::int32_t>(i));
    }
    // The zeros behind the end lengthen a last zero run, or are a run of their own.
    const bool endsInZeros = !starts_.empty() && !isData(starts_.size() - 1);
    if (!endsInZeros) starts_.push_back(static_cast<std::int32_t>(size_));
}

std::size_t RunIndex::mapRuns(std::int64_t start, std::int32_t count,
                              std::vector<LineParser>& map) {
    while (cursor_ + 1 < starts_.size() && starts_[cursor_ + 1] <= start) ++cursor_;
    std::size_t used = 0;
    const std::int64_t end = start + std::max(count, 0);
    for (std::size_t run = cursor_; start < end; ++run) {
        const bool isLast = run + 1 == starts_.size();
        const std::int64_t runEnd = isLast ? end : std::min<std::int64_t>(starts_[run + 1], end);
        if (used == map.size()) map.resize(std::max<std::size_t>(2 * used, LINEMAPMAX));
        map[used++] = {static_cast<std::int32_t>(start), static_cast<std::int32_t>(runEnd - start),
                       isData(run) ? DATA : ZEROS};
        start = runEnd;
    }
    return used;
}

}  // namespace tavio::encoder

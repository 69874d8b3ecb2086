#include "TavioIpadSDK/encoder/band_reader.h"

#include <algorithm>

#include "TavioIpadSDK/machine/arithmetic.h"

namespace tavio::encoder {

void BandReader::rewind() {
    stream_.rewind();
    scanner_.emplace(stream_);
    runs_.emplace(stream_);
    band_.reset();
    columns_ = {};
    kind_ = ColumnKind::kBlank;
}

std::size_t BandReader::sizeAsItStands() const {
    using machine::wrappingAdd;
    using machine::wrappingSubtract;
    const std::int32_t commands = wrappingSubtract(static_cast<std::int32_t>(band_->startData),
                                                   static_cast<std::int32_t>(band_->startCommand));
    const std::int32_t last = wrappingSubtract(wrappingAdd(commands, band_->numbers.count), 1);
    if (last < 0) return 0;
    return std::min(static_cast<std::size_t>(last) + 1, stream_.size() - band_->startCommand);
}

// True if the number of bytes read is within its limit, however many commands there are. A last
// block of marks reaches past the stream's end.
bool BandReader::hasReadLinearly() const {
    constexpr std::size_t kMaxPastTheEnd = 4096;
    return scanner_->bytesRead() <= 4 * stream_.size() &&
           runs_->bytesRead() <= 2 * stream_.size() + kMaxPastTheEnd;
}

}  // namespace tavio::encoder

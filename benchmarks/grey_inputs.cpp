#include "benchmarks/grey_inputs.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "TavioIpadSDK/sharp/luminance.h"
#include "benchmarks/bench_inputs.h"

namespace tavio::benchmarks {

std::shared_ptr<const Bytes> photoInGrey(DotSize size) {
    const pictures::Picture photo = photoLike(size.width, size.height);
    Bytes values(photo.pixels.size());
    sharp::toGrey(photo.pixels, values);
    return std::make_shared<const Bytes>(std::move(values));
}

ReadyRows::ReadyRows(DotSize size, std::shared_ptr<const Bytes> greys)
    : size_(size), greys_(std::move(greys)), left_(*greys_) {}

std::span<const Byte> ReadyRows::next(std::int32_t maxRows) {
    const std::size_t wanted =
        static_cast<std::size_t>(maxRows) * static_cast<std::size_t>(size_.width);
    const std::span<const Byte> rows = left_.first(std::min(wanted, left_.size()));
    left_ = left_.subspan(rows.size());
    return rows;
}

}  // namespace tavio::benchmarks

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

#include "TavioIpadSDK/sharp/halftone.h"
#include "benchmarks/bench_inputs.h"
#include "benchmarks/stages.h"

namespace tavio::benchmarks {
namespace {

// The red channel of the picture that the classic stages convert.
Bytes greysLikeAPhoto(DotSize size) {
    const pictures::Picture picture = photoLike(size.width, size.height);
    Bytes greys;
    greys.reserve(picture.pixels.size());
    for (const UInt32 pixel : picture.pixels) greys.push_back(static_cast<Byte>(pixel));
    return greys;
}

// Rows that cost nothing.
class ReadyRows : public sharp::GreyRows {
  public:
    ReadyRows(DotSize size, const Bytes& greys) : size_(size), left_(greys) {}

    std::int32_t width() const override { return size_.width; }
    std::int32_t height() const override { return size_.height; }

    std::span<const Byte> next(std::int32_t maxRows) override {
        const std::size_t most =
            static_cast<std::size_t>(maxRows) * static_cast<std::size_t>(size_.width);
        const auto rows = left_.first(std::min(most, left_.size()));
        left_ = left_.subspan(rows.size());
        return rows;
    }

  private:
    DotSize size_;
    std::span<const Byte> left_;
};

void addHalftone(Stages& stages, const std::string& name, const sharp::Halftone& halftone,
                 bool mayUseThreads) {
    stages.add(name, [size = stages.page(), halftone, mayUseThreads] {
        const auto greys = std::make_shared<const Bytes>(greysLikeAPhoto(size));
        return [size, halftone, mayUseThreads, greys](benchmark::State&) {
            ReadyRows rows(size, *greys);
            benchmark::DoNotOptimize(sharp::halftoned(rows, halftone, mayUseThreads));
        };
    });
}

}  // namespace

void addSharp(Stages& stages) {
    addHalftone(stages, "halftone, one core", {}, false);
    addHalftone(stages, "halftone, two cores", {}, true);
    addHalftone(stages, "halftone, gamma 1.2", {.tone = {.gamma = 1.2}}, false);
    addHalftone(stages, "sharp threshold", {.method = sharp::Method::kThreshold}, false);
}

}  // namespace tavio::benchmarks

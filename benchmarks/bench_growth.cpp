#include <algorithm>
#include <cmath>
#include <optional>

#include "TavioIpadSDK/imaging/print_bmp.h"
#include "benchmarks/bench_inputs.h"
#include "benchmarks/stages.h"

namespace tavio::benchmarks {
namespace {

// A page with the proportions of letter size and about `dots` dots.
DotSize pageOf(double dots) {
    const auto width = static_cast<std::int32_t>(std::lround(std::sqrt(dots * 8.5 / 11)));
    return {width, static_cast<std::int32_t>(std::lround(dots / width))};
}

// A whole print, from a picture at one pixel a point to 600 dots per inch.
void grow(benchmark::State& state, DotSize page) {
    const auto toPoints = [](std::int32_t dots) { return std::max(dots * 72 / 600, 1); };
    const std::optional<pictures::Picture> picture =
        photoLike(toPoints(page.width), toPoints(page.height));
    const auto link = sendToNobody();
    while (state.KeepRunning()) imaging::PrintBMP(page.width, page.height, picture);
    state.counters["dots"] = static_cast<double>(page.width) * page.height;
}

}  // namespace

void registerGrowth(std::int32_t maxMegadots) {
    constexpr double kMega = 1e6;
    for (std::int32_t megadots = 1;; megadots = std::min(2 * megadots, maxMegadots)) {
        const DotSize page = pageOf(megadots * kMega);
        benchmark::RegisterBenchmark(("growth/" + std::to_string(megadots)).c_str(),
                                     [page](benchmark::State& state) { grow(state, page); })
            ->UseRealTime()
            ->Unit(benchmark::kMillisecond);
        if (megadots >= maxMegadots) return;
    }
}

}  // namespace tavio::benchmarks

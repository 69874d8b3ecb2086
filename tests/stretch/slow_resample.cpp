#include "stretch/slow_resample.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

#include "TavioIpadSDK/pictures/picture_rows.h"
#include "TavioIpadSDK/pictures/upright.h"
#include "TavioIpadSDK/stretch/resampled_rows.h"

namespace tavio::stretch {
namespace {

using pictures::rowsOf;
using pictures::upright;

// The weight of source pixel `from` in target pixel `to`. A growing direction: a triangle around the
// target's centre, which is kept between the centres of the outermost source pixels. A shrinking
// one: the overlap of the two pixels.
std::int64_t weight(std::int64_t from, std::int64_t sources, std::int64_t to,
                    std::int64_t targets) {
    if (targets > sources) {
        const std::int64_t pixel = 2 * targets;
        const std::int64_t centre =
            std::clamp((2 * to + 1) * sources - targets, std::int64_t{0}, (sources - 1) * pixel);
        return std::max<std::int64_t>(0, pixel - std::abs(centre - from * pixel));
    }
    const std::int64_t begin = std::max(to * sources, from * targets);
    const std::int64_t end = std::min((to + 1) * sources, (from + 1) * targets);
    return std::max<std::int64_t>(0, end - begin);
}

std::int64_t channelOf(UInt32 pixel, std::size_t channel) {
    return (pixel >> (8 * channel)) & 0xFF;
}

// One source row, brought to `width` columns: four channels each.
std::vector<std::int64_t> passedRow(const Picture& source, std::size_t row,
                                    const std::vector<std::vector<Weight>>& columns) {
    const std::int64_t total = totalWeight(source.width, static_cast<std::int64_t>(columns.size()));
    const UInt32* line = source.pixels.data() + row * static_cast<std::size_t>(source.width);
    std::vector<std::int64_t> values;
    for (const std::vector<Weight>& column : columns) {
        for (std::size_t channel = 0; channel < 4; ++channel) {
            std::int64_t sum = 0;
            for (const Weight& part : column)
                sum += channelOf(line[part.from], channel) * part.weight;
            values.push_back(passedValue(sum, total));
        }
    }
    return values;
}

std::vector<std::vector<Weight>> allWeights(std::int64_t sources, std::int64_t targets) {
    std::vector<std::vector<Weight>> weights;
    for (std::int64_t to = 0; to < targets; ++to)
        weights.push_back(weightsOf(sources, to, targets));
    return weights;
}

}  // namespace

std::vector<Weight> weightsOf(std::int64_t sources, std::int64_t to, std::int64_t targets) {
    std::vector<Weight> weights;
    const std::int64_t last = std::min(sources - 1, (to + 1) * sources / targets + 1);
    for (std::int64_t from = std::max<std::int64_t>(0, to * sources / targets - 1); from <= last;
         ++from) {
        const std::int64_t found = weight(from, sources, to, targets);
        if (found > 0) weights.push_back({from, found});
    }
    return weights;
}

std::int64_t totalWeight(std::int64_t sources, std::int64_t targets) {
    return targets > sources ? 2 * targets : sources;
}

std::int64_t passedValue(std::int64_t sum, std::int64_t total) {
    return (sum * 65536 * 2 + total) / (2 * total);
}

Picture slowStretch(const Picture& picture, std::int32_t width, std::int32_t height) {
    const Picture source = upright(picture);
    const auto columns = allWeights(source.width, width);
    std::vector<std::vector<std::int64_t>> passed;
    for (std::size_t row = 0; row < static_cast<std::size_t>(source.height); ++row)
        passed.push_back(passedRow(source, row, columns));
    const std::int64_t down = totalWeight(source.height, height) * 65536;
    Picture target{width, height, {}, 1};
    for (const std::vector<Weight>& rows : allWeights(source.height, height)) {
        for (std::size_t column = 0; column < columns.size(); ++column) {
            UInt32 pixel = 0;
            for (std::size_t channel = 0; channel < 4; ++channel) {
                std::int64_t sum = 0;
                for (const Weight& part : rows) {
                    const auto& row = passed[static_cast<std::size_t>(part.from)];
                    sum += row[4 * column + channel] * part.weight;
                }
                pixel |= static_cast<UInt32>((2 * sum + down) / (2 * down)) << (8 * channel);
            }
            target.pixels.push_back(pixel);
        }
    }
    return target;
}

Picture stretched(const Picture& picture, std::int32_t width, std::int32_t height) {
    const auto rows = resampledRows(rowsOf(picture), width, height);
    Picture target{rows->width(), rows->height(), {}, 1};
    for (auto strip = rows->next(31); !strip.empty(); strip = rows->next(31))
        target.pixels.insert(target.pixels.end(), strip.begin(), strip.end());
    return target;
}

}  // namespace tavio::stretch

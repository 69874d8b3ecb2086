"""The noise of our error diffusion: TavioIpadSDK/sharp/diffusion_noise.h."""
import numpy as np

from halftone_methods import OURS

SIDE = 64
AMPLITUDE = 12  # the threshold varies by so much

HEADER = """\
// Noise that keeps error diffusion from making worms of equal greys. Made by benchmarks/halftones.py.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tavio::sharp {

// The noise repeats every so many columns and rows.
inline constexpr std::int32_t kNoiseSide = 64;

// What is added to the grey value in row y, column x: kDiffusionNoise[y %% 64 * 64 + x %% 64]. Its sum
// is 0. It has the effect of a threshold that varies by blue noise from 122 to 134, without larger
// errors: it is the noise less the share of it that the neighbours pass on.
//
// clang-format off
inline constexpr std::array<std::int8_t, std::size_t{kNoiseSide} * kNoiseSide> kDiffusionNoise = {
%s
};
// clang-format on

// Of the pixel in this row, 0 or more, and this column, which may be negative.
constexpr int noiseAt(std::int32_t row, std::int32_t column) {
    const std::int32_t at = row %% kNoiseSide * kNoiseSide + (column & (kNoiseSide - 1));
    return kDiffusionNoise[static_cast<std::size_t>(at)];
}

}  // namespace tavio::sharp
"""


def ranks(side=SIDE, seed=1, sigma=1.5):
    """Blue noise by the method of voids and clusters: each number from 0 to side * side - 1 once."""
    distance = np.minimum(np.arange(side), side - np.arange(side))
    bell = np.exp(-(distance[:, None] ** 2 + distance[None] ** 2) / (2 * sigma**2))
    count = side * side // 10
    chosen = np.zeros((side, side), bool)
    chosen.flat[np.random.RandomState(seed).permutation(side * side)[:count]] = True
    field = sum(np.roll(bell, place, (0, 1)) for place in np.argwhere(chosen))

    def place_of(index):
        return np.unravel_index(index, field.shape)

    def tightest(pattern, of):
        return place_of(np.where(pattern, of, -np.inf).argmax())

    def emptiest(pattern, of):
        return place_of(np.where(pattern, np.inf, of).argmin())

    while True:  # until the tightest cluster is the largest void
        cluster = tightest(chosen, field)
        chosen[cluster] = False
        field = field - np.roll(bell, cluster, (0, 1))
        void = emptiest(chosen, field)
        chosen[void] = True
        field = field + np.roll(bell, void, (0, 1))
        if void == cluster:
            break
    result = np.zeros((side, side), int)
    pattern, left = chosen.copy(), field.copy()
    for rank in range(count - 1, -1, -1):
        place = tightest(pattern, left)
        pattern[place] = False
        left -= np.roll(bell, place, (0, 1))
        result[place] = rank
    for rank in range(count, side * side):
        place = emptiest(chosen, field)
        chosen[place] = True
        field += np.roll(bell, place, (0, 1))
        result[place] = rank
    return result


def thresholds():
    """Blue noise from -0.5 to 0.5."""
    return (ranks() + 0.5) / SIDE**2 - 0.5


def of_values(noise, amplitude=AMPLITUDE):
    """What to add to the values instead of adding the noise to the threshold: whole numbers, sum 0."""
    wanted = -amplitude * noise
    for right, down, share in OURS:
        wanted = wanted + share / 16 * amplitude * np.roll(noise, (down, right), (0, 1))
    whole = np.rint(wanted).astype(int)
    order = np.argsort(wanted - whole, axis=None)  # those rounded up most come first
    rest = int(whole.sum())
    whole.flat[order[:rest] if rest > 0 else order[len(order) + rest:]] -= np.sign(rest)
    return whole


def write_header(path, noise):
    rows = of_values(noise).reshape(-1, 32)
    path.write_text(HEADER % "\n".join("    " + ",".join(map(str, row)) + "," for row in rows))

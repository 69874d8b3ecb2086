"""Decodability of linear codes by ISO/IEC 15416, of dots printed as discs: pure functions.

A scan reflectance profile is what an aperture sees along a line across the bars. An element's edge is
where the profile crosses the middle between the lightest of the space and the darkest of the bar
beside it. Decodability is how much of the margin between right and wrong the widths leave unused: 1 for
perfect ones, 0 where a reader would err.
"""
import numpy

import camera

SUBSAMPLES = 12  # across a dot
SCANS = 10  # lines across the bars, over the middle 80 % of their height
MILLIMETRES_PER_INCH = 25.4
GRADES = ((0.62, "A"), (0.50, "B"), (0.37, "C"), (0.25, "D"), (0.0, "F"))

# (module up to, diameter of the aperture), millimetres
APERTURES = ((0.180, 0.075), (0.330, 0.125), (0.635, 0.250), (1e9, 0.500))


def grade(value):
    return next((name for limit, name in GRADES if value >= limit), "F")


def aperture_dots(module, resolution):
    dot = MILLIMETRES_PER_INCH / resolution
    return next(diameter for limit, diameter in APERTURES if module * dot <= limit) / dot


def profile(ink, row, diameter):
    """The reflectance along a line: 1 for paper, 0 for ink. row, diameter: in subsamples."""
    radius = diameter / 2
    sums = numpy.pad(numpy.cumsum(ink, axis=1, dtype=float), ((0, 0), (1, 0)))
    reach = int(radius)
    seen, area = 0, 0
    for y in range(int(numpy.ceil(row - radius)), int(numpy.floor(row + radius)) + 1):
        half = int(round(numpy.sqrt(max(radius ** 2 - (y - row) ** 2, 0))))
        first, last = reach + 1 - half, reach + 2 + half
        count = sums.shape[1] - 2 * reach - 4
        seen = seen + sums[y, last:last + count] - sums[y, first:first + count]
        area += last - first
    return 1 - seen / area


def profiles(dots, diameter):
    """Of the scans of a code. dots: all rows are bars; True is black. diameter: in dots."""
    padded = numpy.pad(dots, ((0, 0), (4, 4)))
    around = int(numpy.ceil(diameter / 2)) + 1
    for number in range(SCANS):
        middle = (0.1 + 0.8 * (number + 0.5) / SCANS) * len(dots)
        top = max(int(middle) - around, 0)
        ink = camera.inked(padded[top:int(middle) + around + 1], SUBSAMPLES)
        yield profile(ink, (middle - top) * SUBSAMPLES, diameter * SUBSAMPLES)


def crossing(line, begin, end, level):
    """Where the line first crosses the level from begin to end, between samples."""
    is_above = line[begin] > level
    for at in range(begin, end):
        if (line[at + 1] > level) != is_above:
            return at + (level - line[at]) / (line[at + 1] - line[at])
    return float(end)


def elements(line):
    """The widths of bars and spaces, beginning and ending with a bar."""
    threshold = (line.max() + line.min()) / 2
    is_bar = line < threshold
    starts = numpy.flatnonzero(numpy.diff(is_bar.astype(int))) + 1
    parts = numpy.split(numpy.arange(len(line)), starts)
    extremes = [part[numpy.argmin(line[part]) if is_bar[part[0]] else numpy.argmax(line[part])]
                for part in parts]
    edges = [crossing(line, one, other, (line[one] + line[other]) / 2)
             for one, other in zip(extremes, extremes[1:])]
    return numpy.diff(edges)


def similar_edges_margin(widths, modules, ideal):
    """The margin of the distances between similar edges to the nearest threshold between modules."""
    total = widths.sum()
    distances = [(widths[place] + widths[place + 1]) * modules / total
                 for place in range(len(widths) - 2)]
    wanted = [ideal[place] + ideal[place + 1] for place in range(len(ideal) - 2)]
    return min(1 - 2 * abs(distance - right) for distance, right in zip(distances, wanted))


def bars_margin(widths, modules, ideal, allowed, first_bar):
    """The margin of the bars' whole width, which may be wrong by less than `allowed` modules."""
    bars = widths[first_bar::2].sum() * modules / widths.sum()
    return 1 - abs(bars - sum(ideal[first_bar::2])) / allowed


def code128(widths):
    """Each character is three bars and three spaces of 11 modules."""
    total = len(widths) - 1  # without the last bar of the stop character
    worst = 1.0
    for begin in range(0, total, 6):
        part = widths[begin:begin + 6]
        ideal = ideal_widths(part, 11)
        worst = min(worst, similar_edges_margin(part, 11, ideal),
                    bars_margin(part, 11, ideal, 1.75, 0))
    return worst


def ean13(widths):
    """Two groups of six characters, each of two bars and two spaces of 7 modules. Of those that differ
    in their bars' width alone, that counts as well."""
    worst = 1.0
    for begin, first_bar in ((3, 1), (32, 0)):
        for character in range(6):
            part = widths[begin + 4 * character:begin + 4 * character + 4]
            ideal = ideal_widths(part, 7)
            worst = min(worst, similar_edges_margin(part, 7, ideal))
            if twin_of(ideal):
                worst = min(worst, bars_margin(part, 7, ideal, 1, first_bar))
    return worst


def twin_of(ideal):
    """True for the digits 1, 2, 7 and 8: others have the same distances between similar edges."""
    return (ideal[0] + ideal[1], ideal[1] + ideal[2]) in {(4, 4), (4, 3), (3, 4), (3, 3)}


def itf(widths):
    """Pairs of digits: ten elements, five of them bars, of which two and two are wide."""
    inner = widths[4:-3]
    worst = 1.0
    for begin in range(0, len(inner), 10):
        part = inner[begin:begin + 10]
        threshold = part.sum() * 7 / 64
        wide = part > threshold
        if wide.all() or not wide.any():
            return 0.0
        narrow_mean, wide_mean = part[~wide].mean(), part[wide].mean()
        worst = min(worst, (threshold - part[~wide].max()) / (threshold - narrow_mean),
                    (part[wide].min() - threshold) / (wide_mean - threshold))
    return worst


def ideal_widths(part, modules):
    """Whole modules that come nearest."""
    ideal = numpy.maximum(numpy.rint(part * modules / part.sum()), 1)
    while ideal.sum() != modules:
        step = 1 if ideal.sum() < modules else -1
        errors = (part * modules / part.sum() - ideal) * step
        errors[ideal + step < 1] = -numpy.inf
        ideal[errors.argmax()] += step
    return ideal


FORMULAS = {"code128": code128, "ean13": ean13, "itf": itf}


def decodability(kind, dots, module, resolution):
    """(the worst scan's, the mean of all). dots: of the bars alone, without text."""
    values = [max(FORMULAS[kind](elements(line)), 0.0)
              for line in profiles(dots, aperture_dots(module, resolution))]
    return min(values), sum(values) / len(values)

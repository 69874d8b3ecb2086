"""How dots look on paper."""
import numpy as np

RADIUS = 0.6  # of a black dot, in dots


def paper(black, samples=8):
    """The share of white at each dot's place, if black dots are discs."""
    height, width = black.shape
    around = np.pad(black, 1)
    white = np.zeros(black.shape)
    for down in (np.arange(samples) + 0.5) / samples - 0.5:
        for right in (np.arange(samples) + 0.5) / samples - 0.5:
            inked = np.zeros(black.shape, bool)
            for y in (-1, 0, 1):
                for x in (-1, 0, 1):
                    if (right - x) ** 2 + (down - y) ** 2 <= RADIUS**2:
                        inked |= around[1 + y:1 + y + height, 1 + x:1 + x + width]
            white += ~inked
    return white / samples**2


def mean_on_paper(black):
    """The share of white paper, exactly, away from the edges: discs overlap only side by side."""
    disc = np.pi * RADIUS**2
    overlap = 2 * RADIUS**2 * np.arccos(0.5 / RADIUS) - np.sqrt(RADIUS**2 - 0.25)
    dots = black.astype(int)
    inner = dots[16:-8, 16:-8]
    pairs = (inner * dots[15:-9, 16:-8]).mean() + (inner * dots[16:-8, 15:-9]).mean()
    return 1 - disc * inner.mean() + overlap * pairs


AROUND = [(y, x) for y in (-1, 0, 1) for x in (-1, 0, 1)]


def neighbourhoods(black):
    """How often each pattern of 3 x 3 dots occurs away from the edges, as shares. Bit i is AROUND[i]."""
    height, width = black.shape
    around = np.pad(black, 1).astype(int)
    patterns = sum(around[1 + y:1 + y + height, 1 + x:1 + x + width] << bit
                   for bit, (y, x) in enumerate(AROUND))[16:-8, 16:-8]
    return np.bincount(patterns.ravel(), minlength=512) / patterns.size


def white_of_neighbourhoods(radius, samples=100):
    """The share of white at the middle dot of each pattern, if black dots are discs of this radius, up
    to 1 dot: these may overlap in any way."""
    across = (np.arange(samples) + 0.5) / samples - 0.5
    down, right = np.meshgrid(across, across, indexing="ij")
    reached = sum(((right - x) ** 2 + (down - y) ** 2 <= radius**2).astype(int) << bit
                  for bit, (y, x) in enumerate(AROUND))
    shares = np.bincount(reached.ravel(), minlength=512) / reached.size
    return np.array([shares[(np.arange(512) & pattern) == 0].sum() for pattern in range(512)])


def blurred(picture, sigma):
    reach = int(4 * sigma + 1)
    bell = np.exp(-np.arange(-reach, reach + 1) ** 2 / (2 * sigma**2))
    bell /= bell.sum()
    wide = np.pad(picture, reach, mode="reflect")
    height, width = picture.shape
    wide = sum(weight * wide[i:i + height, :] for i, weight in enumerate(bell))
    return sum(weight * wide[:, i:i + width] for i, weight in enumerate(bell))


def similarity(a, b, sigma=1.5):
    """Structural similarity of two pictures with values from 0 to 1."""
    mean_a, mean_b = blurred(a, sigma), blurred(b, sigma)
    variance_a = blurred(a * a, sigma) - mean_a**2
    variance_b = blurred(b * b, sigma) - mean_b**2
    covariance = blurred(a * b, sigma) - mean_a * mean_b
    same = (2 * mean_a * mean_b + 1e-4) * (2 * covariance + 9e-4)
    most = (mean_a**2 + mean_b**2 + 1e-4) * (variance_a + variance_b + 9e-4)
    return (same / most)[8:-8, 8:-8].mean()


def grain(black):
    """What an eye sees of the dots of one grey: the deviation after a blur, in % of full scale."""
    seen = paper(black)[16:-8, 16:-8]
    return 100 * blurred(seen - seen.mean(), 1.5)[8:-8, 8:-8].std()


def worms(black, side=96):
    """How much the spectrum of one grey differs between directions, in dB. Noise has 0."""
    part = black[16:16 + side, 16:16 + side].astype(float)
    window = np.hanning(side)[:, None] * np.hanning(side)[None]
    power = np.abs(np.fft.fft2((part - part.mean()) * window)) ** 2
    frequency = np.hypot(np.fft.fftfreq(side)[:, None], np.fft.fftfreq(side)[None]) * side
    spread = []
    for ring in range(2, side // 2 - 3):
        of_ring = power[(frequency >= ring - 0.5) & (frequency < ring + 0.5)]
        spread.append(of_ring.var(ddof=1) / max(of_ring.mean() ** 2, 1e-9))
    return 10 * np.log10(np.mean(spread))

"""Ways to turn grey values into dots. Each takes an array of values from 0 to 255, of which these two
are solid, and returns an array that is true for black dots."""
import numpy as np

# Columns to the right, rows down, and the share of the error.
FLOYD_STEINBERG = [(1, 0, 7), (-1, 1, 3), (0, 1, 5), (1, 1, 1)]
OURS = [(1, 0, 7), (-1, 1, 3), (0, 1, 4), (1, 1, 2)]
JARVIS = [(1, 0, 7), (2, 0, 5), (-2, 1, 3), (-1, 1, 5), (0, 1, 7), (1, 1, 5), (2, 1, 3),
          (-2, 2, 1), (-1, 2, 3), (0, 2, 5), (1, 2, 3), (2, 2, 1)]
STUCKI = [(1, 0, 8), (2, 0, 4), (-2, 1, 2), (-1, 1, 4), (0, 1, 8), (1, 1, 4), (2, 1, 2),
          (-2, 2, 1), (-1, 2, 2), (0, 2, 4), (1, 2, 2), (2, 2, 1)]
SIERRA_2 = [(1, 0, 4), (2, 0, 3), (-2, 1, 1), (-1, 1, 2), (0, 1, 3), (1, 1, 2), (2, 1, 1)]

# Shares that vary with the value, between these ones: value, right, below left, below.
VARIABLE = [(0, 13, 0, 5), (2, 21, 0, 10), (3, 7, 0, 4), (4, 8, 0, 5), (10, 47, 3, 28),
            (22, 23, 3, 13), (32, 15, 3, 8), (44, 22, 6, 11), (64, 43, 15, 20), (72, 36, 28, 18),
            (77, 31, 50, 17), (85, 77, 100, 10), (95, 45, 35, 12), (102, 32, 19, 23),
            (107, 5, 3, 2), (112, 4, 3, 1), (127, 51, 35, 15)]


def diffused(greys, shares, serpentine=False, noise=None, amplitude=0):
    """Error diffusion; the threshold varies with the noise, which is from -0.5 to 0.5."""
    height, width = greys.shape
    total = sum(share for *_, share in shares)
    sums = [[0.0] * (width + 4) for _ in range(height + 2)]  # two columns more on either side
    black = np.zeros(greys.shape, bool)
    limits = np.zeros((1, 1)) if noise is None else noise * amplitude
    limits = (128 + limits).tolist()
    for y, row in enumerate(greys.tolist()):
        back = serpentine and y % 2 == 1
        targets = [(sums[y + down], 2 + (-right if back else right), share / total)
                   for right, down, share in shares]
        for x in range(width - 1, -1, -1) if back else range(width):
            if row[x] <= 0:
                black[y, x] = True
            if 0 < row[x] < 255:
                error = row[x] + sums[y][x + 2]
                if error < limits[y % len(limits)][x % len(limits)]:
                    black[y, x] = True
                else:
                    error -= 255
                for target, right, share in targets:
                    target[x + right] += error * share
    return black


def diffused_variably(greys, serpentine=True):
    """Error diffusion whose shares depend on the value."""
    keys = np.array(VARIABLE, float)
    shares = keys[:, 1:] / keys[:, 1:].sum(axis=1, keepdims=True)
    values = np.minimum(np.arange(256), 255 - np.arange(256))
    table = np.stack([np.interp(values, keys[:, 0], share) for share in shares.T], axis=1).tolist()
    height, width = greys.shape
    black = np.zeros(greys.shape, bool)
    own = [0.0] * (width + 2)
    for y, row in enumerate(greys.tolist()):
        below = [0.0] * (width + 2)
        back = serpentine and y % 2 == 1
        step = -1 if back else 1
        for x in range(width - 1, -1, -1) if back else range(width):
            if row[x] <= 0:
                black[y, x] = True
            if 0 < row[x] < 255:
                error = row[x] + own[x + 1]
                black[y, x] = error < 128
                error -= 0 if error < 128 else 255
                right, below_left, straight = table[int(row[x])]
                own[x + 1 + step] += error * right
                below[x + 1 - step] += error * below_left
                below[x + 1] += error * straight
        own = below
    return black


def ours(greys, noise=None):
    """What TavioIpadSDK/sharp/diffuse_strip.h describes. The noise is added to the values."""
    height, width = greys.shape
    black = np.zeros(greys.shape, bool)
    noise = [[0]] if noise is None else noise.tolist()
    own = [0] * (width + 3)
    for y, row in enumerate(np.rint(greys).astype(int).tolist()):
        below = [0] * (width + 3)
        from_left = 0
        for x, value in enumerate(row):
            added = own[x + 1] + noise[y % len(noise)][x % len(noise)] + from_left
            total = value + max(-128, min(127, added))
            if value in (0, 255):
                black[y, x] = value == 0
                error = 0
            else:
                black[y, x] = total < 128
                error = total if total < 128 else total - 255
            half = (error + 1) >> 1
            quarter = (half + 1) >> 1
            eighth = (quarter + 1) >> 1
            from_left = half - ((eighth + 1) >> 1)
            below[x] += error - from_left - quarter - eighth
            below[x + 1] += quarter
            below[x + 2] += eighth
        own = below
    return black

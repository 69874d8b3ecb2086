"""What becomes of dots on paper, and what a camera sees of them: pure functions.

Paper: each black dot is a disc 1.2 dots wide, as a thermal head's heat leaves it. Between four
discs a little paper stays white: 4.9 % of a black area.

Camera: 600 pixels an inch, as a telephone sees that is held so near that a ticket fills its
picture. The ticket is turned by 7 degrees, the picture is blurred and has noise.
"""
import functools

import numpy
from PIL import Image, ImageFilter

DISC_WIDTH = 1.2  # dots
CAMERA_PIXELS_PER_INCH = 600
TURN_DEGREES = 7
BLUR = 1.75  # pixels, standard deviation
NOISE = 3  # greys of 255, standard deviation
NOISE_GRAIN = 1.25  # pixels, standard deviation: cameras smooth their noise
NOISE_SIDE = 1024  # pixels
NOISE_SEED = 1
PAPER, INK = 225, 35  # greys of 255 that the camera sees of white and black
SUBSAMPLES = 60  # across a dot, for the share of a pixel that is inked


def to_pixels(subsamples, pixels):
    """The mean of each of pixels x pixels parts."""
    side = SUBSAMPLES // pixels
    return subsamples.reshape(pixels, side, pixels, side).mean(axis=(1, 3))


@functools.lru_cache(None)
def disc_shares(pixels):
    """The share of each pixel of a dot's square that is inked by the disc of this dot, and of the
    dots above, below, to the left and to the right. A disc reaches no other square, and what reaches
    into a black dot's square lies within its own disc."""
    at = (numpy.arange(SUBSAMPLES) + 0.5) / SUBSAMPLES - 0.5
    row, column = numpy.meshgrid(at, at, indexing="ij")
    steps = ((0, 0), (-1, 0), (1, 0), (0, -1), (0, 1))
    return [to_pixels((row - y) ** 2 + (column - x) ** 2 < DISC_WIDTH ** 2 / 4, pixels)
            for y, x in steps]


def inked(dots, pixels=1):
    """The inked share of the paper, 0 to 1, of pixels x pixels parts of each dot. dots: True is
    black."""
    own, above, below, left, right = disc_shares(pixels)
    height, width = dots.shape
    around = numpy.pad(dots, 1)
    shares = numpy.zeros((height, pixels, width, pixels), numpy.float32)
    neighbours = ((above, around[:-2, 1:-1]), (below, around[2:, 1:-1]),
                  (left, around[1:-1, :-2]), (right, around[1:-1, 2:]))
    for share, is_black in neighbours:
        shares += is_black[:, None, :, None] * share[None, :, None, :]
    own_shares = numpy.broadcast_to(own[None, :, None, :], shares.shape)
    shares = numpy.where(dots[:, None, :, None], own_shares, shares)
    return shares.reshape(height * pixels, width * pixels)


def blurred(picture, deviation):
    """Through a Gaussian; beyond the edges the picture goes on as its last row or column."""
    reach = int(3 * deviation + 0.5)
    weights = numpy.exp(-0.5 * (numpy.arange(-reach, reach + 1) / deviation) ** 2)
    weights = (weights / weights.sum()).astype(numpy.float32)
    height, width = picture.shape
    rows = numpy.pad(picture, ((reach, reach), (0, 0)), mode="edge")
    picture = sum(weight * rows[start:start + height] for start, weight in enumerate(weights))
    columns = numpy.pad(picture, ((0, 0), (reach, reach)), mode="edge")
    return sum(weight * columns[:, start:start + width] for start, weight in enumerate(weights))


@functools.lru_cache(None)
def noise():
    """A square of the camera's noise; copies of it lie side by side."""
    chance = numpy.random.default_rng(NOISE_SEED)
    grain = blurred(chance.standard_normal((NOISE_SIDE, NOISE_SIDE), numpy.float32), NOISE_GRAIN)
    return grain * (NOISE / grain.std())


def noise_for(shape, seed):
    """A part of the noise, another one for each seed."""
    down, across = numpy.random.default_rng(seed).integers(NOISE_SIDE, size=2)
    copies = [-(-side // NOISE_SIDE) for side in shape]
    return numpy.tile(numpy.roll(noise(), (down, across), (0, 1)), copies)[:shape[0], :shape[1]]


def photographed(dots, resolution, seed, turn=TURN_DEGREES):
    """The dots, printed and seen by the camera: a grey picture. The resolution divides the
    camera's."""
    ink = inked(dots, CAMERA_PIXELS_PER_INCH // resolution)
    upright = Image.fromarray((PAPER + (INK - PAPER) * ink).astype(numpy.uint8))
    turned = upright.rotate(turn, Image.BICUBIC, expand=True, fillcolor=PAPER)
    seen = numpy.asarray(turned.filter(ImageFilter.GaussianBlur(BLUR)), numpy.float32)
    seen = seen + noise_for(seen.shape, seed)
    return Image.fromarray(seen.clip(0, 255).astype(numpy.uint8))

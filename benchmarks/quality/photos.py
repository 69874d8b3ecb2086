"""Eight pictures of different kinds and a grey wedge, the same at every run."""
import math

import numpy
from PIL import Image, ImageDraw, ImageFilter, ImageFont

SIZE = (1600, 1200)  # pixels
STEPS = 16  # of the wedge
STEP_PIXELS = 80
FACE = "/usr/share/fonts/opentype/urw-base35/NimbusRoman-Bold.otf"


def grid():
    """(x, y) from -1 to 1, y as far as the picture's proportions go."""
    y, x = numpy.mgrid[0:SIZE[1], 0:SIZE[0]]
    return (x + 0.5) / SIZE[0] * 2 - 1, ((y + 0.5) / SIZE[1] * 2 - 1) * SIZE[1] / SIZE[0]


def smooth_noise(seed, radius):
    """Clouds from -1 to 1 whose patches are about `radius` pixels wide."""
    chance = numpy.random.default_rng(seed)
    small = (max(SIZE[0] // radius, 2), max(SIZE[1] // radius, 2))
    values = chance.uniform(0, 255, small[::-1]).astype(numpy.uint8)
    return numpy.asarray(Image.fromarray(values).resize(SIZE, Image.BICUBIC), float) / 127.5 - 1


def clouds(seed):
    return sum(smooth_noise(seed + each, 400 >> each) / 2 ** each for each in range(6)) / 2


def coloured(light, warmth):
    """A grey picture, 0 to 1, with a tint that keeps its luminance nearly."""
    light = numpy.clip(light, 0, 1)
    shades = [light * (1 + warmth), light * (1 - warmth * 0.3), light * (1 - warmth)]
    return Image.fromarray((numpy.clip(numpy.dstack(shades), 0, 1) * 255).astype(numpy.uint8))


def ball(x, y, centre, radius):
    """How a ball is lit from the upper left, 0 outside of it."""
    dx, dy = (x - centre[0]) / radius[0], (y - centre[1]) / radius[1]
    height = numpy.sqrt(numpy.clip(1 - dx ** 2 - dy ** 2, 0, 1))
    lit = numpy.clip(0.25 + 0.6 * height - 0.3 * dx - 0.35 * dy, 0.05, 1)
    return numpy.where(height > 0, lit, 0)


def portrait():
    """A head before a soft background: gradients, and small dark features."""
    x, y = grid()
    light = 0.55 - 0.25 * y + 0.08 * clouds(1)
    for centre, radius in (((0, 0.75), (0.7, 0.45)), ((0, 0), (0.36, 0.48))):
        head = ball(x, y, centre, radius)
        light = numpy.where(head > 0, head, light)
    eye, mouth = (0.06, 0.03), (0.11, 0.03)
    features = (((-0.14, -0.08), eye, 0.12), ((0.14, -0.08), eye, 0.12), ((0, 0.2), mouth, 0.3))
    for centre, radius, shade in features:
        inside = ((x - centre[0]) / radius[0]) ** 2 + ((y - centre[1]) / radius[1]) ** 2 < 1
        light = numpy.where(inside, shade, light)
    return coloured(light, 0.12)


def edges():
    """Discs, rays and bars of all sizes and shades."""
    chance = numpy.random.default_rng(2)
    picture = coloured(numpy.full(SIZE[::-1], 0.7), 0.05)
    draw = ImageDraw.Draw(picture)
    for _ in range(70):
        x, y = chance.uniform(0, SIZE[0]), chance.uniform(0, SIZE[1])
        radius = chance.uniform(8, 120)
        shade = tuple(int(each) for each in chance.integers(0, 256, 3))
        draw.ellipse((x - radius, y - radius, x + radius, y + radius), fill=shade)
    for ray in range(60):
        angle = ray * math.pi / 30
        end = (800 + 1200 * math.cos(angle), 600 + 1200 * math.sin(angle))
        draw.line((800, 600, *end), fill=(20, 20, 30), width=2)
    return picture.filter(ImageFilter.GaussianBlur(0.7))


def texture():
    """Fine grain and weave of all directions."""
    x, y = grid()
    weave = numpy.sin(90 * x) * numpy.sin(70 * y + 3 * x) + 0.5 * numpy.sin(160 * (x + y))
    return coloured(0.5 + 0.14 * weave + 0.12 * smooth_noise(3, 4) + 0.15 * clouds(4), 0.1)


def low_key():
    """Night: most of it is nearly black."""
    x, y = grid()
    light = 0.04 + 0.06 * (clouds(5) + 0.5) + 0.5 * ball(x, y, (0.3, 0), (0.5, 0.5)) ** 2
    lamps = sum(numpy.exp(-((x + 0.8 - 0.2 * n) ** 2 + (y - 0.5) ** 2) * 900) for n in range(6))
    return coloured(light + lamps, 0.15)


def high_key():
    """Snow: most of it is nearly white."""
    x, y = grid()
    light = 0.84 + 0.16 * clouds(6) - 0.3 * ball(x, y, (-0.2, 0.1), (0.4, 0.3)) ** 2
    trunks = sum(numpy.exp(-((x - 0.2 * n - 0.05 * y) ** 2) * 9000) for n in range(-4, 5))
    return coloured(light - 0.5 * trunks, -0.04)


def lettered():
    """A poster: large and small letters on shades."""
    x, y = grid()
    picture = coloured(0.5 + 0.35 * x + 0.05 * clouds(7), 0.1)
    draw = ImageDraw.Draw(picture)
    top = 60
    for number, size in enumerate((150, 100, 70, 50, 36, 28)):
        shade = (20, 15, 40) if number % 2 else (250, 245, 230)
        font = ImageFont.truetype(FACE, size)
        draw.text((90, top), "Evening concert, row 7", fill=shade, font=font)
        top += 1.6 * size
    return picture


def landscape():
    """A sky over hills: a wide gradient, and detail below."""
    x, y = grid()
    light = 0.6 - 0.35 * y + 0.12 * clouds(8)
    for number in range(4):
        ridge = -0.1 + 0.2 * number + 0.1 * numpy.sin(3 * x + 2 * number)
        hill = 0.55 - 0.12 * number + 0.1 * smooth_noise(20 + number, 8) * (0.4 + number / 4)
        light = numpy.where(y > ridge, hill, light)
    return coloured(light, -0.1)


def ramps():
    """Smooth ramps in all directions, where patterns of dots show most."""
    x, y = grid()
    around = numpy.hypot(x, y)
    light = numpy.where(x < 0, 0.5 + 0.5 * y / 0.75, 1 - around)
    return coloured(numpy.where(numpy.abs(y) < 0.12, (x + 1) / 2, light), 0.0)


PHOTOS = {"portrait": portrait, "edges": edges, "texture": texture, "low key": low_key,
          "high key": high_key, "letters": lettered, "landscape": landscape, "ramps": ramps}


def grain(picture, seed):
    """A camera's own grain."""
    noise = numpy.random.default_rng(seed).normal(0, 3, (*SIZE[::-1], 1))
    return Image.fromarray((numpy.asarray(picture, float) + noise).clip(0, 255).astype(numpy.uint8))


def make_photo(name, path):
    picture = PHOTOS[name]()
    if name != "ramps":
        picture = grain(picture, 9)
    picture.save(path, quality=92)


def wedge_greys():
    return [round(255 * step / (STEPS - 1)) for step in range(STEPS)]


def wedge_size():
    return STEPS * STEP_PIXELS, 2 * STEP_PIXELS


def make_wedge(path):
    """A picture that is printed at its own size."""
    row = numpy.repeat(numpy.array(wedge_greys(), numpy.uint8), STEP_PIXELS)
    Image.fromarray(numpy.tile(row, (wedge_size()[1], 1))).save(path)

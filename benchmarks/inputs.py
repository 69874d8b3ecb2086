#!/usr/bin/python3
"""Makes the inputs of whole processes, the same at every run: inputs.py FOLDER [--small].

photo.jpg   4000 x 3000 pixels: gradients, noise and sharp edges
page.pdf    a letter-size page of text

With --small the photo has 400 x 300 pixels.
"""
import math
import pathlib
import random
import sys

from PIL import Image, ImageChops, ImageDraw, ImageFilter


def gradients(size):
    """A sky that is brighter in the middle, over ground: one gradient for each colour."""
    across = Image.linear_gradient("L").rotate(90).resize(size, Image.BILINEAR)
    down = Image.linear_gradient("L").resize(size, Image.BILINEAR)
    around = Image.radial_gradient("L").resize(size, Image.BILINEAR)
    return Image.merge("RGB", (ImageChops.add(across, down, 2), ImageChops.invert(around), down))


def noise(size, strength):
    """Grain like a camera's: uniform noise, a little blurred, around 128."""
    grain = Image.frombytes("L", size, random.Random(1).randbytes(size[0] * size[1]))
    grain = grain.filter(ImageFilter.GaussianBlur(0.6))
    return grain.point([int(128 + (value - 128) * strength) for value in range(256)])


def draw_edges(picture):
    """Discs, rays and bars of all sizes."""
    draw = ImageDraw.Draw(picture)
    width, height = picture.size
    shapes = random.Random(2)
    for _ in range(60):
        x, y = shapes.uniform(0, width), shapes.uniform(0, height)
        radius = shapes.uniform(0.005, 0.06) * width
        colour = tuple(shapes.randrange(256) for _ in range(3))
        draw.ellipse((x - radius, y - radius, x + radius, y + radius), fill=colour)
    for ray in range(90):
        angle = ray * math.pi / 45
        end = (width / 2 + width * math.cos(angle), height / 2 + width * math.sin(angle))
        draw.line((width / 2, height / 2, *end), fill=(20, 20, 30), width=max(width // 1000, 1))
    for bar in range(0, 40):
        x = width * bar / 40
        draw.rectangle((x, height * 0.94, x + width / 80, height), fill=(250, 250, 245))


def make_photo(path, size):
    picture = gradients(size)
    draw_edges(picture)
    grain = Image.merge("RGB", [noise(size, 0.25)] * 3)
    picture = ImageChops.add(picture, grain, 1, -128)
    picture.save(path, quality=90)


WORDS = (
    "the ticket admits one person to one seat on the evening printed above and is not given back "
    "once the doors have been closed whoever comes late waits for the first pause"
).split()


def text_lines():
    """Lines of about 85 letters."""
    words = random.Random(3)
    while True:
        line = ""
        while len(line) < 80:
            line += words.choice(WORDS) + " "
        yield line.strip().capitalize() + "."


def page_content():
    """A title, and 56 lines in two faces."""
    lines = text_lines()
    content = ["BT /F1 28 Tf 72 716 Td (Conditions of admission) Tj ET"]
    for number in range(56):
        face = "/F1 10 Tf" if number % 8 == 0 else "/F2 10.5 Tf"
        content.append(f"BT {face} 72 {680 - 11 * number} Td ({next(lines)}) Tj ET")
    content.append("72 704 m 540 704 l 1 w S")
    return "\n".join(content).encode()


def make_page(path):
    content = page_content()
    face = b"<< /Type /Font /Subtype /Type1 /BaseFont /%s >>"
    objects = [
        b"<< /Type /Catalog /Pages 2 0 R >>",
        b"<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        b"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Contents 4 0 R"
        b" /Resources << /Font << /F1 5 0 R /F2 6 0 R >> >> >>",
        b"<< /Length %d >>\nstream\n%s\nendstream" % (len(content), content),
        face % b"Helvetica-Bold",
        face % b"Times-Roman",
    ]
    file = b"%PDF-1.4\n"
    places = []
    for number, body in enumerate(objects, 1):
        places.append(len(file))
        file += b"%d 0 obj\n%s\nendobj\n" % (number, body)
    table = len(file)
    file += b"xref\n0 %d\n0000000000 65535 f \n" % (len(objects) + 1)
    file += b"".join(b"%010d 00000 n \n" % place for place in places)
    file += b"trailer << /Size %d /Root 1 0 R >>\nstartxref\n%d\n%%%%EOF\n" % (
        len(objects) + 1,
        table,
    )
    path.write_bytes(file)


def main():
    folder = pathlib.Path(sys.argv[1])
    size = (400, 300) if "--small" in sys.argv[2:] else (4000, 3000)
    make_photo(folder / "photo.jpg", size)
    make_page(folder / "page.pdf")


if __name__ == "__main__":
    main()

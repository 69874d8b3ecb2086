"""Programs that print a picture in dots: this project's tool, and other tools for the same task."""
import shutil

import numpy
from PIL import Image
from reportlab.lib.utils import ImageReader
from reportlab.pdfgen.canvas import Canvas

from pages import POINTS_PER_INCH
from printers import Printer, black_dots, read_dots, run

RESOLUTION = 300


def inches(size):
    return tuple(side / RESOLUTION for side in size)


def ours(tool, name, *options):
    """options for a picture that is resampled; one of the ticket's size needs none of them."""

    def draw(path, size, folder):
        job, ticket = folder / "job.bin", folder / "ticket.png"
        settings = ("--stock", "{:.4f}x{:.4f}".format(*inches(size)), "--resolution", RESOLUTION)
        run(tool, "print", path, *settings, *options, "--to", f"file:{job}")
        run(tool, "preview", job, *settings, "-o", ticket)
        return read_dots(ticket)[:size[1], :size[0]]

    return Printer(name, True, str(tool), draw)


def own_printers(tool):
    return [ours(tool, "Tavio", "--fit", "contain"),
            ours(tool, "Tavio classic, dithered", "--classic", "--scaled")]


def pil(path, size, folder):
    with Image.open(path) as picture:
        grey = picture.convert("L")
    if grey.size != size:
        grey = grey.resize(size, Image.BICUBIC)
    return black_dots(grey.convert("1"))


def vips(path, size, folder):
    with Image.open(path) as picture:
        scales = [side / own for side, own in zip(size, picture.size)]
    grey, output = folder / "grey.v", folder / "dots.png"
    run("vips", "colourspace", path, grey, "b-w")
    run("vips", "resize", grey, f"{output}[palette,bitdepth=1,dither=1]", scales[0],
        "--vscale", scales[1])
    return read_dots(output)


def ghostscript(device):
    """A page that the picture fills."""

    def draw(path, size, folder):
        page, output = folder / "picture.pdf", folder / "dots.png"
        sides = [side * POINTS_PER_INCH for side in inches(size)]
        canvas = Canvas(str(page), pagesize=sides, invariant=1)
        canvas.drawImage(ImageReader(str(path)), 0, 0, *sides)
        canvas.save()
        run("gs", "-q", "-dNOPAUSE", "-dBATCH", "-dSAFER", f"-sDEVICE={device}",
            f"-r{RESOLUTION}", "-g{}x{}".format(*size), "-o", output, page)
        return read_dots(output)

    return draw


def all_printers(tool):
    peers = [Printer("PIL", False, "/usr/bin/python3", pil),
             Printer("libvips", False, "vips", vips),
             Printer("gs pngmono", False, "gs", ghostscript("pngmono")),
             Printer("gs pngmonod", False, "gs", ghostscript("pngmonod"))]
    return [each for each in own_printers(tool) + peers if shutil.which(each.needs)]


def grey_original(path, size):
    """Luminance from 0 to 1, averaged over each dot."""
    with Image.open(path) as picture:
        grey = picture.convert("L")
    return numpy.asarray(grey.resize(size, Image.BOX), numpy.float32) / 255

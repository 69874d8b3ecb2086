"""Programs that turn a page into dots: this project's tool and Debian's tools for the same task."""
import dataclasses
import shutil
import subprocess

import numpy
from PIL import Image

Image.MAX_IMAGE_PIXELS = 1 << 28


def run(*command):
    done = subprocess.run(list(map(str, command)), capture_output=True, text=True)
    if done.returncode != 0:
        raise SystemExit(f"{' '.join(map(str, command))}\n{done.stderr}")


def black_dots(picture):
    """True is black."""
    return numpy.asarray(picture.convert("1", dither=Image.NONE)) == 0


def read_dots(path):
    with Image.open(path) as picture:
        return black_dots(picture)


@dataclasses.dataclass(frozen=True)
class Printer:
    name: str
    is_ours: bool
    needs: str  # the program
    draw: object  # (page, resolution, folder) -> dots

    def dots(self, page, resolution, folder):
        """Of the page's size: a renderer may round it up, and a ticket may be larger."""
        width, height = page.dots(resolution)
        dots = self.draw(page, resolution, folder)[:height, :width]
        missing = (height - dots.shape[0], width - dots.shape[1])
        return numpy.pad(dots, [(0, each) for each in missing])


def ours(tool, name, *options):
    """To the bytes for the printer, and from those to dots by the virtual printer."""

    def draw(page, resolution, folder):
        job, ticket = folder / "job.bin", folder / "ticket.png"
        settings = ("--stock", "{}x{}".format(*page.inches), "--resolution", resolution)
        run(tool, "print", page.path, *settings, *options, "--to", f"file:{job}")
        run(tool, "preview", job, *settings, "-o", ticket)
        return read_dots(ticket)

    return Printer(name, True, str(tool), draw)


def poppler_mono(page, resolution, folder):
    run("pdftoppm", "-mono", "-r", resolution, "-singlefile", page.path, folder / "page")
    return read_dots(folder / "page.pbm")


def poppler_grey(page, resolution, folder):
    run("pdftoppm", "-gray", "-r", resolution, "-singlefile", page.path, folder / "page")
    return Image.open(folder / "page.pgm")


def poppler_dithered(page, resolution, folder):
    return black_dots(poppler_grey(page, resolution, folder).convert("1"))


def poppler_threshold(page, resolution, folder):
    return numpy.asarray(poppler_grey(page, resolution, folder)) < 128


def mupdf_mono(page, resolution, folder):
    output = folder / "page.pbm"
    run("mutool", "draw", "-q", "-r", resolution, "-c", "mono", "-F", "pbm", "-o", output,
        page.path, "1")
    return read_dots(output)


def ghostscript(device):
    def draw(page, resolution, folder):
        output = folder / "page.png"
        run("gs", "-q", "-dNOPAUSE", "-dBATCH", "-dSAFER", f"-sDEVICE={device}", f"-r{resolution}",
            "-o", output, page.path)
        return read_dots(output)

    return draw


def peers():
    return [
        Printer("pdftoppm -mono", False, "pdftoppm", poppler_mono),
        Printer("mutool -c mono", False, "mutool", mupdf_mono),
        Printer("gs pngmono", False, "gs", ghostscript("pngmono")),
        Printer("gs pngmonod", False, "gs", ghostscript("pngmonod")),
        Printer("pdftoppm -gray, PIL dithered", False, "pdftoppm", poppler_dithered),
        Printer("pdftoppm -gray, PIL threshold", False, "pdftoppm", poppler_threshold),
    ]


def own_printers(tool):
    return [ours(tool, "Tavio"),
            ours(tool, "Tavio classic, dithered", "--classic"),
            ours(tool, "Tavio classic, threshold", "--classic", "--threshold")]


def all_printers(tool):
    """Ours first; peers that are missing are left out."""
    return [each for each in own_printers(tool) + peers() if shutil.which(each.needs)]

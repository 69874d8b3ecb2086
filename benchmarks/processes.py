"""Whole processes: a print from the start of a program to its end, and Debian's tools for the
same kind of work."""
import dataclasses
import json
import pathlib
import shutil
import statistics
import subprocess

PAGE = (5100, 6600)  # letter size at 600 dots per inch
BRIEF_PAGE = (640, 800)
TICKET = (1650, 600)  # stock 0 at 300 dots per inch
MEGABYTE = 1_000_000


@dataclasses.dataclass
class Candidate:
    name: str
    how: str  # how it becomes black and white
    command: list
    needs: str = ""  # the peer's program; "" for our own
    runs: list = dataclasses.field(default_factory=list)  # (seconds, user seconds, KiB)

    def summary(self):
        return {
            "name": self.name,
            "how": self.how,
            "seconds": statistics.median(run[0] for run in self.runs),
            "user": statistics.median(run[1] for run in self.runs),
            "megabytes": max(run[2] for run in self.runs) * 1024 / MEGABYTE,
        }


def pipeline(text):
    return ["sh", "-c", text]


PIL = """
import sys
from PIL import Image
picture = Image.open(sys.argv[1]).resize((int(sys.argv[2]), int(sys.argv[3])), Image.BILINEAR)
picture.convert("1", dither=Image.%s)
"""


class Candidates:
    """The commands. bin: our programs; folder: inputs and outputs."""

    def __init__(self, bin, folder):
        self.bin = bin
        self.folder = folder
        self.photo = str(folder / "photo.jpg")
        self.page = str(folder / "page.pdf")
        self.ticket = str(pathlib.Path(__file__).parents[1] / "examples/ticket.pdf")
        self.job = str(folder / "job.bin")

    def decode(self):
        return Candidate("JPEG decode alone", "-", [f"{self.bin}/decode_once", self.photo])

    def library(self, document, size, how):
        command = [f"{self.bin}/print_once", document, *map(str, size), how, self.job]
        return Candidate("Tavio, library", words(how), command)

    def tool(self, document, *options, name="Tavio, tool"):
        how = "threshold" if "--threshold" in options else "dither"
        if "--classic" not in options:
            how = "sharp"
        command = [f"{self.bin}/tavio", "print", document, *options, "--to", f"file:{self.job}"]
        return Candidate(name, words(how), command)

    def pil(self, size, dithers):
        code = PIL % ("FLOYDSTEINBERG" if dithers else "NONE")
        command = ["/usr/bin/python3", "-c", code, self.photo, *map(str, size)]
        how = floyd_steinberg(dithers)
        return Candidate("python3-pil, nothing written", how, command, "/usr/bin/python3")

    def graphicsmagick(self, size, dithers):
        to_bits = ["-dither", "-monochrome"]
        if not dithers:
            to_bits = ["-colorspace", "gray", "-threshold", "50%"]
        command = ["gm", "convert", self.photo, "-filter", "Triangle"]
        command += ["-resize", "{}x{}!".format(*size), *to_bits, f"{self.folder}/gm.pbm"]
        how = "error diffusion" if dithers else "threshold"
        return Candidate("graphicsmagick", how, command, "gm")

    def vips(self, size, photo_size, dithers):
        across, down = size[0] / photo_size[0], size[1] / photo_size[1]
        options = "palette,bitdepth=1,dither=1,compression=0" if dithers else "bitdepth=1"
        output = f"{self.folder}/vips.{'png' if dithers else 'tif'}[{options}]"
        command = pipeline(
            f"vips colourspace {self.photo} {self.folder}/vips.v b-w && "
            f"vips resize {self.folder}/vips.v '{output}' {across} --vscale {down} --kernel linear"
        )
        how = "error diffusion to a palette of two" if dithers else "threshold"
        return Candidate("libvips-tools, in grey", how, command, "vips")

    def netpbm(self, size, photo_size, dithers):
        grows = size[0] > photo_size[0]
        scale = "pamscale -linear" if grows else "pamscale"
        to_bits = "pgmtopbm -fs" if dithers else "pgmtopbm -threshold"
        command = pipeline(
            f"jpegtopnm -quiet {self.photo} | {scale} -quiet -xsize {size[0]} -ysize {size[1]} | "
            f"ppmtopgm -quiet | {to_bits} -quiet > {self.folder}/netpbm.pbm"
        )
        return Candidate("netpbm", floyd_steinberg(dithers), command, "pamscale")

    def ghostscript(self, page, resolution):
        command = ["gs", "-q", "-dNOPAUSE", "-dBATCH", "-dSAFER", "-sDEVICE=pngmonod"]
        command += [f"-r{resolution}", "-o", f"{self.folder}/gs.png", page]
        return Candidate("ghostscript, pngmonod", "error diffusion", command, "gs")

    def mupdf(self, page, resolution):
        command = ["mutool", "draw", "-q", "-r", f"{resolution}", "-c", "mono", "-F", "pbm"]
        command += ["-o", f"{self.folder}/mutool.pbm", page, "1"]
        return Candidate("mupdf-tools, mono", "ordered pattern", command, "mutool")

    def poppler(self, page, resolution):
        command = ["pdftoppm", "-mono", "-r", f"{resolution}", "-singlefile", page]
        command += [f"{self.folder}/poppler"]
        return Candidate("poppler-utils, -mono", "ordered pattern", command, "pdftoppm")


def words(how):
    return {"dither": "error diffusion, 3 fields", "sharp": "error diffusion in grey",
            "threshold": "threshold"}[how]


def floyd_steinberg(dithers):
    return "Floyd-Steinberg" if dithers else "threshold"


def tables(make, photo_size, page_size):
    """{table: candidates}; the first of each is ours, the one that goals are judged by."""
    scaled = ("--scaled", "--stock", "8", "--resolution", "600")  # 6600 x 5100
    stretched = ("--fit", "stretch", "--rotate", "0")
    letter = ("--stock", "8.5x11", "--resolution", "600")

    def peers_of_pages(page, resolution):
        return [each(page, resolution) for each in (make.ghostscript, make.mupdf, make.poppler)]

    def photo(how, size, dithers):
        return [
            make.library(make.photo, size, how),
            make.tool(
                make.photo,
                "--classic",
                *scaled,
                *(() if dithers else ("--threshold",)),
                name="Tavio, tool, to 6600 x 5100",
            ),
            *peers_of_photo(size, dithers),
        ]

    def peers_of_photo(size, dithers):
        return [
            make.decode(),
            make.pil(size, dithers),
            make.graphicsmagick(size, dithers),
            make.vips(size, photo_size, dithers),
            make.netpbm(size, photo_size, dithers),
        ]

    return {
        "photo": photo("dither", page_size, True),
        "photo-sharp": [make.tool(make.photo, *stretched, *letter), make.decode()],
        "photo-small": [make.tool(make.photo, *stretched), *peers_of_photo(TICKET, True)],
        "page": [make.tool(make.page, *letter), *peers_of_pages(make.page, 600)],
        "ticket": [make.tool(make.ticket), *peers_of_pages(make.ticket, 300)],
        "threshold": photo("threshold", page_size, False),
    }


def run_once(launcher, command):
    """(seconds, user seconds, peak KiB) of one run."""
    done = subprocess.run([launcher, "1", *command], capture_output=True, text=True)
    if done.returncode != 0:
        raise SystemExit(f"{' '.join(command)}\n{done.stderr}")
    seconds, user, kib = done.stdout.split()
    return float(seconds), float(user), int(kib)


def alternate(launcher, candidates, times):
    """One run of each in turn, so that all see the same load, each after one of its own that does
    not count: a virtual machine gives freed memory back to its host, and the next program would
    pay for taking it again."""
    for _ in range(times):
        for candidate in candidates:
            run_once(launcher, candidate.command)
            candidate.runs.append(run_once(launcher, candidate.command))


def measure(bin, folder, photo_size, brief):
    """{table: [{"name", "how", "seconds", "user", "megabytes"}]}; peers that are missing are left
    out, which only a brief run allows."""
    result = {}
    make = Candidates(bin, folder)
    for name, candidates in tables(make, photo_size, BRIEF_PAGE if brief else PAGE).items():
        present = [each for each in candidates if not each.needs or shutil.which(each.needs)]
        if not brief and len(present) < len(candidates):
            raise SystemExit("a peer is missing")
        alternate(f"{bin}/run_measured", present, 1 if brief else 11)
        result[name] = [candidate.summary() for candidate in present]
    return result


def measure_server(bin, brief):
    """Tickets a second with one thread and with all, and the memory of printers in bytes."""
    return json.loads(subprocess.run([f"{bin}/print_many", "1" if brief else "9"], check=True,
                                     capture_output=True, text=True).stdout)


def measure_start(bin, brief):
    """Milliseconds from start to end of the tool's shortest command and of an empty program."""
    version = Candidate("tavio --version", "", [f"{bin}/tavio", "--version"])
    empty = Candidate("empty program", "", [f"{bin}/empty_program"])
    alternate(f"{bin}/run_measured", [version, empty], 3 if brief else 400)
    return {each.name: each.summary()["seconds"] * 1000 for each in (version, empty)}


KINDS = ("text", "photo", "black", "stripes", "comb", "half-command", "commands", "false-counts")


def measure_encode_memory(bin, folder, brief):
    """Peak memory of a process that reads a one-bit picture and encodes it."""
    size = BRIEF_PAGE if brief else PAGE
    rows = []
    for kind in KINDS:
        file = str(folder / "ready.bmp")
        subprocess.run(
            [f"{bin}/encode_once", "make", kind, *map(str, size), file], check=True
        )
        sent = subprocess.run(
            [f"{bin}/encode_once", file], check=True, capture_output=True, text=True
        ).stdout
        candidate = Candidate(kind, "", [f"{bin}/encode_once", file])
        alternate(f"{bin}/run_measured", [candidate], 1 if brief else 3)
        rows.append({"kind": kind, "sent": int(sent), "dots": size[0] * size[1],
                     "megabytes": candidate.summary()["megabytes"]})
    return rows

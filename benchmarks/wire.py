"""The bytes sent for a document with each setting."""
import re
import subprocess

from PIL import Image

RESOLUTIONS = (200, 300, 600)
STOCKS = {"concert": "0", "cinema": "1", "creditcard": "2", "receipt": "3", "letter": "8"}


def stock_sizes(tool):
    """{(stock number, resolution): (width, height)} in dots, as the tool prints them."""
    listing = subprocess.run([tool, "stocks"], check=True, capture_output=True, text=True).stdout
    sizes = {}
    for line in listing.splitlines()[1:]:
        dots = [tuple(map(int, pair)) for pair in re.findall(r"(\d+) x (\d+)(?=\s|$)", line)[-3:]]
        sizes.update({(line.split()[0], resolution): size
                      for resolution, size in zip(RESOLUTIONS, dots)})
    return sizes


def page_points(path):
    """The page's size in points, none if there is no program to read it."""
    try:
        told = subprocess.run(["pdfinfo", path], check=True, capture_output=True, text=True).stdout
    except FileNotFoundError:
        return None
    width, height = re.search(r"Page size: +([\d.]+) x ([\d.]+)", told).groups()
    return float(width), float(height)


def plans(documents, tool):
    """(document, settings in words, options, size in dots)."""
    stocks = stock_sizes(tool)
    for path in documents:
        for how in ("dithered", "threshold"):
            options = [] if how == "dithered" else ["--threshold"]
            for words, more, size in sizes_of(path, stocks):
                yield path, f"{words}, {how}", options + more, size


def sizes_of(path, stocks):
    if path.suffix == ".pdf":
        points = page_points(path)
        for resolution in RESOLUTIONS if points else ():
            size = tuple(round(side / 72.0 * resolution) for side in points)
            options = ["--fit", "actual", "--rotate", "0", "--resolution", str(resolution)]
            yield f"{resolution} dpi", options, size
        return
    size = Image.open(path).size
    if size[0] * size[1] < 1_000_000:
        yield "own size", [], size
        return
    for name, stock in STOCKS.items():
        for resolution in (300, 600):
            more = ["--scaled", "--rotate", "0", "--stock", stock, "--resolution", str(resolution)]
            yield f"stock {name}, {resolution} dpi", more, stocks[stock, resolution]


def print_to(job, command):
    """Prints the messages only after a failure: pages larger than the stock are expected here."""
    done = subprocess.run([*command, "--to", f"file:{job}"], capture_output=True, text=True)
    if done.returncode != 0:
        raise SystemExit(done.stderr)


def measure(bin, folder, root, brief):
    """[{"document", "settings", "dots", "plain", "sent"}]"""
    tool = f"{bin}/tavio"
    job = folder / "wire.bin"
    examples = root / "examples"
    documents = [examples / name for name in ("ticket.pdf", "stub.pdf", "photo.jpg", "seal.png")]
    documents += [folder / "page.pdf", folder / "photo.jpg"]
    rows = []
    for path, settings, options, size in plans(documents[:4] if brief else documents, tool):
        print_to(job, [tool, "print", path, *options])
        rows.append({
            "document": document_name(path, folder),
            "settings": settings,
            "dots": size,
            "plain": (size[0] + 7) // 8 * size[1],
            "sent": job.stat().st_size,
        })
    return rows


def document_name(path, folder):
    """The benchmark's own inputs share names with the examples."""
    if path.parent != folder:
        return f"examples/{path.name}"
    return "letter-size page of text" if path.suffix == ".pdf" else "12-megapixel photo"

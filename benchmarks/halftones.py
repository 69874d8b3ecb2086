#!/usr/bin/python3
"""Compares ways to halftone, and writes docs/halftone.md with its pictures.

  halftones.py           measures and writes
  halftones.py --noise   writes TavioIpadSDK/sharp/diffusion_noise.h instead
  halftones.py --gain    writes TavioIpadSDK/sharp/dot_gain_curves.h instead
"""
import pathlib
import subprocess
import sys
import tempfile

import numpy as np
from PIL import Image

import blue_noise
import dot_gain
import halftone_measures as measures
import halftone_methods as methods

ROOT = pathlib.Path(__file__).resolve().parent.parent
FLATS = [252, 245, 236, 223, 200, 170, 150, 127, 110, 85, 64, 40]
WEDGE = range(0, 256, 17)
OURS = "**in bytes, blue noise 12: ours**"


def balanced(greys):
    """balancedGrey() of TavioIpadSDK/sharp/tone.h."""
    values = np.rint(greys).astype(int)
    more = np.minimum(np.minimum(values // 4, 23), 44 - values // 8)
    return (np.maximum(values - 13, 0) + more).astype(float)


def scene(side=240):
    """A picture with what photos have: sky, a ball, fine texture, a rough ground and an edge."""
    y, x = np.mgrid[0:side, 0:side] / side
    grey = 235 - 150 * y + 20 * np.sin(6 * x)
    distance = np.hypot(x - 0.35, y - 0.45)
    height = np.sqrt(np.clip(1 - (distance / 0.25) ** 2, 0, 1))
    light = (0.8 * height - 1.6 * (x - 0.35) - 2 * (y - 0.45)) / 1.3
    grey = np.where(distance < 0.25, 30 + 190 * np.clip(light, 0, 1), grey)
    texture = 128 + 100 * np.sin(60 * x * (1 + y)) * np.sin(45 * y)
    grey = np.where((x > 0.62) & (y > 0.3), texture, grey)
    grey = np.where(y > 0.8, 60 + 50 * x + 25 * np.sin(400 * x * y), grey)
    grey = np.where(np.abs(x + y / 2 - 1) < 0.01, 10, grey)
    return np.clip(grey, 1, 254)


def candidates(noise):
    fs = methods.FLOYD_STEINBERG
    values = {amplitude: blue_noise.of_values(noise, amplitude) for amplitude in (8, 12, 20, 40)}
    return {
        "Floyd-Steinberg": lambda g: methods.diffused(g, fs),
        "Floyd-Steinberg, serpentine": lambda g: methods.diffused(g, fs, True),
        "Jarvis": lambda g: methods.diffused(g, methods.JARVIS),
        "Jarvis, serpentine": lambda g: methods.diffused(g, methods.JARVIS, True),
        "Stucki": lambda g: methods.diffused(g, methods.STUCKI),
        "Stucki, serpentine": lambda g: methods.diffused(g, methods.STUCKI, True),
        "Sierra, two rows": lambda g: methods.diffused(g, methods.SIERRA_2),
        "variable shares": lambda g: methods.diffused_variably(g, False),
        "variable shares, serpentine": methods.diffused_variably,
        "Floyd-Steinberg, serpentine, blue noise 60":
            lambda g: methods.diffused(g, fs, True, noise, 60),
        "Floyd-Steinberg, blue noise 40": lambda g: methods.diffused(g, fs, False, noise, 40),
        "shares 7, 3, 4, 2": lambda g: methods.diffused(g, methods.OURS),
        "in bytes": methods.ours,
        "in bytes, blue noise 8": lambda g: methods.ours(g, values[8]),
        OURS: lambda g: methods.ours(g, values[12]),
        "in bytes, blue noise 20": lambda g: methods.ours(g, values[20]),
        "in bytes, blue noise 40": lambda g: methods.ours(g, values[40]),
    }


def flat(value, side=128):
    return np.full((side, side), float(value))


def save(path, black):
    Image.fromarray(np.where(black, 0, 255).astype(np.uint8)).convert("1").save(path, optimize=True)


def quality(name, method):
    """A row of the table."""
    picture = scene()
    target = measures.blurred(picture / 255, 1.5)
    seen = measures.blurred(measures.paper(method(balanced(picture))), 1.5)
    flats = [method(flat(value)) for value in FLATS]
    grain = [measures.grain(black) for black in flats]
    worms = [measures.worms(black) for black in flats]
    return (f"| {name} | {measures.similarity(target, seen):.3f} | {np.mean(grain):.2f} | "
            f"{np.mean(worms):.1f} | {max(worms):.1f} |")


def by_pil(picture):
    return np.array(picture.convert("1")) == 0


def by_command(picture, command):
    """Runs it with a PNG and a PostScript file of the picture, and reads the PNG that it writes."""
    with tempfile.TemporaryDirectory() as folder:
        paths = {name: f"{folder}/{name}" for name in ("in.png", "in.ps", "out.png")}
        picture.save(paths["in.png"])
        width, height = picture.size
        pathlib.Path(paths["in.ps"]).write_text(
            f"{width} {height} scale {width} {height} 8 [{width} 0 0 -{height} 0 {height}]\n"
            f"currentfile /ASCIIHexDecode filter image\n{picture.tobytes().hex()}>\nshowpage\n")
        size = f"{width}x{height}"
        subprocess.run([part.format(size=size, **{k.replace(".", "_"): v for k, v in paths.items()})
                        for part in command], check=True, stdout=subprocess.DEVNULL)
        return np.array(Image.open(paths["out.png"]).convert("1")) == 0


PEERS = {
    "PIL, `convert(\"1\")`": by_pil,
    "libvips, PNG of 1 bit": lambda picture: by_command(
        picture, ["vips", "pngsave", "{in_png}", "{out_png}", "--bitdepth=1"]),
    "Ghostscript, pngmono": lambda picture: by_command(
        picture, ["gs", "-q", "-dBATCH", "-dNOPAUSE", "-sDEVICE=pngmono", "-r72", "-g{size}",
                  "-o", "{out_png}", "{in_ps}"]),
    "Ghostscript, pngmonod": lambda picture: by_command(
        picture, ["gs", "-q", "-dBATCH", "-dNOPAUSE", "-sDEVICE=pngmonod", "-r72", "-g{size}",
                  "-o", "{out_png}", "{in_ps}"]),
}


def wedge_row(name, halftone):
    """How far each step's mean on paper is from its value, in % of full scale."""
    off = []
    for value in WEDGE:
        black = halftone(flat(value))
        off.append(100 * (measures.mean_on_paper(black) - value / 255))
    shown = " | ".join(f"{each:+.1f}" for each in off)
    return f"| {name} | {shown} | {max(abs(each) for each in off[1:]):.1f} |"


def needed_row(ours):
    """The values that would be right, found by looking at every fourth value on paper."""
    values = np.array([0, 1, 2, *range(4, 255, 4), 254, 255])
    seen = [measures.mean_on_paper(ours(flat(value))) * 255 for value in values]
    seen = np.maximum.accumulate(seen)
    return "| needed | " + " | ".join(f"{np.interp(v, seen, values):.0f}" for v in WEDGE) + " |"


def tables(noise):
    found = candidates(noise)
    ours = found[OURS]
    steps = " | ".join(str(value) for value in WEDGE)
    line = "|---" * (len(WEDGE) + 1) + "|"
    yield "quality", "\n".join(
        ["| method | similarity | grain | worms | most worms |", "|---|---|---|---|---|",
         *(quality(name, method) for name, method in found.items())])
    peers = [wedge_row(name, lambda g, peer=peer: peer(Image.fromarray(g.astype(np.uint8))))
             for name, peer in PEERS.items()]
    yield "wedge", "\n".join(
        [f"| | {steps} | most |", line + "---|",
         wedge_row("ours", lambda g: ours(balanced(g))),
         wedge_row("ours, not balanced", ours), *peers])
    used = " | ".join(f"{balanced(np.array(float(v))):.0f}" for v in WEDGE)
    yield "gain", dot_gain.table([ours(flat(value)) for value in range(256)])
    yield "tone", "\n".join([f"| grey | {steps} |", line, needed_row(ours), f"| used | {used} |"])


def write_pictures(noise, folder):
    folder.mkdir(exist_ok=True)
    found = candidates(noise)
    shown = {"floyd-steinberg": "Floyd-Steinberg", "jarvis": "Jarvis",
             "variable": "variable shares, serpentine",
             "ours": OURS}
    for file, name in shown.items():
        flats = [found[name](flat(value)) for value in FLATS]
        save(folder / f"flats-{file}.png", np.vstack([np.hstack(flats[:6]), np.hstack(flats[6:])]))
        save(folder / f"scene-{file}.png", found[name](balanced(scene())))


def main():
    noise = blue_noise.thresholds()
    if sys.argv[1:] == ["--noise"]:
        blue_noise.write_header(ROOT / "TavioIpadSDK/sharp/diffusion_noise.h", noise)
        return
    if sys.argv[1:] == ["--gain"]:
        ours = candidates(noise)[OURS]
        dot_gain.write_header(ROOT / "TavioIpadSDK/sharp/dot_gain_curves.h",
                              [ours(flat(value)) for value in range(256)])
        return
    write_pictures(noise, ROOT / "docs/halftone")
    text = (ROOT / "benchmarks/halftone.md.in").read_text()
    for name, table in tables(noise):
        text = text.replace("{{" + name + "}}", table)
    (ROOT / "docs/halftone.md").write_text(text)


if __name__ == "__main__":
    main()

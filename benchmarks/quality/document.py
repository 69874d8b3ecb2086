"""Puts the measurements into the text of print-quality.md.in."""
import datetime
import re

import decodability
import machine
import measure_codes
import own_codes
import photos
from report import table

OURS = "Tavio"
PACKAGES = ("zbar-tools", "dmtx-utils", "libzxing2", "libzxing-core-java", "libzint2.11",
            "tesseract-ocr", "libpango-1.0-0", "libfreetype6", "poppler-utils", "mupdf-tools",
            "ghostscript", "libvips-tools", "python3-pil", "python3-numpy", "python3-reportlab")


def distinct(records, key):
    """In the order of their first appearance."""
    return list(dict.fromkeys(record[key] for record in records))


def by_printer(records, cell_key):
    """{printer: {cell: record}}"""
    rows = {}
    for record in records:
        rows.setdefault(record["printer"], {})[cell_key(record)] = record
    return rows


def is_peer(printer):
    return not printer.startswith(OURS)


def marked(text, is_best):
    return f"**{text}**" if is_best else text


def grid(records, cell_key, columns, value, text, higher_is_better, head):
    """Rows are printers, the best figures of a column are bold. value: record -> number."""
    rows = by_printer(records, cell_key)
    best = {}
    for column in columns:
        values = [value(row[column]) for row in rows.values() if column in row]
        best[column] = max(values) if higher_is_better else min(values)
    lines = []
    for printer, row in rows.items():
        cells = [marked(text(value(row[c])), value(row[c]) == best[c]) for c in columns]
        lines.append((printer, *cells))
    return table(("", *(head(column) for column in columns)), lines)


def codes_of(records, kind):
    """Tables of one kind, for each resolution."""
    parts = []
    for resolution in distinct(records, "resolution"):
        own = [each for each in records
               if (each["kind"], each["resolution"]) == (kind, resolution)]
        cells = [dict(each, seen=seen) for seen in ("plain", "camera") for each in own]
        columns = list(dict.fromkeys((each["seen"], each["module"]) for each in cells))
        parts.append(f"#### {kind}, {resolution} dpi\n\n" + grid(
            cells, lambda each: (each["seen"], each["module"]), columns,
            lambda each: each[each["seen"]], str, True,
            lambda column: f"{column[1]} pt" + (", camera" if column[0] == "camera" else "")))
    return "\n\n".join(parts)


def codes_text(records):
    return "\n\n".join(codes_of(records, kind) for kind in distinct(records, "kind"))


def sums_text(records):
    """All codes of each printer."""
    lines = []
    for printer in distinct(records, "printer"):
        own = [each for each in records if each["printer"] == printer]
        total = sum(each["of"] for each in own)
        lines.append((printer, *(f"{sum(each[seen] for each in own)} of {total}"
                                 for seen in ("plain", "camera"))))
    return table(("", "as they are", "through the camera"), lines)


def text_text(records):
    parts = []
    for resolution in distinct(records, "resolution"):
        own = [each for each in records if each["resolution"] == resolution]
        columns = list(dict.fromkeys((each["face"], each["size"]) for each in own))
        parts.append(f"#### {resolution} dpi\n\n" + grid(
            own, lambda each: (each["face"], each["size"]), columns, lambda each: each["wrong"],
            lambda share: f"{100 * share:.1f}", False,
            lambda column: f"{column[0]} {column[1]} pt"))
    return "\n\n".join(parts)


def words_text(records):
    """A line for each script, a column for each size."""
    lines = []
    for script in distinct(records, "script"):
        own = [each for each in records if each["script"] == script]
        lines.append((script, own[0]["face"], own[0]["letters"],
                      *(f"{100 * each['wrong']:.1f}" for each in own)))
    sizes = (f"{size} pt" for size in distinct(records, "size"))
    return table(("", "face", "letters", *sizes), lines)


def own_codes_text(records):
    """How many were read at all resolutions together: a line for each kind and library."""
    parts = []
    for seen, words in (("plain", "As they are"), ("camera", "Through the camera")):
        own = [each for each in records if each["seen"] == seen]
        modules = distinct(own, "module")
        lines = []
        for kind, reader in dict.fromkeys((each["kind"], each["reader"]) for each in own):
            cells = [[each for each in own if (each["kind"], each["reader"], each["module"]) ==
                      (kind, reader, module)] for module in modules]
            lines.append((own_codes.KINDS[kind], reader,
                          *(f"{sum(each['read'] for each in cell)} of "
                            f"{sum(each['of'] for each in cell)}" for cell in cells)))
        parts.append(f"{words}:\n\n" + table(
            ("", "read by", *(f"{module} dots" for module in modules)), lines))
    return "\n\n".join(parts)


def printed_text(records):
    """How many codes were printed."""
    cells = {(each["kind"], each["module"], each["resolution"]): each["printed"]
             for each in records}
    return f"{sum(cells.values()):,}"


def decodability_text(records):
    """The worst scans, with their grades: a table for each kind."""
    parts = []
    for kind in distinct(records, "kind"):
        own = [each for each in records if each["kind"] == kind]
        columns = list(dict.fromkeys((each["resolution"], each["module"]) for each in own))
        parts.append(f"#### {own_codes.KINDS[kind]}\n\n" + grid(
            own, lambda each: (each["resolution"], each["module"]), columns,
            lambda each: round(each["worst"], 2),
            lambda worst: f"{worst:.2f} {decodability.grade(worst)}", True,
            lambda column: f"{column[0]} dpi, {column[1]} dots"))
    return "\n\n".join(parts)


def photos_text(records):
    columns = distinct(records, "picture")
    return grid(records, lambda each: each["picture"], columns, lambda each: each["ssim"],
                "{:.3f}".format, True, str)


def wedge_text(records):
    """Differences from the original in percent of full scale."""
    greys = photos.wedge_greys()
    lines = []
    for record in records:
        errors = [(mean - grey) / 2.55 for mean, grey in zip(record["means"], greys)]
        lines.append((record["printer"], *(f"{error:+.1f}" for error in errors)))
    return table(("", *map(str, greys)), lines)


def below_best(records, cell_key, value, higher_is_better):
    """(cell, ours, best peer's) where ours is worse than a peer."""
    rows = by_printer(records, cell_key)
    choose = max if higher_is_better else min
    for cell, record in rows.get(OURS, {}).items():
        others = [value(row[cell]) for printer, row in rows.items() if is_peer(printer)]
        ours, best = value(record), choose(others)
        if ours != best and choose(ours, best) == best:
            yield cell, ours, best


def behind_text(results):
    """A line for each cell in which a peer is better."""
    lines = []
    for seen, words in (("plain", "as they are"), ("camera", "through the camera")):
        for cell, ours, best in below_best(
                results["codes"], lambda each: (each["kind"], each["resolution"], each["module"]),
                lambda each: each[seen], True):
            lines.append(("{}, {} dpi, {} pt, {}".format(*cell, words), ours, best))
    for cell, ours, best in below_best(
            results["text"], lambda each: (each["face"], each["size"], each["resolution"]),
            lambda each: each["wrong"], False):
        lines.append(("wrong letters, {} {} pt, {} dpi".format(*cell), f"{100 * ours:.1f} %",
                      f"{100 * best:.1f} %"))
    for cell, ours, best in below_best(
            results["decodability"],
            lambda each: (own_codes.KINDS[each["kind"]], each["resolution"], each["module"]),
            lambda each: round(each["worst"], 2), True):
        lines.append(("decodability, {}, {} dpi, {} dots".format(*cell), ours, best))
    for cell, ours, best in below_best(
            results["photos"], lambda each: each["picture"], lambda each: each["ssim"], True):
        lines.append((f"picture, {cell}", f"{ours:.3f}", f"{best:.3f}"))
    return table(("where a peer is better", "ours", "best peer"), lines) if lines else "Nowhere."


def packages_text():
    told = {name: machine.output_of("dpkg-query", "--show", "--showformat=${Version}", name)
            for name in PACKAGES}
    return ", ".join(f"{name} {version}" for name, version in told.items() if version)


def write(results, template, path):
    parts = {
        "date": datetime.date.today().isoformat(),
        "packages": packages_text(),
        "seed": str(measure_codes.SEED),
        "behind": behind_text(results),
        "sums": sums_text(results["codes"]),
        "codes": codes_text(results["codes"]),
        "own codes": own_codes_text(results["own codes"]),
        "printed codes": printed_text(results["own codes"]),
        "decodability": decodability_text(results["decodability"]),
        "text": text_text(results["text"]),
        "words": words_text(results["words"]),
        "photos": photos_text(results["photos"]),
        "wedge": wedge_text(results["wedge"]),
    }
    filled = re.sub(r"\{\{(.+?)\}\}", lambda match: parts[match.group(1)], template.read_text())
    path.write_text(filled)
    print(f"Written: {path}")

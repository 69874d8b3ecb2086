#!/usr/bin/python3
"""A short form of the measurement that fails if codes, text or words got worse: check.py TAVIO.

Every code at 300 dpi scans as it is, as many scan through the camera as of the best peer's, and no
more letters of a text are wrong than of the best peer's. Of words, no more letters are wrong than of
large ones, in each language that the reader knows here. Exits with 77 if a program or a package is
missing.
"""
import concurrent.futures
import pathlib
import shutil
import sys
import tempfile

sys.dont_write_bytecode = True
import skipping

NEEDED = ("zbarimg", "dmtxread", "tesseract", "pdftoppm")
RESOLUTION = 300
ALLOWED_WRONG = 0.01  # the reader's own mistakes

skipping.skip_without(NEEDED)
try:
    import measure_codes
    import measure_text
    import measure_words
    import printers
    import scanners
    import words
except ImportError as absent:
    skipping.skip(str(absent))


def judged_printers(tool):
    """Ours, and the two peers that draw pages best."""
    ours = printers.own_printers(tool)[0]
    return ours, [each for each in printers.peers()[:2] if shutil.which(each.needs)]


def split(records, ours):
    """{cell: our record}, {cell: [others' records]}"""
    own, others = {}, {}
    for record in records:
        cell = tuple(record[key] for key in ("kind", "module", "face", "size") if key in record)
        if record["printer"] == ours.name:
            own[cell] = record
        else:
            others.setdefault(cell, []).append(record)
    return own, others


def failed_codes(records, ours):
    own, others = split(records, ours)
    for (kind, module), record in own.items():
        best = max(each["camera"] for each in others[kind, module])
        print(f"{kind}, {module} pt: {record['plain']} of {record['of']} scan, "
              f"{record['camera']} through the camera, best peer {best}")
        if record["plain"] < record["of"] or record["camera"] < best:
            yield f"{kind}, {module} pt"


def failed_texts(records, ours):
    own, others = split(records, ours)
    for (face, size), record in own.items():
        best = min(each["wrong"] for each in others[face, size])
        print(f"{face}, {size} pt: {record['wrong']:.1%} of letters wrong, best peer {best:.1%}")
        if record["wrong"] > max(best, ALLOWED_WRONG):
            yield f"{face}, {size} pt"


def failed_words(records):
    for script in dict.fromkeys(record["script"] for record in records):
        wrong, wrong_if_large = (each["wrong"] for each in records if each["script"] == script)
        print(f"{script} words, {measure_words.SIZE} pt: {wrong:.1%} of letters wrong, "
              f"{measure_words.LARGE_SIZE} pt {wrong_if_large:.1%}")
        if wrong > max(wrong_if_large, ALLOWED_WRONG):
            yield f"{script} words"


def known_scripts():
    known = scanners.languages()
    return [script for script in words.SCRIPTS if script.language in known]


def main():
    ours, peers = judged_printers(pathlib.Path(sys.argv[1]).resolve())
    with tempfile.TemporaryDirectory() as name, concurrent.futures.ThreadPoolExecutor(2) as pool:
        folder = pathlib.Path(name)
        codes = measure_codes.measure([ours, *peers], folder, pool, resolutions=[RESOLUTION],
                                      modules=(0.7, 0.9), positions=3)
        texts = measure_text.measure([ours, *peers], folder, pool, resolutions=[RESOLUTION],
                                     faces=["serif"], sizes=[6])
        set_words = measure_words.measure(ours, folder, pool, scripts=known_scripts())
    failed = [*failed_codes(codes, ours), *failed_texts(texts, ours), *failed_words(set_words)]
    if failed:
        sys.exit("Not good enough: " + "; ".join(failed))


if __name__ == "__main__":
    main()

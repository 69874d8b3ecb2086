"""How many letters of words are read wrongly, for each script."""
import camera
import printers
import scanners
from measure_codes import folder_of
from words import SCRIPTS

RESOLUTION = 300
SIZE = 7  # points
LARGE_SIZE = 20  # points: what the reader makes of letters that are as good as they can be
TICKET = "5.5x6"  # inches


def printed(tool, script, size, folder):
    """The dots of the words, from the bytes for the printer."""
    job, ticket = folder / "words.bin", folder / "words.png"
    settings = ("--stock", TICKET, "--resolution", RESOLUTION)
    printers.run(tool, "words", script.text, "--face", script.face, "--size", size, *settings,
                 "--to", f"file:{job}")
    printers.run(tool, "preview", job, *settings, "-o", ticket)
    return printers.read_dots(ticket)


def share_wrong(tool, script, size, folder):
    picture = scanners.enlarged(printed(tool, script, size, folder),
                                camera.CAMERA_PIXELS_PER_INCH // RESOLUTION)
    return scanners.share_wrong(picture, script.text, folder, script.language)


def measure_script(printer, script, sizes, folder):
    own_folder = folder_of(printer, folder) / script.language
    own_folder.mkdir(exist_ok=True)
    return [{"printer": printer.name, "script": script.name, "face": script.face,
             "letters": len(script.text), "size": size,
             "wrong": share_wrong(printer.needs, script, size, own_folder)} for size in sizes]


def measure(printer, folder, pool, sizes=(SIZE, LARGE_SIZE), scripts=SCRIPTS):
    """[{"printer", "script", "face", "letters", "size", "wrong"}]"""
    print("Words", flush=True)
    records = []
    for own in pool.map(lambda script: measure_script(printer, script, sizes, folder), scripts):
        records += own
    return records

"""Ticket pages a second: with the program that draws them kept, started for each, and the peer's."""
import pathlib
import shutil
import statistics
import subprocess
import time

TICKET = str(pathlib.Path(__file__).parents[1] / "examples/ticket.pdf")
THREADS = "2"


def ours(bin, seconds, *helper):
    command = [f"{bin}/encode_pages", TICKET, THREADS, str(seconds), *helper]
    return float(subprocess.run(command, check=True, capture_output=True, text=True).stdout)


def peer(folder, seconds):
    """One run after the other: its loop is the shell's."""
    command = ["pdftoppm", "-mono", "-r", "300", "-singlefile", TICKET, f"{folder}/poppler"]
    count, begin = 0, time.monotonic()
    while time.monotonic() < begin + seconds:
        subprocess.run(command, check=True)
        count += 1
    return count / (time.monotonic() - begin)


def measure(bin, folder, brief):
    """Medians of rounds in which the candidates take turns."""
    seconds, rounds = (0.3, 1) if brief else (3, 5)
    candidates = {
        "kept": lambda: ours(bin, seconds),
        "started": lambda: ours(bin, seconds, f"{bin}/tavio-pdf-page"),
    }
    if shutil.which("pdftoppm"):
        candidates["pdftoppm"] = lambda: peer(folder, seconds)
    runs = {name: [] for name in candidates}
    for _ in range(rounds):
        for name, run in candidates.items():
            runs[name].append(run())
    return {name: statistics.median(rates) for name, rates in runs.items()}

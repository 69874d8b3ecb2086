"""The tool's own codes as dots: data of each kind, and what the printer prints of them."""
import dataclasses
import random
import string
import subprocess
import threading

import numpy

SEED = 12
COUNT = 50  # data of each kind
PHASES = 8
ORIENTATIONS = ("landscape", "portrait")
LINEAR = ("code128", "ean13", "itf")
KINDS = {"qr": "QR", "code128": "Code 128", "ean13": "EAN-13", "itf": "ITF", "pdf417": "PDF417",
         "aztec": "Aztec", "datamatrix": "Data Matrix"}
LETTERS = string.ascii_letters + string.digits


def letters(chance, count, alphabet=LETTERS):
    return "".join(chance.choices(alphabet, k=count))


def digits(chance, count):
    return letters(chance, count, string.digits)


def ean_with_check(first):
    total = sum(int(digit) * (3 if place % 2 else 1) for place, digit in enumerate(first))
    return first + str(-total % 10)


def linear_data(kind, chance, number):
    """(data, what readers read)."""
    if kind == "ean13":
        data = digits(chance, 12)
        return data, ean_with_check(data)
    if kind == "itf":
        data = digits(chance, 7 + number % 8)
        return data, "0" * (len(data) % 2) + data
    data = (digits(chance, 12), f"{digits(chance, 4)}-{letters(chance, 6)}",
            letters(chance, 4 + number % 12))[number % 3]
    return data, data


def matrix_data(chance, number):
    """What tickets hold: numbers, links, tokens, sentences."""
    data = (digits(chance, 12),
            "HTTPS://TICKETS.EXAMPLE/" + letters(chance, 10, string.ascii_uppercase + string.digits),
            letters(chance, 32),
            f"Row {letters(chance, 1)}, seat {digits(chance, 2)}; order {digits(chance, 8)}: "
            f"{letters(chance, 12)}")[number % 4]
    return data, data


def data_of(kind, count=COUNT):
    chance = random.Random(f"{SEED} {kind}")
    return [linear_data(kind, chance, number) if kind in LINEAR else matrix_data(chance, number)
            for number in range(count)]


@dataclasses.dataclass(frozen=True)
class Code:
    """One to be printed."""
    kind: str
    data: str
    module: int  # dots
    resolution: int
    orientation: str = "landscape"
    turns: int = 0
    phase: int = 0
    reduction: object = None  # dots

    def line(self):
        reduction = "-" if self.reduction is None else self.reduction
        return (f"{self.kind} {self.module} {self.resolution} {self.orientation} {self.turns} "
                f"{self.phase} {reduction} {self.data.encode().hex()}\n")


def pictures_in(stream):
    """The PBM pictures of the stream, one after the other. True is black."""
    while stream.readline():
        width, height = map(int, stream.readline().split())
        bits = numpy.frombuffer(stream.read((width + 7) // 8 * height), numpy.uint8)
        yield numpy.unpackbits(bits.reshape(height, -1), axis=1)[:, :width].astype(bool)


def drawn(program, codes):
    """The printed dots of the codes, in order."""
    with subprocess.Popen([program], stdin=subprocess.PIPE, stdout=subprocess.PIPE) as process:
        # The program writes while it reads.
        feeder = threading.Thread(target=feed, args=(process.stdin, codes))
        feeder.start()
        yield from pictures_in(process.stdout)
        feeder.join()
    if process.returncode != 0:
        raise SystemExit(f"{program} failed")


def feed(stream, codes):
    with stream:
        for code in codes:
            stream.write(code.line().encode())

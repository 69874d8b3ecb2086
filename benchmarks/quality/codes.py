"""The kinds of codes: their modules, and how they are drawn with lines and fills on a page."""
import dataclasses
import itertools

from reportlab.graphics.barcode.code128 import Code128
from reportlab.graphics.barcode.ecc200datamatrix import ECC200DataMatrix
from reportlab.graphics.barcode.qr import QrCodeWidget

BAR_HEIGHT = 32  # points


class SmallDataMatrix(ECC200DataMatrix):
    """20 x 20 modules, which hold a ticket's number; the package's own has 44 x 44."""

    def __init__(self, text):
        super().__init__(text)
        self.row_modules = self.col_modules = 20
        self.row_regions = self.col_regions = 1
        self.row_usable_modules = self.col_usable_modules = 18
        self.cw_data, self.cw_ecc = 22, 18

    def rows(self):
        """From the top."""
        self.validate()
        self.encode()
        return self.encoded[::-1]


def qr_modules(text):
    code = QrCodeWidget(text, barLevel="M").qr
    code.make()
    return code.modules


def runs(row):
    """(first column, number of columns) of each run of dark modules."""
    column = 0
    for is_dark, run in itertools.groupby(map(bool, row)):
        count = len(list(run))
        if is_dark:
            yield column, count
        column += count


@dataclasses.dataclass(frozen=True)
class Matrix:
    """Squares in rows. Each run of a row is one rectangle."""
    rows: list
    quiet: int  # modules on each side

    def size(self, module):
        side = (len(self.rows) + 2 * self.quiet) * module
        return side, side

    def draw(self, canvas, left, bottom, module):
        for number, row in enumerate(reversed(self.rows)):
            y = bottom + (self.quiet + number) * module
            for column, count in runs(row):
                x = left + (self.quiet + column) * module
                canvas.rect(x, y, count * module, module, stroke=0, fill=1)


@dataclasses.dataclass(frozen=True)
class Bars:
    """Code 128, drawn by the package."""
    text: str
    quiet: int = 10  # modules on each side

    def size(self, module):
        bars = Code128(self.text, barWidth=module, quiet=0)
        return bars.width + 2 * self.quiet * module, BAR_HEIGHT

    def draw(self, canvas, left, bottom, module):
        bars = Code128(self.text, barWidth=module, barHeight=BAR_HEIGHT, quiet=0)
        bars.drawOn(canvas, left + self.quiet * module, bottom)


@dataclasses.dataclass(frozen=True)
class Turned:
    """Another code, turned by a quarter."""
    code: object

    def size(self, module):
        return self.code.size(module)[::-1]

    def draw(self, canvas, left, bottom, module):
        canvas.saveState()
        canvas.translate(left + self.size(module)[0], bottom)
        canvas.rotate(90)
        self.code.draw(canvas, 0, 0, module)
        canvas.restoreState()


@dataclasses.dataclass(frozen=True)
class Kind:
    name: str
    scanner: str  # the symbology's name in scanners.py
    make: object  # text of 12 digits -> code


KINDS = (
    Kind("QR", "qrcode", lambda text: Matrix(qr_modules(f"HTTPS://TICKETS/{text}"), quiet=4)),
    Kind("Code 128", "code128", Bars),
    Kind("Code 128, turned", "code128", lambda text: Turned(Bars(text))),
    Kind("Data Matrix", "datamatrix", lambda text: Matrix(SmallDataMatrix(text).rows(), quiet=2)),
)

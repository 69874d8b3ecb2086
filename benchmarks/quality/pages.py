"""Pages full of codes or text, as PDF documents, and where each piece lies on its page."""
import dataclasses
import random

from reportlab.pdfbase.pdfmetrics import stringWidth
from reportlab.pdfgen.canvas import Canvas

import codes

MODULES = (0.7, 0.9, 1.2, 1.5, 2.0)  # points
TEXT_SIZES = (5, 6, 7, 8, 9, 10)  # points
POINTS_PER_INCH = 72
WIDTH = 12 * POINTS_PER_INCH
GAP = 6  # points between pieces


@dataclasses.dataclass(frozen=True)
class Piece:
    """A code or a block of text. The box is in points from the page's top left corner."""
    content: str
    left: float
    top: float
    width: float
    height: float

    def box(self, resolution):
        """(left, top, right, bottom) in dots, rounded outwards by half a dot or less."""
        edges = (self.left, self.top, self.left + self.width, self.top + self.height)
        return tuple(round(edge * resolution / POINTS_PER_INCH) for edge in edges)


@dataclasses.dataclass(frozen=True)
class Page:
    """A document of one page. Sides are whole inches, so that they are whole dots."""
    path: object
    inches: tuple
    pieces: dict  # key of a table's cell -> [Piece]

    def dots(self, resolution):
        return tuple(side * resolution for side in self.inches)


class Flow:
    """Places boxes in lines, from left to right and from the top."""

    def __init__(self):
        self.x = self.y = GAP
        self.line_height = 0

    def place(self, width, height):
        if self.x + width > WIDTH - GAP:
            self.y += self.line_height + GAP
            self.x, self.line_height = GAP, 0
        place = self.x, self.y
        self.x += width + GAP
        self.line_height = max(self.line_height, height)
        return place

    def inches(self):
        bottom = self.y + self.line_height + GAP
        return WIDTH // POINTS_PER_INCH, int(-(-bottom // POINTS_PER_INCH))


def draw_pieces(path, drawings, flow):
    """drawings: [(left, top, height, draw)]; draw gets the canvas, left and bottom."""
    inches = flow.inches()
    height = inches[1] * POINTS_PER_INCH
    canvas = Canvas(str(path), pagesize=(WIDTH, height), invariant=1)
    for left, top, piece_height, draw in drawings:
        draw(canvas, left, height - top - piece_height)
    canvas.save()
    return inches


def ticket_number(chance):
    return "".join(chance.choice("0123456789") for _ in range(12))


def code_page(path, kind, positions, seed, modules=MODULES):
    """Codes of all module widths, `positions` of each, at random places between the dots."""
    chance = random.Random(f"{seed} {kind.name}")
    flow, drawings, pieces = Flow(), [], {}
    for module in modules:
        for _ in range(positions):
            text = ticket_number(chance)
            code = kind.make(text)
            width, height = code.size(module)
            left, top = flow.place(width + 1, height + 1)
            left, top = left + chance.random(), top + chance.random()
            drawings.append((left, top, height, drawer(code, module)))
            pieces.setdefault(module, []).append(Piece(text, left, top, width, height))
    return Page(path, draw_pieces(path, drawings, flow), pieces)


def drawer(code, module):
    return lambda canvas, left, bottom: code.draw(canvas, left, bottom, module)


# Standard faces that documents need not embed.
FACES = {"sans": "Helvetica", "serif": "Times-Roman"}
COLUMN_WIDTH = 210  # points
LINES = 6
WORDS = (
    "admission evening concert balcony row seat entrance door price ticket valid only once date "
    "August Friday quarter past seven programme interval stage orchestra gallery left right upper "
    "lower please keep this until the performance ends children under twelve half box office opens "
    "Monday Zurich Quebec 2031 1845 19.30 price paid 47.50 order 60321 refunds excluded"
).split()


def text_lines(chance, face, size):
    """Lines of words, each as wide as fits into a column."""
    lines, line = [], ""
    while len(lines) < LINES:
        longer = f"{line} {chance.choice(WORDS)}".strip()
        if stringWidth(longer, face, size) > COLUMN_WIDTH:
            lines.append(line)
            longer = longer.rsplit(" ", 1)[1]
        line = longer
    return lines


def text_page(path, seed, faces=tuple(FACES), sizes=TEXT_SIZES):
    """A block of lines for each face and size."""
    flow, drawings, pieces = Flow(), [], {}
    for face in faces:
        for size in sizes:
            chance = random.Random(f"{seed} text {size}")
            lines = text_lines(chance, FACES[face], size)
            width, height = COLUMN_WIDTH + 2 * GAP, 1.4 * size * LINES + 2 * GAP
            left, top = flow.place(width, height)
            left, top = left + chance.random() / 2, top + chance.random() / 2
            drawings.append((left, top, height, text_drawer(lines, FACES[face], size, height)))
            pieces[face, size] = [Piece("\n".join(lines), left, top, width, height)]
    return Page(path, draw_pieces(path, drawings, flow), pieces)


def text_drawer(lines, face, size, height):
    def draw(canvas, left, bottom):
        canvas.setFont(face, size)
        for number, line in enumerate(lines):
            canvas.drawString(left + GAP, bottom + height - GAP - 1.4 * size * number - size, line)
    return draw

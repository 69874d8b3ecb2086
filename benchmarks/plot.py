"""Draws the time per dot over the number of dots, as SVG."""
import math

WIDTH, HEIGHT = 800, 420
LEFT, RIGHT, TOP, BOTTOM = 70, 30, 56, 60
INK, GRID, LINE, BAND = "#1c1c1c", "#dddddd", "#0b62a4", "#e3eef7"


def place(points):
    """The place of a number of millions of dots and a time in the picture."""
    most = max(x for x, _ in points)
    top = nice_top(max(y for _, y in points))
    decades = math.log10(most) or 1

    def across(x):
        return LEFT + (WIDTH - LEFT - RIGHT) * math.log10(max(x, 1)) / decades

    def down(y):
        return HEIGHT - BOTTOM - (HEIGHT - TOP - BOTTOM) * y / top

    return across, down, top


def nice_top(value):
    """The scale's end: a little above the value, at a round number."""
    step = nice_step(value)
    return step * (math.floor(value / step) + 1)


def nice_step(value):
    power = 10 ** math.floor(math.log10(value))
    for part in (0.1, 0.2, 0.5, 1):
        if value / (part * power) <= 8:
            return part * power
    return 2 * power


def text(x, y, content, anchor="middle", extra=""):
    return (f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" fill="{INK}"{extra}>'
            f"{content}</text>")


def line(x1, y1, x2, y2, colour):
    return f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" stroke="{colour}"/>'


def axes(points, across, down, top):
    step = nice_step(top)
    floor, right = down(0), WIDTH - RIGHT
    for tick in range(round(top / step) + 1):
        y = tick * step
        yield line(LEFT, down(y), right, down(y), GRID)
        yield text(LEFT - 8, down(y) + 5, f"{y:.3g}", "end")
    for x, _ in points:
        yield line(across(x), floor, across(x), floor + 5, INK)
        yield text(across(x), floor + 21, f"{x:.0f}")
    yield line(LEFT, floor, right, floor, INK)
    yield line(LEFT, TOP, LEFT, floor, INK)
    yield text((LEFT + right) / 2, HEIGHT - 14, "million dots (logarithmic)")
    middle = (TOP + floor) / 2
    yield text(20, middle, "nanoseconds per dot", extra=f' transform="rotate(-90 20 {middle:.1f})"')


def growth_svg(points, allowed):
    """points: (millions of dots, nanoseconds per dot), fewest dots first. The shaded band reaches
    from the fastest to `allowed` times that."""
    across, down, top = place(points)
    least = min(y for _, y in points)
    upper = down(min(least * allowed, top))
    path = " ".join(f"{across(x):.1f},{down(y):.1f}" for x, y in points)
    parts = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" width="{WIDTH}"'
        f' height="{HEIGHT}" font-family="sans-serif" font-size="14">',
        "<title>Time per dot against the number of dots</title>",
        f'<rect width="{WIDTH}" height="{HEIGHT}" fill="#ffffff"/>',
        f'<rect x="{LEFT}" y="{upper:.1f}" width="{WIDTH - LEFT - RIGHT}"'
        f' height="{down(least) - upper:.1f}" fill="{BAND}"/>',
        text(LEFT, 24, "From a picture at one pixel a point to the printer's bytes", "start",
             ' font-size="16" font-weight="bold"'),
        text(LEFT, 44, f"shaded: up to {(allowed - 1) * 100:.0f} % above the fastest", "start"),
        *axes(points, across, down, top),
        f'<polyline points="{path}" fill="none" stroke="{LINE}" stroke-width="2.5"/>',
        *(f'<circle cx="{across(x):.1f}" cy="{down(y):.1f}" r="4" fill="{LINE}"/>'
          for x, y in points),
        "</svg>",
    ]
    return "\n".join(parts) + "\n"

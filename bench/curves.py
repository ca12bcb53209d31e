"""Draws the growth curves as one SVG image, growth.svg, and prints how fast each one grows.

Argument: the folder of the results of growth_bench, where the image is written.
"""

import math
import pathlib
import sys

from results import load_minima, print_goals, print_table

# Name of the curve, title, unit of the sizes.
CURVES = [
    ("message", "A message taken by letters", "bytes in the message"),
    ("line", "A message taken by eol", "bytes in the message"),
    ("elements", "Elements that take one byte each", "elements"),
    ("captures", "Captures of one digit each", "captures"),
    ("messages", "Messages in one delivery", "messages"),
    ("delivery", "A delivery, 19 bytes per message", "bytes delivered"),
    ("compile", "Compiling", "bytes in the parsing string"),
    ("failing", "Compiling, error in the last byte", "bytes in the parsing string"),
    ("outputs", "Rebuilding the outputs", "outputs"),
]
EXPONENT_GOAL = 1.05

COLUMNS = 3
PANEL_WIDTH, PANEL_HEIGHT = 300, 240
LEFT, RIGHT, TOP, BOTTOM = 62, 16, 34, 46
INK, FAINT, LINE = "#222", "#ddd", "#1f5fa8"


def exponent(points):
    """Returns the slope of the logarithms, by least squares over the upper half of the points."""
    upper = [(math.log(x), math.log(y)) for x, y in points[len(points) // 2:]]
    mean_x = sum(x for x, _ in upper) / len(upper)
    mean_y = sum(y for _, y in upper) / len(upper)
    return (sum((x - mean_x) * (y - mean_y) for x, y in upper)
            / sum((x - mean_x) ** 2 for x, _ in upper))


def count_text(value):
    """Returns a size as text."""
    for limit, suffix in ((1e6, "M"), (1e3, "k")):
        if value >= limit:
            return f"{value / limit:g}{suffix}"
    return f"{value:g}"


def time_text(nanoseconds):
    """Returns a time as text, with its unit."""
    for limit, unit in ((1e9, "s"), (1e6, "ms"), (1e3, "µs")):
        if nanoseconds >= limit:
            return f"{nanoseconds / limit:g} {unit}"
    return f"{nanoseconds:g} ns"


def text(x, y, content, anchor="middle", size=11, weight="normal"):
    """Returns a text as SVG."""
    return (f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" font-size="{size}" '
            f'font-weight="{weight}" fill="{INK}">{content}</text>')


def line(x1, y1, x2, y2, style):
    """Returns a line as SVG."""
    return f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" {style}/>'


class Axis:
    """A logarithmic axis of whole decades, from start to end in pixels."""

    def __init__(self, values, start, end):
        self.low = math.floor(math.log10(min(values)) + 1e-9)
        self.high = max(math.ceil(math.log10(max(values)) - 1e-9), self.low + 1)
        self.start, self.end = start, end

    def place(self, value):
        """Returns the pixel of a value."""
        share = (math.log10(value) - self.low) / (self.high - self.low)
        return self.start + share * (self.end - self.start)

    def ticks(self):
        """Returns the powers of ten on the axis."""
        return [10.0 ** power for power in range(self.low, self.high + 1)]


def panel(left, top, title, unit, points):
    """Returns the parts of one curve as SVG."""
    x = Axis([p[0] for p in points], left + LEFT, left + PANEL_WIDTH - RIGHT)
    y = Axis([p[1] for p in points], top + PANEL_HEIGHT - BOTTOM, top + TOP)
    parts = [text(x.start, top + 18, title, "start", 13, "bold")]
    for tick in x.ticks():
        parts.append(line(x.place(tick), y.start, x.place(tick), y.end, f'stroke="{FAINT}"'))
        parts.append(text(x.place(tick), y.start + 15, count_text(tick)))
    for tick in y.ticks():
        parts.append(line(x.start, y.place(tick), x.end, y.place(tick), f'stroke="{FAINT}"'))
        parts.append(text(x.start - 6, y.place(tick) + 4, time_text(tick), "end"))
    parts.append(text((x.start + x.end) / 2, y.start + 33, unit))

    # A line of exactly linear growth through the last point, as far as it is in the panel.
    last_x, last_y = points[-1]
    first_x = max(points[0][0], last_x * 10.0 ** y.low / last_y)
    parts.append(line(x.place(first_x), y.place(last_y * first_x / last_x), x.place(last_x),
                      y.place(last_y), f'stroke="{INK}" stroke-dasharray="3 4"'))
    places = [(x.place(a), y.place(b)) for a, b in points]
    parts.append(f'<polyline fill="none" stroke="{LINE}" stroke-width="2" points="'
                 + " ".join(f"{a:.1f},{b:.1f}" for a, b in places) + '"/>')
    parts += [f'<circle cx="{a:.1f}" cy="{b:.1f}" r="3" fill="{LINE}"/>' for a, b in places]
    parts.append(text(x.end - 6, y.start - 8, f"exponent {exponent(points):.2f}", "end", 12))
    return parts


def picture(curves):
    """Returns the image of all curves."""
    rows = math.ceil(len(curves) / COLUMNS)
    width, height = COLUMNS * PANEL_WIDTH, rows * PANEL_HEIGHT + 30
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" '
             f'width="{width}" height="{height}" font-family="sans-serif">',
             f'<rect width="{width}" height="{height}" fill="white"/>']
    for i, (title, unit, points) in enumerate(curves):
        parts += panel(i % COLUMNS * PANEL_WIDTH, i // COLUMNS * PANEL_HEIGHT, title, unit, points)
    parts.append(text(LEFT, height - 10, "Processor time against size, both logarithmic. Dashed: "
                      "linear growth. Exponent: fitted to the upper half of the sizes.", "start"))
    return "\n".join(parts + ["</svg>"]) + "\n"


def load_points(runs, name):
    """Returns the points of a curve: size and nanoseconds."""
    return sorted((int(run.split("/")[1]), runs[run]["cpu_time"])
                  for run in runs if run.startswith(name + "/"))


def print_growth(curves):
    """Prints the growth of each curve, and its goal."""
    rows = []
    for title, unit, points in curves:
        (low, least), (high, most) = points[0], points[-1]
        rows.append([title, f"{low} to {high} {unit}", f"{least / low:.3g}", f"{most / high:.3g}",
                     f"{exponent(points):.2f}"])
    print("Growth: ns for each of the units at the smallest and at the largest size, and the")
    print("exponent of the curve (1 is linear).\n")
    print_table(["curve", "sizes", "ns, first", "ns, last", "exponent"], rows)
    print_goals([(f"exponent: {title}", exponent(points), EXPONENT_GOAL)
                 for title, _, points in curves])


def print_deliveries(points):
    """Prints what a message costs by the number of messages in its delivery."""
    print("\nns per message, by the number of messages in a delivery:\n")
    print_table(["messages", *(str(size) for size, _ in points)],
                [["ns", *(f"{time / size:.1f}" for size, time in points)]])


def main(folder):
    """Writes the image and prints the tables."""
    runs = load_minima(folder, "growth_bench")
    points = {name: load_points(runs, name) for name, _, _ in CURVES}
    curves = [(title, unit, points[name]) for name, title, unit in CURVES]
    target = folder / "growth.svg"
    target.write_text(picture(curves), encoding="utf-8")
    print_growth(curves)
    print_deliveries(points["messages"])
    print(f"\nThe curves: {target}")


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]))

"""Reads the results of the benchmarks, and prints tables and goals."""

import json


def load_minima(folder, program):
    """Returns the fastest run of each benchmark of a program by name, over all rounds."""
    runs = {}
    for path in sorted(folder.glob(f"{program}.*.json")):
        for run in json.loads(path.read_text())["benchmarks"]:
            if run["run_type"] != "iteration":
                continue
            name = run["run_name"]
            if run.get("error_occurred"):
                raise SystemExit(f"{program}: {name}: {run['error_message']}")
            if name not in runs or run["cpu_time"] < runs[name]["cpu_time"]:
                runs[name] = run
    if not runs:
        raise SystemExit(f"There are no results of {program} in {folder}.")
    return runs


def print_table(header, rows):
    """Prints a table. Its first column is aligned to the left, the others to the right."""
    table = [header] + rows
    widths = [max(map(len, column)) for column in zip(*table)]
    for first, *others in table:
        cells = [first.ljust(widths[0])]
        cells += [cell.rjust(width) for cell, width in zip(others, widths[1:])]
        print("  ".join(cells).rstrip())


def figure_text(figure):
    """Returns a figure as it is printed and compared with its goal; a missing one is None."""
    return "-" if figure is None else f"{figure:.3g}"


def verdict(figure, goal):
    """Returns whether a figure, as it is printed, is at most its goal."""
    if figure is None:
        return "not measured"
    return "met" if float(figure_text(figure)) <= float(figure_text(goal)) else "NOT MET"


def print_goals(goals):
    """goals: for each goal its name, the figure and the most that the figure may be."""
    print()
    print_table(["goal", "figure", "at most", ""],
                [[name, figure_text(figure), figure_text(goal), verdict(figure, goal)]
                 for name, figure, goal in goals])

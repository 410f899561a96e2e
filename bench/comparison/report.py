"""Medians and ratios, the tables that show them, and the targets that they are compared with."""

import math
import statistics


def text(number):
    """Three digits that mean something."""
    return f"{number:,.0f}" if abs(number) >= 100 else f"{number:#.3g}".rstrip(".")


def median(numbers):
    return text(statistics.median(numbers))


def quartiles(numbers):
    low, _, high = statistics.quantiles(numbers, n=4, method="inclusive")
    return f"{text(low)} to {text(high)}"


def ratios(ours, theirs):
    """Of figures of the same round: a slow moment of the machine slows both."""
    return [our / their for our, their in zip(ours, theirs, strict=True)]


def powers(sizes, small, large):
    """The power of the size by which a figure grows: 1 is linear, 2 quadratic."""
    return [math.log(b / a) / math.log(sizes[1] / sizes[0])
            for a, b in zip(small, large, strict=True)]


class Report:
    """Prints tables in Markdown and collects what is wrong with them."""

    def __init__(self, judges_times):
        self._judges_times = judges_times
        self.errors = []

    def at_most(self, limit, what, figures):
        """The cell that compares the median with a target."""
        if not self._judges_times:
            return f"{limit:g}"
        is_met = statistics.median(figures) <= limit
        if not is_met:
            self.errors.append(f"{what}: {median(figures)}, at most {limit:g} required")
        return f"{limit:g}, {'met' if is_met else 'missed'}"

    @staticmethod
    def table(title, headings, rows):
        """Columns whose heading ends with ":" are aligned to the right."""
        right = [heading.endswith(":") for heading in headings]
        rows = [[heading.rstrip(":") for heading in headings], *rows]
        widths = [max(3, *map(len, column)) for column in zip(*rows, strict=True)]
        rule = ["-" * (width - is_right) + ":" * is_right
                for width, is_right in zip(widths, right)]
        print(f"\n## {title}\n")
        for row in [rows[0], rule, *rows[1:]]:
            cells = [cell.rjust(width) if is_right else cell.ljust(width)
                     for cell, width, is_right in zip(row, widths, right)]
            print(f"| {' | '.join(cells)} |", flush=True)

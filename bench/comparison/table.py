"""Rows as one table of text, and as JSON."""

import json
from dataclasses import asdict

HEADINGS = ["measurement", "reader", "median", "quartiles", "unit", "directories", "entries",
            "refused", "veltrace/it", "quartiles", "target", ""]
RIGHT_ALIGNED = {2, 5, 6, 7, 8, 10}


def text_of(rows):
    """One line for each row; a heading where another section begins."""
    cells = [cells_of(row) for row in rows]
    widths = [max(map(len, column)) for column in zip(HEADINGS, *cells)]
    lines = [line_of(HEADINGS, widths), line_of(["-" * width for width in widths], widths)]
    section = measurement = None
    for row, texts in zip(rows, cells):
        if row.section != section:
            lines.append(f"{row.section.upper()}")
        elif row.measurement == measurement:
            texts = ["", *texts[1:]]
        section, measurement = row.section, row.measurement
        lines.append(line_of(texts, widths))
    return "\n".join(lines) + "\n"


def cells_of(row):
    figure, ratio = row.figure, row.ratio
    return [
        row.measurement,
        row.reader,
        number(figure.median),
        spread(figure),
        row.unit,
        count(row.directories),
        count(row.entries),
        count(row.refused or None),
        number(ratio.median) if ratio else "",
        spread(ratio) if ratio else "",
        f"{row.target}" if row.target else "",
        {None: "", True: "met", False: "missed"}[row.is_met],
    ]


def spread(sample):
    return f"{number(sample.low)} to {number(sample.high)}"


def number(value):
    """Three digits that mean something."""
    return f"{value:.0f}" if abs(value) >= 100 else f"{value:#.3g}".rstrip(".")


def count(value):
    return "" if value is None else str(value)


def line_of(texts, widths):
    aligned = [text.rjust(width) if column in RIGHT_ALIGNED else text.ljust(width)
               for column, (text, width) in enumerate(zip(texts, widths))]
    return "  ".join(aligned).rstrip()


def json_of(machine, rows):
    """Everything that was measured, so that a document can be held against it."""
    return json.dumps({"machine": machine, "rows": [record_of(row) for row in rows]}, indent=1)


def record_of(row):
    return asdict(row) | {
        "figure": asdict(row.figure),
        "ratio": asdict(row.ratio) if row.ratio else None,
        "met": row.is_met,
    }

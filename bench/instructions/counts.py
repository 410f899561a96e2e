"""Counted instructions, held against the record of them.

The record is a JSON object: name of a scenario -> instructions. Counts are such objects too.
"""

import json
from dataclasses import dataclass

# How much more may be due to nothing in particular, such as where the linker puts functions.
TOLERATED_PERCENT = 3


class BadRecord(Exception):
    pass


def is_count(number):
    return isinstance(number, int) and not isinstance(number, bool) and number > 0


def read_record(path):
    try:
        record = json.loads(path.read_text())
    except (OSError, ValueError) as error:
        raise BadRecord(f"{path} cannot be read: {error}") from error
    if not isinstance(record, dict) or not all(map(is_count, record.values())):
        raise BadRecord(f"{path} is not an object of scenarios and their instructions")
    return record


def write_record(path, counts):
    path.write_text(json.dumps(counts, indent=2, sort_keys=True) + "\n")


@dataclass(frozen=True)
class Change:
    """One scenario; a count that there is not is None."""

    scenario: str
    recorded: int | None
    now: int | None

    @property
    def percent(self):
        if self.recorded is None or self.now is None:
            return None
        return 100 * (self.now - self.recorded) / self.recorded

    @property
    def fault(self):
        """Why the check fails, or None."""
        if self.recorded is None:
            return f"{self.scenario} is not in the record"
        if self.now is None:
            return f"{self.scenario} is in the record and no scenario"
        if 100 * self.now > (100 + TOLERATED_PERCENT) * self.recorded:
            return f"{self.scenario} grew by more than {TOLERATED_PERCENT} %"
        return None

    @property
    def is_fall(self):
        return not self.fault and 100 * self.now < (100 - TOLERATED_PERCENT) * self.recorded


def changes(record, counts):
    return [Change(scenario, record.get(scenario), counts.get(scenario))
            for scenario in sorted({*record, *counts})]


def table(rows):
    """The changes as lines of text."""
    def cell(number):
        return "-" if number is None else f"{number:,}"

    def percent(change):
        return "-" if change.percent is None else f"{change.percent:+.2f} %"

    cells = [("scenario", "recorded", "now", "change"),
             *((row.scenario, cell(row.recorded), cell(row.now), percent(row)) for row in rows)]
    widths = [max(map(len, column)) for column in zip(*cells)]
    return "\n".join(
        "  ".join([row[0].ljust(widths[0]),
                   *(text.rjust(width) for text, width in zip(row[1:], widths[1:]))])
        for row in cells)

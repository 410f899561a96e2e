"""Lists of known gaps, each with its reason.

A list is a text file of groups: lines `FILE: WHAT`, then an indented reason that holds for all of
them. `#` begins a comment line. The same line stands in the list as often as the gap occurs.
"""

from collections import Counter


class BadList(Exception):
    pass


def read(path):
    """The gaps of a list as (file, what) -> number of times, and -> reason."""
    counts, reasons = Counter(), {}
    group, reason = [], []

    def close():
        if group and not reason:
            raise BadList(f"{path}: no reason for {group[0]}")
        for gap in group:
            counts[gap] += 1
            reasons[gap] = " ".join(reason)
        group.clear()
        reason.clear()

    for number, line in enumerate(path.read_text().splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        if line[0].isspace():
            reason.append(line.strip())
            continue
        if reason:
            close()
        file, colon, what = line.partition(": ")
        if not colon:
            raise BadList(f"{path}:{number}: not FILE: WHAT")
        group.append((file, what.strip()))
    close()
    return counts, reasons

"""How a prediction and a reading differ, in words."""

import itertools
import struct


def differences(expected, found):
    """One sentence for each place where they differ; nothing when they are equal, to the bit."""
    if expected == found:
        return []
    lines = []
    for part in ("error", "warnings", "misuses", "leftovers"):
        compare(lines, part, expected[part], found[part])
    compare(lines, "output", expected["output"], found["output"])
    return lines


def compare(lines, place, expected, found):
    if expected == found:
        return
    if isinstance(expected, dict) and isinstance(found, dict):
        compare_values(lines, place, expected, found)
    elif isinstance(expected, list) and isinstance(found, list):
        compare_lists(lines, place, expected, found)
    else:
        lines.append(f"{place}: expected {shown(expected)}, the module has {shown(found)}")


def compare_values(lines, place, expected, found):
    if expected.get("fields") != found.get("fields") or expected["class"] != found["class"]:
        lines.append(f"{place}: expected {shown(expected)}, the module has {shown(found)}")
        return
    compare(lines, f"dimensions of {place}", expected["dimensions"], found["dimensions"])
    if expected["class"] == "struct":
        elements = zip(expected["elements"], found["elements"])
        for index, (here, there) in enumerate(elements):
            for field, one, other in zip(expected["fields"], here, there):
                compare(lines, f"{place}[{index}].{field}", one, other)
    elif expected["class"] == "cell":
        compare_lists(lines, place, expected["cells"], found["cells"])
    elif shown(expected) != shown(found):
        lines.append(f"{place}: expected {shown(expected)}, the module has {shown(found)}")
    else:  # NaNs of different bits look alike.
        one, other = expected["bits"], found["bits"]
        lines.append(f"{place}: expected the bits {one}, the module has {other}")


def compare_lists(lines, place, expected, found):
    for index, (one, other) in enumerate(itertools.zip_longest(expected, found)):
        compare(lines, f"{place}[{index}]", one, other)


def shown(value):
    """A value as a person reads it."""
    if not isinstance(value, dict):
        return "nothing" if value is None else repr(value)
    size = " x ".join(map(str, value["dimensions"]))
    if value["class"] == "double":
        numbers = struct.unpack(f">{len(value['bits']) // 16}d", bytes.fromhex(value["bits"]))
        return f"{size} double {list(numbers)}"
    if value["class"] == "char":
        return f"{size} char {bytes.fromhex(value['units']).decode('utf-16-be')!r}"
    if value["class"] == "struct":
        return f"{size} struct of {', '.join(value['fields'])}"
    return f"{size} cell"

"""Shows which lines and branches of module/ the last run of linked-tests reached.

Usage: coverage.py ROOT PROGRAM

The run has left its profile beside the program, as PROGRAM.profraw. Fails when too little is
reached, when a line that is not reached is not in not_reached.txt, and when a line of that list is
reached or gone.
"""

import json
import pathlib
import subprocess
import sys
from collections import Counter

import argued

MIN_PERCENT = {"lines": 99.0, "branches": 95.0}
LIST = pathlib.Path(__file__).with_name("not_reached.txt")


def tool(name):
    """The version that belongs to Debian 12's clang, whatever else is installed."""
    return f"{name}-14"


def merged_profile(program):
    raw, profile = (program.with_suffix(end) for end in (".profraw", ".profdata"))
    if raw.stat().st_mtime < program.stat().st_mtime:
        raise SystemExit(f"coverage: {raw} is older than {program}")
    subprocess.run([tool("llvm-profdata"), "merge", "-o", profile, raw], check=True)
    return profile


def lines_not_reached(lcov, root):
    """(file, line number, text) of each line with code that never ran; and all files with code."""
    gaps, files, path = [], set(), None
    for record in lcov.splitlines():
        key, _, value = record.partition(":")
        if key == "SF":
            path = pathlib.Path(value)
            text = path.read_text().splitlines()
            files.add(path.relative_to(root).as_posix())
        elif key == "DA":
            line, count = map(int, value.split(",")[:2])
            if count == 0:
                gaps.append((path.relative_to(root).as_posix(), line, text[line - 1].strip()))
    return gaps, files


def list_errors(gaps):
    """Prints each gap with its reason; returns where the list and the gaps differ."""
    listed, reasons = argued.read(LIST)
    left = Counter(listed)
    errors = []
    print("\nLines that no test reaches:" if gaps else "\nThe tests reach every line.")
    why = [reasons.get((file, text), "NO REASON GIVEN") for file, _, text in gaps]
    for (file, line, text), reason, following in zip(gaps, why, [*why[1:], None]):
        print(f"  {file}:{line}: {text}")
        if reason != following:
            print(f"      {reason}")
        if left[file, text] > 0:
            left[file, text] -= 1
        else:
            errors.append(f"{file}:{line} is not reached and not in {LIST.name}: {text}")
    for (file, text), count in left.items():
        if count > 0:
            errors.append(f"{LIST.name} lists a line that is reached or gone: {file}: {text}")
    return errors


def main(root, program):
    root, program = pathlib.Path(root).resolve(), pathlib.Path(program).resolve()
    sources = [program, f"-instr-profile={merged_profile(program)}", root / "module"]

    def cov(command, *options):
        return subprocess.run([tool("llvm-cov"), command, *options, *sources], check=True,
                              stdout=subprocess.PIPE, text=True).stdout

    print(cov("report", "--show-branch-summary", "--show-region-summary=false"))
    gaps, files = lines_not_reached(cov("export", "-format=lcov"), root)
    errors = list_errors(gaps)

    totals = json.loads(cov("export", "-format=text", "-summary-only"))["data"][0]["totals"]
    for kind, minimum in MIN_PERCENT.items():
        percent = totals[kind]["percent"]
        print(f"{kind}: {percent:.2f} % reached, at least {minimum:g} % required")
        if percent < minimum:
            errors.append(f"too few {kind} reached")
    # A source that is not in the program has no lines to miss.
    units = {unit.relative_to(root).as_posix() for unit in (root / "module").rglob("*.cpp")}
    errors += [f"{unit} is not in the program" for unit in sorted(units - files)]

    for error in errors:
        print(f"coverage: {error}", file=sys.stderr)
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))

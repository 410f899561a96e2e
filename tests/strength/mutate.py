"""Makes small changes to module/, each alone, and tells whether linked-tests notice them.

A change that no test notices "survives". It shows a missing test, or it changes nothing that can
be seen; those stand with their reasons in survivors.txt. Fails when a survivor is not in that
list or too many survive.
"""

import argparse
import json
import pathlib
import random
import sys
import tempfile
from collections import Counter, defaultdict
from concurrent.futures import ThreadPoolExecutor
from itertools import zip_longest

import argued
import sites
import trial

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = ROOT / "build" / "mutation"
SURVIVORS = BUILD / "survivors.json"
LIST = pathlib.Path(__file__).with_name("survivors.txt")
LEAST_KILLED_PERCENT = 95.0


def arguments():
    parser = argparse.ArgumentParser(prog="scripts/prove mutants", description=__doc__)
    parser.add_argument("--count", type=int, default=330, help="compiled changes (%(default)s)")
    parser.add_argument("--seed", type=int, default=1, help="of the choice (%(default)s)")
    parser.add_argument("--jobs", type=int, default=2, help="at a time (%(default)s)")
    parser.add_argument("--only", metavar="FILE", help="change this file of module/ only")
    parser.add_argument("--again", action="store_true", help="only the last run's survivors")
    parser.add_argument("--list", action="store_true", help="print the changes, try none")
    return parser.parse_args()


def candidates(only, seed):
    """Of each file, every change in the order in which they are tried, operators in turn."""
    choice = random.Random(seed)
    of_file = {}
    for path in sorted((ROOT / "module").rglob("*")):
        file = path.relative_to(ROOT).as_posix()
        if path.suffix not in (".h", ".cpp") or only not in (None, file):
            continue
        of_operator = defaultdict(list)
        for mutant in sites.mutants_of(file, path.read_text()):
            of_operator[mutant.operator].append(mutant)
        for mutants in of_operator.values():
            choice.shuffle(mutants)
        turns = list(of_operator.values())
        choice.shuffle(turns)
        mixed = [mutant for turn in zip_longest(*turns) for mutant in turn if mutant]
        if mixed:
            of_file[file] = mixed
    return of_file


def shares(of_file, count):
    """How many changes each file gets: by its number of lines, but none gets nothing."""
    lines = {file: len((ROOT / file).read_text().splitlines()) for file in of_file}
    total = sum(lines.values())
    return {file: min(len(of_file[file]), max(1, round(count * lines[file] / total)))
            for file in of_file}


def tried(program, mutants, jobs):
    """(mutant, fate) of each, in order."""
    def attempt(mutant):
        text = (ROOT / mutant.file).read_text()
        with tempfile.TemporaryDirectory(dir=BUILD) as work:
            fate = program.try_change(mutant.file, mutant.apply(text), pathlib.Path(work))
        print(f"{fate or 'survived':12}  {where(mutant)}  {mutant.what}", flush=True)
        return mutant, fate or "survived"

    with ThreadPoolExecutor(jobs) as pool:
        return list(pool.map(attempt, mutants))


def chosen_and_tried(program, of_file, count, jobs):
    """Tries changes until each file has its share of those that compile."""
    wanted, fates = shares(of_file, count), []
    queues = {file: iter(mutants) for file, mutants in of_file.items()}
    while batch := [mutant for file, queue in queues.items()
                    for _, mutant in zip(range(wanted[file]), queue)]:
        for mutant, fate in tried(program, batch, jobs):
            fates.append((mutant, fate))
            wanted[mutant.file] -= fate != "not compiled"
    return fates


def where(mutant):
    return f"{mutant.file}:{mutant.line}"


def listed_as(mutant):
    line = (ROOT / mutant.file).read_text().splitlines()[mutant.line - 1].strip()
    return mutant.file, f"{line} [{mutant.what}]"


def complaints(fates):
    """Prints how many changes died how, and each survivor; returns what is wrong with that."""
    by_fate = Counter(fate for _, fate in fates)
    alive = [mutant for mutant, fate in fates if fate == "survived"]
    compiled = len(fates) - by_fate["not compiled"]
    killed = compiled - len(alive)
    _, reasons = argued.read(LIST)

    print("\n" + ", ".join(f"{count} {fate}" for fate, count in by_fate.most_common()))
    print(f"{killed} of {compiled} killed ({100 * killed / max(compiled, 1):.1f} %)")
    wrong = []
    for mutant in alive:
        file, what = listed_as(mutant)
        print(f"{file}: {what}\n      {reasons.get((file, what), 'NO REASON GIVEN')}")
        if (file, what) not in reasons:
            wrong.append(f"{where(mutant)} survives and is not in {LIST.name}: {mutant.what}")
    for mutant, fate in fates:
        if fate not in ("survived", "not compiled") and listed_as(mutant) in reasons:
            wrong.append(f"{LIST.name} says that this survives: {where(mutant)} {mutant.what}")
    if 100 * killed < LEAST_KILLED_PERCENT * compiled:
        wrong.append("too many survive")
    return wrong


def main():
    options = arguments()
    of_file = candidates(options.only, options.seed)
    if options.list:
        for file, count in shares(of_file, options.count).items():
            for mutant in of_file[file][:count]:
                print(f"{where(mutant)}  {mutant.what}")
        return 0

    BUILD.mkdir(parents=True, exist_ok=True)
    program = trial.Program(ROOT, BUILD)
    if options.again:
        last = [sites.Mutant(**fields) for fields in json.loads(SURVIVORS.read_text())]
        fates = tried(program, last, options.jobs)
    else:
        fates = chosen_and_tried(program, of_file, options.count, options.jobs)
    alive = [vars(mutant) for mutant, fate in fates if fate == "survived"]
    SURVIVORS.write_text(json.dumps(alive, indent=1))
    wrong = complaints(fates)
    for complaint in wrong:
        print(f"mutate: {complaint}", file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())

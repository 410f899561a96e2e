"""Programs that are given thousands of small files at once."""

import subprocess
import time

from comparison.bench_readers import Failed
from comparison.figures import Row

SECTION = "batch"
MOST_FOR_EXIFTOOL = 200


def rows(build, folder, rounds):
    """Files per second, in rounds in which the programs take turns."""
    names = sorted(file.name for file in folder.iterdir())
    veltrace = [str(build / "veltrace"), "--ndjson", "-j"]
    programs = {
        "veltrace -j 1": [*veltrace, "1", *names],
        "veltrace -j 2": [*veltrace, "2", *names],
        "one process": [*veltrace, "1", "--isolation", "off", *names],
        "tiffdump": ["tiffdump", *names],
        "tiffinfo": ["tiffinfo", *names],
        "exiv2": ["exiv2", "-pa", *names],
        "exiftool": ["exiftool", *names[:MOST_FOR_EXIFTOOL]],
    }
    counts = {program: len(names) for program in programs}
    counts["exiftool"] = min(len(names), MOST_FOR_EXIFTOOL)
    speeds = {program: [] for program in programs}
    for round_number in range(rounds + 1):
        for program, command in programs.items():
            seconds = time_of(command, folder)
            if round_number > 0:  # the first warms up
                speeds[program].append(counts[program] / seconds)
    return rows_of(speeds)


def rows_of(speeds):
    one, two = speeds["veltrace -j 1"], speeds["veltrace -j 2"]
    result = []
    for program, figures in speeds.items():
        if program != "veltrace -j 2":
            result.append(Row(SECTION, "one worker", program, "files/s", figures,
                              ours=one if program != "veltrace -j 1" else []))
    result.append(Row(SECTION, "two workers", "veltrace -j 2", "files/s", two))
    result.append(Row(SECTION, "two workers", "veltrace -j 1", "files/s", one, ours=two))
    return result


def time_of(command, folder):
    start = time.perf_counter()
    done = subprocess.run(command, cwd=folder, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL, check=False)
    seconds = time.perf_counter() - start
    if done.returncode != 0:
        raise Failed(f"{command[0]} ended with {done.returncode} over {folder}")
    return seconds

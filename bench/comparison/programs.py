"""Whole processes: one file each, and thousands of small files at once."""

import os
import subprocess
import time

from comparison.report import median, quartiles, ratios

MAX_FILES_OF_EXIFTOOL = 200  # it is a hundred times slower
TO_NULL = [(os.POSIX_SPAWN_OPEN, descriptor, os.devnull, os.O_RDWR, 0) for descriptor in (0, 1, 2)]


class Failed(Exception):
    """Something could not be run."""


def run(*command, **settings):
    """Runs a program and returns what it printed."""
    try:
        done = subprocess.run([str(word) for word in command], capture_output=True, text=True,
                              check=False, **settings)
    except OSError as error:
        raise Failed(f"{command[0]} cannot be run: {error}") from error
    if done.returncode != 0:
        raise Failed(f"{command[0]}: exit status {done.returncode}\n{done.stderr}{done.stdout}")
    return done.stdout


def seconds_of(command):
    start = time.perf_counter()
    process = os.posix_spawnp(command[0], command, os.environ, file_actions=TO_NULL)
    _, status = os.waitpid(process, 0)
    seconds = time.perf_counter() - start
    if status != 0:
        raise Failed(f"{command[0]}: exit status {os.waitstatus_to_exitcode(status)}")
    return seconds


def rounds_of(programs, rounds):
    """Seconds of each program by rounds in which they take turns; the first is a warm-up."""
    found = {program: [] for program in programs}
    for number in range(rounds + 1):
        for program, command in programs.items():
            seconds = seconds_of([str(word) for word in command])
            if number > 0:
                found[program].append(seconds)
    return found


def one_file(bench, report):
    rows = []
    for name in "camera.tif", "photo.jpg":
        file = bench.root / "examples" / name
        veltrace = bench.build / "veltrace"
        programs = {"veltrace": [veltrace, file],
                    "one process": [veltrace, "--isolation", "off", file]}
        if name.endswith(".tif"):
            programs |= {tool: [tool, file] for tool in ("tiffdump", "tiffinfo")}
        programs |= {"exiv2": ["exiv2", "-pa", file], "exiftool": ["exiftool", file]}
        times = rounds_of(programs, bench.effort.runs)
        for program, seconds in times.items():
            found = ratios(times["veltrace"], seconds) if program != "veltrace" else []
            rows.append([name if program == "veltrace" else "", program,
                         median([1000 * second for second in seconds]),
                         median(found) if found else "", quartiles(found) if found else ""])
    report.table("Whole processes: milliseconds for one file",
                 ["file", "program", "median:", "veltrace / it:", "quartiles"], rows)


def batch(bench, report):
    names = sorted(bench.many_files().iterdir())
    veltrace = [bench.build / "veltrace", "--ndjson", "-j"]
    some = names[:MAX_FILES_OF_EXIFTOOL]
    programs = {
        "veltrace -j 1": [*veltrace, "1", *names],
        "veltrace -j 2": [*veltrace, "2", *names],
        "one process": [*veltrace, "1", "--isolation", "off", *names],
        "tiffdump": ["tiffdump", *names],
        "tiffinfo": ["tiffinfo", *names],
        "exiv2": ["exiv2", "-pa", *names],
        "exiftool": ["exiftool", *some],
    }
    times = rounds_of(programs, bench.effort.passes)
    speeds = {program: [(len(some) if program == "exiftool" else len(names)) / second
                        for second in seconds] for program, seconds in times.items()}
    rows = []
    for program, speed in speeds.items():
        found = ratios(speeds["veltrace -j 1"], speed) if program != "veltrace -j 1" else []
        rows.append([program, median(speed), median(found) if found else "",
                     quartiles(found) if found else ""])
    report.table(f"Many files: files per second, of {len(names):,}",
                 ["program", "files/s:", "veltrace -j 1 / it:", "quartiles"], rows)

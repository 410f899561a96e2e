"""Whole processes on one file, timed by hyperfine."""

import json
import shlex
import tempfile

from comparison.bench_readers import run
from comparison.figures import Row

SECTION = "whole process"
EXIF_READERS = {"exiv2": ["exiv2", "-pa"], "exiftool": ["exiftool"]}
TIFF_READERS = {"tiffdump": ["tiffdump"], "tiffinfo": ["tiffinfo"]}


def rows(build, files, passes, runs):
    """Each pass runs every program so many times and contributes one median."""
    for file in files:
        command = str(build / "veltrace")
        programs = {"veltrace": [command], "one process": [command, "--isolation", "off"]}
        programs |= TIFF_READERS if file.suffix == ".tif" else {}
        programs |= EXIF_READERS
        medians = [pass_over(programs, file, runs) for _ in range(passes)]
        ours = [one["veltrace"] for one in medians]
        for program in programs:
            times = [one[program] for one in medians]
            yield Row(SECTION, file.name, program, "ms", times,
                      ours=ours if program != "veltrace" else [])


def pass_over(programs, file, runs):
    """Milliseconds of each program."""
    commands = [shlex.join([*command, str(file)]) for command in programs.values()]
    with tempfile.NamedTemporaryFile(suffix=".json") as result:
        run("hyperfine", "-N", "--warmup", 3, "--runs", runs, "--export-json", result.name,
            *commands)
        outcomes = json.load(result)["results"]
    return {program: outcome["median"] * 1000
            for program, outcome in zip(programs, outcomes, strict=True)}

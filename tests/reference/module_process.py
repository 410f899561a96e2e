"""The module's reading of many files, by the program `module-reading`."""

import json
import os
import subprocess

# Seconds, for a batch that takes less than one as a rule.
TIMEOUT = 300


class ReadingFailed(Exception):
    """The program ended, or went on for too long, before it had read all that it was asked for."""

    def __init__(self, position, how):
        super().__init__(how)
        self.position = position  # Of the file that it was reading.


def request(name, limits):
    return b"%d %d %s\0" % (limits.block_budget, limits.largest_block, os.fsencode(name))


def readings(program, requests):
    """What the module reports for each (name, limits), in order."""
    asked = b"".join(request(*each) for each in requests)
    try:
        run = subprocess.run(
            [program], input=asked, capture_output=True, check=False, timeout=TIMEOUT
        )
    except subprocess.TimeoutExpired as late:
        raise ReadingFailed((late.stdout or b"").count(b"\n"), "it takes too long") from None
    lines = run.stdout.split(b"\n")[:-1]
    if run.returncode != 0 or len(lines) != len(requests):
        errors = run.stderr.decode("utf-8", "replace")[:2000]
        raise ReadingFailed(len(lines), f"{program} ended with status {run.returncode}: {errors}")
    return [json.loads(line) for line in lines]

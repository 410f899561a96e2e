"""The module's reading of many files, by the program `module-reading`."""

import json
import os
import subprocess


class ReadingFailed(Exception):
    """The program ended before it had read all that it was asked for."""


def request(name, limits):
    return b"%d %d %s\0" % (limits.block_budget, limits.largest_block, os.fsencode(name))


def readings(program, requests):
    """What the module gives for each (name, limits), in order."""
    asked = b"".join(request(*each) for each in requests)
    run = subprocess.run([program], input=asked, capture_output=True, check=False)
    lines = run.stdout.split(b"\n")[:-1]
    if run.returncode != 0 or len(lines) != len(requests):
        culprit = requests[min(len(lines), len(requests) - 1)][0]
        raise ReadingFailed(
            f"{program} ended with status {run.returncode} at {culprit!r}:\n"
            + run.stderr.decode("utf-8", "replace")
        )
    return [json.loads(line) for line in lines]

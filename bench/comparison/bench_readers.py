"""Runs bench-readers, the program that reads files in one process."""

import json
import subprocess
import tempfile


class Failed(Exception):
    """Something could not be run."""


def run(*command, **settings):
    """Runs a program and gives what it printed."""
    try:
        done = subprocess.run([str(word) for word in command], capture_output=True, text=True,
                              check=False, **settings)
    except OSError as error:
        raise Failed(f"{command[0]} cannot be run: {error}") from error
    if done.returncode != 0:
        raise Failed(f"{command[0]} ended with {done.returncode}:\n{done.stderr}{done.stdout}")
    return done.stdout


def measure(build, files, rounds, readers=(), least_reads=1):
    """The sets that the files fall into by their formats, each with what the readers made of it.
    A round reads a set of fewer than `least_reads` files again and again."""
    with tempfile.NamedTemporaryFile("w", suffix=".list") as names:
        names.writelines(f"{file}\n" for file in files)
        names.flush()
        return json.loads(run(build / "bench-readers", "--rounds", rounds, *only(readers),
                              "--least-reads", least_reads, "--files-from", names.name))


def peak(build, file, reader, warm_up):
    """Bytes that a process grows by when the reader reads the file."""
    return json.loads(run(build / "bench-readers", "--peak", *only([reader]),
                          "--warm-up", warm_up, file))["peak_bytes"]


def only(readers):
    return ["--readers", ",".join(readers)] if readers else []


def unequal_work(sets):
    """Sentences on sets of which the module and the minimal reader read different amounts."""
    for one in sets:
        work = {reader["reader"]: (reader["directories"], reader["entries"])
                for reader in one["readers"]}
        if work["veltrace"] != work["minimal"]:
            yield (f"{one['set']}: veltrace read (directories, entries) {work['veltrace']}, "
                   f"the minimal reader {work['minimal']}")

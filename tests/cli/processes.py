"""The processes of a run, as the kernel reports them."""

import contextlib
import ctypes
import os
import re
import subprocess
import time

from conftest import VELTRACE

PR_SET_CHILD_SUBREAPER = 36
TIMEOUT = 60  # seconds; far more than an idle machine needs

# Orphans become children of this process, so that none is missed.
ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1)


def facts_of(pid):
    """State and parent of a process, or nothing if there is no such process."""
    try:
        with open(f"/proc/{pid}/stat", encoding="latin-1") as stat:
            state, parent = re.sub(r"^.*\) ", "", stat.read(), flags=re.DOTALL).split()[:2]
    except (FileNotFoundError, ProcessLookupError):
        return None
    return state, int(parent)


def children_of(parent):
    """Processes that have not ended."""
    found = []
    for name in os.listdir("/proc"):
        facts = facts_of(name) if name.isdigit() else None
        if facts is not None and facts[1] == parent and facts[0] not in "ZX":
            found.append(int(name))
    return found


def workers_of(parent):
    return [pid for pid in children_of(parent) if b"--worker" in command_of(pid)]


def command_of(pid):
    try:
        with open(f"/proc/{pid}/cmdline", "rb") as command:
            return command.read().split(b"\0")
    except (FileNotFoundError, ProcessLookupError):
        return []


def await_that(condition):
    """Waits until `condition()` is true, and returns its value."""
    end = time.monotonic() + TIMEOUT
    while not (result := condition()):
        assert time.monotonic() < end, "timeout"
        time.sleep(0.005)
    return result


def check_no_process_is_left():
    """To be called when this process has no known children."""
    await_that(lambda: not children_of(os.getpid()))
    with contextlib.suppress(ChildProcessError):
        while os.waitpid(-1, os.WNOHANG) != (0, 0):
            pass


def peak_of(pid):
    """The most memory that the process has had, in bytes."""
    with open(f"/proc/{pid}/status", encoding="ascii") as status:
        return int(re.search(r"^VmHWM:\s+([0-9]+) kB$", status.read(), re.MULTILINE)[1]) << 10


@contextlib.contextmanager
def started(*arguments, **settings):
    """The command while it runs, killed at the end if it is still running."""
    # Outputs may be large: the default buffer would take thousands of reads.
    settings = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, "bufsize": 1 << 16} | settings
    with subprocess.Popen([VELTRACE, *arguments], **settings) as run:
        try:
            yield run
        finally:
            run.kill()


def sandbox():
    version = subprocess.run([VELTRACE, "--version"], stdout=subprocess.PIPE, check=True).stdout
    return re.search(rb"^sandbox: (.*)$", version, re.MULTILINE)[1].decode().split(", ")

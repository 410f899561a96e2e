"""Fixtures of the tests that run the command."""

import os
import signal
import subprocess

import pytest

VELTRACE = os.environ["VELTRACE"]

# The caller of the tests may ignore signals, as nohup does; the command would then ignore them too.
for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
    if signal.getsignal(number) == signal.SIG_IGN:
        signal.signal(number, signal.SIG_DFL)


@pytest.fixture
def veltrace(tmp_path):
    """Runs the command in an empty directory; returns its exit status and its output, as bytes."""

    def run(*arguments, **settings):
        settings = {"stdout": subprocess.PIPE, "cwd": tmp_path, "timeout": 60} | settings
        return subprocess.run([VELTRACE, *arguments], stderr=subprocess.PIPE, check=False,
                              **settings)

    return run


@pytest.fixture
def limits_memory(veltrace):
    """Whether this build of the command can limit memory; one with AddressSanitizer cannot."""
    return b"memory limit" in veltrace("--version").stdout


@pytest.fixture
def unruly():
    """A module that misbehaves as the file name says, see unruly_module.cpp."""
    return os.environ["VELTRACE_UNRULY"]


@pytest.fixture
def write(tmp_path):
    """Writes a file with this name, of any bytes, into the directory that the command runs in."""

    def write_bytes(name, content):
        with open(os.path.join(os.fsencode(tmp_path), os.fsencode(name)), "wb") as file:
            file.write(content)
        return name

    return write_bytes

"""Counts the instructions of bench-scenario with valgrind.

A count must not depend on the machine. Valgrind shows programs a processor of its own making, and
the C library is told here to use no more of one than every x86-64 has, and to take no sizes of
caches from it. The environment is empty but for this, because it lies on the stack.
"""

import re
import subprocess
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

UNUSED_FEATURES = (
    "AVX", "AVX2", "AVX512BW", "AVX512F", "AVX512VL", "AVX_Fast_Unaligned_Load", "BMI1", "BMI2",
    "ERMS", "FMA", "FSRM", "LZCNT", "MOVBE", "POPCNT", "RTM", "SSE4_1", "SSE4_2", "SSSE3", "XSAVE",
    "XSAVEC")
TUNABLES = {
    "glibc.cpu.hwcaps": ",".join(f"-{feature}" for feature in UNUSED_FEATURES),
    "glibc.cpu.x86_data_cache_size": "0x8000",
    "glibc.cpu.x86_shared_cache_size": "0x100000",
    "glibc.cpu.x86_non_temporal_threshold": "0xc0000",
}
ENVIRONMENT = {
    "PATH": "/usr/bin:/bin",
    "LC_ALL": "C",
    "TZ": "UTC0",
    "GLIBC_TUNABLES": ":".join(f"{name}={value}" for name, value in TUNABLES.items()),
}
SECONDS = 300


class CannotCount(Exception):
    pass


def run(*command, cwd):
    try:
        done = subprocess.run(command, cwd=cwd, env=ENVIRONMENT, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              timeout=SECONDS, check=False)
    except (OSError, subprocess.TimeoutExpired) as error:
        raise CannotCount(f"{command[0]}: {error}") from error
    if done.returncode != 0:
        raise CannotCount(f"{command[0]} ended with {done.returncode}:\n{done.stdout}")
    return done.stdout


def count(program, scenario):
    """Instructions that one scenario takes between its requests to begin and to end."""
    # A folder of its own: valgrind would read options from files in the current one.
    with tempfile.TemporaryDirectory() as folder:
        profile = Path(folder) / "profile"
        run("valgrind", "--tool=callgrind", "--instr-atstart=no",
            f"--callgrind-out-file={profile}", program, scenario, cwd=folder)
        total = re.search(r"^totals: (\d+)$", profile.read_text(), re.MULTILINE)
    if not total or int(total[1]) == 0:
        raise CannotCount(f"valgrind counted no instructions of {scenario}")
    return int(total[1])


def count_all(program):
    """Instructions by scenario, of every scenario that the program has."""
    scenarios = run(program, cwd="/").split()
    with ThreadPoolExecutor(max_workers=2) as pool:
        return dict(zip(scenarios, pool.map(lambda name: count(program, name), scenarios)))

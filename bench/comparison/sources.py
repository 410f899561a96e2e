"""The files that are compared over."""

import os
import shutil
import tempfile
from contextlib import contextmanager
from dataclasses import dataclass
from pathlib import Path

from comparison.bench_readers import Failed, run

MEMORY_FOLDER = Path("/dev/shm")
BYTES_WANTED = 512 << 20


@dataclass(frozen=True)
class Source:
    """Files that are measured together, as far as they have the same format."""
    name: str
    files: list


@contextmanager
def scratch_folder():
    """A folder in memory, if there is room, that goes away afterwards."""
    has_room = (os.access(MEMORY_FOLDER, os.W_OK) and
                shutil.disk_usage(MEMORY_FOLDER).free >= BYTES_WANTED)
    with tempfile.TemporaryDirectory(prefix="veltrace-bench-",
                                     dir=MEMORY_FOLDER if has_room else None) as folder:
        yield Path(folder)


def generate(build, folder, *options):
    run(build / "bench-files", folder, *options)
    return folder


def source_of(folder):
    """All files below a folder, named after it."""
    files = sorted(path for path in folder.rglob("*") if path.is_file())
    if not files:
        raise Failed(f"{folder} has no files")
    return Source(folder.name, files)


def generated_sources(folder):
    return [source_of(child) for child in sorted(folder.iterdir()) if child.name != "growing"]

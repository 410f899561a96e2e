"""What is measured: the build, and the files that the readers are given."""

import os
import platform
import shutil
import tempfile
from contextlib import contextmanager
from dataclasses import dataclass
from functools import cache
from pathlib import Path

from comparison.programs import run

PEERS = ["libtiff6", "libexif12", "libexiv2-27", "libtiff-tools", "exiv2", "libimage-exiftool-perl"]
MEMORY_FOLDER = Path("/dev/shm")
MIN_FREE_BYTES = 512 << 20


@dataclass(frozen=True)
class Effort:
    """How much is measured."""
    files: int
    batch_files: int
    largest: int
    rounds: int
    passes: int  # over the batch
    runs: int  # of a process on one file


FULL = Effort(files=300, batch_files=4000, largest=1_000_000, rounds=15, passes=5, runs=100)
QUICK = Effort(files=5, batch_files=20, largest=300, rounds=4, passes=2, runs=2)


@dataclass(frozen=True)
class Workspace:
    root: Path
    build: Path
    scratch: Path
    folders: tuple
    effort: Effort

    @cache
    def generated(self, name, *options):
        run(self.build / "bench-files", self.scratch / name, *options)
        return self.scratch / name

    def small_files(self):
        """A folder of each set."""
        return self.generated("small", "--count", self.effort.files, "--sets",
                              "photographs-jpeg,photographs-tiff,pages,big-pages")

    def growing_files(self):
        return self.generated("grown", "--largest", self.effort.largest,
                              "--sets", "growing") / "growing"

    def many_files(self):
        return self.generated("many", "--count", self.effort.batch_files,
                              "--sets", "photographs-tiff") / "photographs-tiff"


@contextmanager
def scratch_folder():
    """A folder in memory, if there is room, that is removed afterwards."""
    has_room = (os.access(MEMORY_FOLDER, os.W_OK) and
                shutil.disk_usage(MEMORY_FOLDER).free >= MIN_FREE_BYTES)
    with tempfile.TemporaryDirectory(prefix="veltrace-bench-",
                                     dir=MEMORY_FOLDER if has_room else None) as folder:
        yield Path(folder)


def built(root):
    """The folder of the build that is measured, brought up to date."""
    run(root / "scripts/install-packages", "build", "test", "bench")
    run("cmake", "--preset", "bench", cwd=root)
    run("cmake", "--build", "--preset", "bench", cwd=root)
    return root / "build/release"


def machine(root):
    """Lines on what a run ran on, and beside what."""
    model = next((line.partition(":")[2].strip()
                  for line in Path("/proc/cpuinfo").read_text(encoding="utf-8").splitlines()
                  if line.startswith("model name")), platform.machine())
    load = ", ".join(f"{load:.2f}" for load in os.getloadavg())
    versions = run("dpkg-query", "-W", "-f", "${Package} ${Version}, ", *PEERS)
    return (f"revision: {run('git', 'describe', '--always', '--dirty', cwd=root).strip()}\n"
            f"processors: {os.cpu_count()} x {model}, load {load}\n"
            f"kernel: {platform.release()}\n"
            f"peers: {versions.rstrip(', ')}")

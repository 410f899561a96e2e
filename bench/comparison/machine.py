"""What a run ran on, and against."""

import os
import platform
import subprocess
from pathlib import Path

PEERS = ["libtiff6", "libexif12", "libexiv2-27", "libtiff-tools", "exiv2",
         "libimage-exiftool-perl", "hyperfine"]


def description(files):
    """Facts by name. `files` is where the generated files are."""
    return {
        "revision": revision(),
        "processor": f"{os.cpu_count()} x {processor()}",
        "kernel": platform.release(),
        "load average": " ".join(f"{load:.2f}" for load in os.getloadavg()),
        "generated files": str(files),
        "peers": ", ".join(f"{package} {version(package)}" for package in PEERS),
    }


def processor():
    for line in Path("/proc/cpuinfo").read_text(encoding="utf-8").splitlines():
        if line.startswith("model name"):
            return line.partition(":")[2].strip()
    return platform.machine()


def version(package):
    return answer("dpkg-query", "-W", "-f", "${Version}", package)


def revision():
    return answer("git", "-C", str(Path(__file__).parent), "describe", "--always", "--dirty")


def answer(*command):
    try:
        found = subprocess.run(command, capture_output=True, text=True, check=False)
    except OSError:
        return "unknown"
    return found.stdout.strip() or "unknown"


def text_of(facts):
    return "".join(f"{name}: {fact}\n" for name, fact in facts.items())

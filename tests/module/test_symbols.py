"""The shared library exports its entry point alone and imports only what it may."""

import os
import re
import subprocess
from pathlib import Path

HERE = Path(__file__).parent
MODULE = os.environ["VELTRACE_MODULE"]
LIBRARIES = {"libstdc++.so.6", "libm.so.6", "libgcc_s.so.1", "libc.so.6"}


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def dynamic_symbols(selection):
    """(kind, name, version or "") of each dynamic symbol."""
    for line in run("nm", "-D", selection, MODULE).splitlines():
        kind, name = line.split()[-2:]
        name, _, version = name.partition("@")
        yield kind, name, version.lstrip("@")


def listed(file_name):
    lines = (HERE / file_name).read_text().splitlines()
    return {line for line in lines if line and not line.startswith("#")}


def imported():
    return {(name, version) for kind, name, version in dynamic_symbols("--undefined-only")
            if kind != "w"}


def test_exports_the_entry_point_alone():
    assert {name for _, name, _ in dynamic_symbols("--defined-only")} == listed("exports.txt")


def test_imports_exactly_the_listed_host_functions():
    assert {name for name, _ in imported() if name.startswith("qv")} == listed("host_imports.txt")


def test_imports_nothing_else_but_library_functions():
    versions = re.compile(r"(GLIBC|GLIBCXX|CXXABI|GCC)_[0-9.]+")
    strangers = [name for name, version in imported()
                 if not name.startswith("qv") and not versions.fullmatch(version)]
    assert strangers == []
    needed = set(re.findall(r"NEEDED.*\[(.*)\]", run("readelf", "-d", MODULE)))
    assert needed <= LIBRARIES


def test_imports_the_listed_functions_of_the_libraries_and_the_cxx_library():
    names = {name for name, _ in imported() if not name.startswith(("qv", "_Z"))}
    assert names - listed("library_imports.txt") == set()
    if os.environ["VELTRACE_EXACT_IMPORTS"] == "1":
        assert listed("library_imports.txt") - names == set()


def test_keeps_nothing_between_calls():
    # Objects that live until the library is unloaded are made under a guard or registered here.
    names = {name for name, _ in imported()}
    assert not names & {"__cxa_atexit", "__cxa_guard_acquire", "__cxa_thread_atexit", "atexit"}


def test_release_text_is_inside_and_not_exported():
    inside = [line.split()[-1] for line in run("nm", "-C", MODULE).splitlines()
              if "veltrace::module::hostRelease" in line]
    assert inside == ["veltrace::module::hostRelease()"]

"""What is released has the protections of compiler and linker that it is built with."""

import json
import os
import re
import subprocess
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ["VELTRACE_BUILD"])
PRODUCTS = ["veltrace", "veltrace.so"]
FLAGS = {"-D_FORTIFY_SOURCE=3", "-D_GLIBCXX_ASSERTIONS", "-fstack-protector-strong",
         "-fstack-clash-protection", "-fcf-protection=full", "-O3"}
OPPOSITES = re.compile(r"-U_FORTIFY_SOURCE|-fno-stack|-fcf-protection=none|-O[01]")


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


@pytest.fixture(params=PRODUCTS)
def product(request):
    return BUILD / request.param


def test_is_position_independent(product):
    assert re.search(r"Type: +DYN", run("readelf", "-hW", product))


def test_relocations_are_done_at_the_start_and_read_only_from_then_on(product):
    assert re.search(r"GNU_RELRO ", run("readelf", "-lW", product))
    assert re.search(r"\(FLAGS\) +BIND_NOW", run("readelf", "-dW", product))


def test_no_memory_is_both_written_and_executed(product):
    flags = re.findall(r"^ +(LOAD|GNU_STACK)(?: +0x\w+){5} (...) 0x",
                       run("readelf", "-lW", product), re.MULTILINE)
    assert {kind for kind, _ in flags} == {"LOAD", "GNU_STACK"}
    assert ("GNU_STACK", "RW ") in flags
    assert [flag for flag in flags if "W" in flag[1] and "E" in flag[1]] == []


def test_stacks_are_guarded(product):
    assert "__stack_chk_fail" in run("nm", "-D", "--undefined-only", product)


def test_calls_of_the_c_library_are_checked():
    assert re.search(r"__\w+_chk@", run("nm", "-D", "--undefined-only", BUILD / "veltrace")
                     .replace("__stack_chk_fail", ""))


def test_indirect_jumps_land_where_they_may():
    code = run("objdump", "-d", "--no-show-raw-insn", BUILD / "veltrace.so")
    assert re.search(r"<qvxFunction\S*>:\n[^\n]*\tendbr64", code)


def test_every_source_is_compiled_with_all_of_it():
    commands = json.loads((BUILD / "compile_commands.json").read_text())
    released = [c for c in commands if "/tests/" not in c["file"] and "/fuzz/" not in c["file"]]
    sources = {path for folder in ("cli", "module") for path in (ROOT / folder).rglob("*.cpp")}
    assert sources <= {Path(command["file"]) for command in released}
    for command in released:
        arguments = set(command["command"].split())
        assert FLAGS <= arguments, command["file"]
        assert [a for a in arguments if OPPOSITES.fullmatch(a)] == [], command["file"]

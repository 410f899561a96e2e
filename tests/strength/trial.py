"""Builds and runs linked-tests with one file of module/ replaced.

The tree stays as it is: the compiler is shown the changed file in place of the real one, only what
depends on it is compiled again, and the result is linked with the unchanged objects.
"""

import json
import pathlib
import re
import resource
import shlex
import subprocess
from dataclasses import dataclass

CONFIGURE = [
    "cmake", "-G", "Ninja", "-DVELTRACE_TESTS=ON", "-DCMAKE_BUILD_TYPE=",
    "-DCMAKE_C_COMPILER=clang", "-DCMAKE_CXX_COMPILER=clang++",
    # Most changes leave something unused, which is no reason not to try them.
    "-DCMAKE_CXX_FLAGS=-w -D_GLIBCXX_ASSERTIONS", "-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld",
]
# A change that brings undefined behaviour is noticed when it runs, whatever the machine makes of it.
TRAPS = ["-fsanitize=undefined,float-cast-overflow", "-fno-sanitize=vptr,function",
         "-fsanitize-trap=all"]
# A changed module may loop, wait or ask for memory without end. Loops are stopped by their
# processor time, which does not depend on what else the machine does.
MOST_MEMORY = 8 << 30
WALL_SECONDS = 120
# Most changes are noticed by a test that takes no time: such tests run first, then those that take
# up to this share of the whole, then the rest.
TIERS = (0.001, 0.02)


@dataclass
class Unit:
    """One object of the program and how it is compiled."""

    source: pathlib.Path
    object: str
    command: list
    reads: set

    @property
    def flags(self):
        return self.command[:self.command.index("-o")]


def run(command, cwd, **options):
    return subprocess.run(command, cwd=cwd, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          stdin=subprocess.DEVNULL, text=True, errors="replace", **options)


def checked(command, cwd):
    done = run(command, cwd)
    if done.returncode != 0:
        raise SystemExit(f"mutate: {shlex.join(map(str, command))} failed\n{done.stdout}")


@dataclass
class Test:
    name: str
    source: str
    seconds: float


def tests_of(report):
    return [Test(f"{suite['name']}.{test['name']}", test["file"], float(test["time"].rstrip("s")))
            for suite in json.loads(report.read_text())["testsuites"]
            for test in suite["testsuite"]]


class Program:
    """linked-tests as the tree has it, and what it takes to make it again with a change."""

    def __init__(self, root, build):
        self.root, self.build = root, build
        checked([*CONFIGURE, "-S", root, "-B", build], root)
        checked(["ninja", "-C", build, "linked-tests"], root)
        commands = self._ninja("commands", "linked-tests").splitlines()
        self.link = [word for word in shlex.split(commands[-1]) if word not in ("&&", ":")]
        self.units = list(self._units())
        self.cpu_seconds = 60
        self._precompile()
        self.tiers = self._measured_tiers()

    def _ninja(self, tool, *arguments):
        return subprocess.run(["ninja", "-C", self.build, "-t", tool, *arguments], check=True,
                              stdout=subprocess.PIPE, text=True).stdout

    def _units(self):
        reads, current = {}, set()
        for line in self._ninja("deps").splitlines():
            if line.startswith(" "):
                current.add(line.strip())
            elif match := re.match(r"(\S+): #deps", line):
                current = reads.setdefault(match[1], set())
        for entry in json.loads((self.build / "compile_commands.json").read_text()):
            command = shlex.split(entry["command"])
            object_file = command[command.index("-o") + 1]
            if object_file in self.link:
                yield Unit(pathlib.Path(entry["file"]), object_file, command, reads[object_file])

    def _precompile(self):
        """Parses the library headers of module/ once: they are most of what its units compile."""
        own = [unit for unit in self.units if unit.source.is_relative_to(self.root / "module")]
        # Precompiled headers serve only those that are compiled in the same way.
        own = [unit for unit in own if unit.flags == own[0].flags]
        lines = {line for path in (self.root / "module").rglob("*") if path.suffix in (".h", ".cpp")
                 for line in path.read_text().splitlines() if line.startswith("#include <")}
        header = self.build / "library_headers.h"
        header.write_text("\n".join(sorted(lines)) + "\n")
        compiled = header.with_suffix(".pch")
        checked([*own[0].flags, *TRAPS, "-x", "c++-header", "-o", compiled, header], self.build)
        for unit in own:
            unit.command += [*TRAPS, "-include-pch", str(compiled)]

    def _measured_tiers(self):
        """Runs the unchanged program, which limits later runs and orders their tests."""
        report = self.build / "mutation-baseline.json"
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        died = self.run_tests(self.build / "linked-tests", [f"--gtest_output=json:{report}"])
        if died:
            raise SystemExit(f"mutate: the unchanged program fails ({died})")
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        used = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
        self.cpu_seconds = round(10 + 4 * used)
        tests = tests_of(report)
        quick, medium = (share * sum(test.seconds for test in tests) for share in TIERS)
        return [[test for test in tests if test.seconds <= quick],
                [test for test in tests if quick < test.seconds <= medium],
                [test for test in tests if medium < test.seconds]]

    def run_tests(self, program, options=()):
        """How the program died ("test", "crash", "timeout"), or None when all tests pass."""
        def limit():
            resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))
            resource.setrlimit(resource.RLIMIT_CPU, (self.cpu_seconds, self.cpu_seconds + 5))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

        try:
            done = run([program, "--gtest_brief=1", "--gtest_fail_fast", *options], program.parent,
                       preexec_fn=limit, timeout=WALL_SECONDS)
        except subprocess.TimeoutExpired:
            return "timeout"
        if done.returncode in (-24, -9):  # SIGXCPU, then SIGKILL
            return "timeout"
        if done.returncode < 0:
            return "crash"
        return "test" if done.returncode else None

    def try_change(self, file, text, work):
        """As `run_tests`, of the program with `text` as content of `file`; "not compiled" when it
        cannot be made. Fills the directory `work`."""
        real = self.root / file
        changed = work / real.name
        changed.write_text(text)
        overlay = work / "overlay.json"
        overlay.write_text(json.dumps({"version": 0, "roots": [
            {"type": "file", "name": str(real), "external-contents": str(changed)}]}))

        affected = [unit for unit in self.units if str(real) in unit.reads]
        own = [unit for unit in affected if unit.source.is_relative_to(self.root / "module")]
        if len(own) < len(affected):
            # A header that tests include. Those that do not can tell without compiling the others;
            # objects of module/ stand first among those that hold its inline functions.
            seeing = {str(unit.source) for unit in affected}
            fate = self._try_units(own, overlay, [
                [test for test in tier if test.source not in seeing] for tier in self.tiers[:2]])
            if fate:
                return fate
        return self._try_units(affected, overlay, self.tiers)

    def _try_units(self, units, overlay, tiers):
        """Compiles these units again, links them with the rest and runs the tests."""
        work = overlay.parent
        link = list(self.link)
        for unit in units:
            new_object = work / f"{self.units.index(unit)}.o"
            if not new_object.exists():
                command = [*unit.command, "-ivfsoverlay", overlay]
                command[command.index("-o") + 1] = new_object
                if run(command, self.build).returncode != 0:
                    return "not compiled"
            link[link.index(unit.object)] = new_object
        program = work / "linked-tests"
        link[link.index("-o") + 1] = program
        if run(link, self.build).returncode != 0:
            return "not compiled"
        for tier in tiers:
            names = ":".join(test.name for test in tier)
            if fate := self.run_tests(program, [f"--gtest_filter={names}"]):
                return fate
        return None

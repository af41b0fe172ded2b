#!/usr/bin/python3
"""Seeds the faults of a table into the macOS backend, one at a time, and sees each caught.

usage: seed_faults.py BUILD FAULTS

BUILD is where Ninja has built the tests that run over the stand-ins. FAULTS is a JSON list: each
entry says what is wrong, in which file, which text becomes which other one, and which tests have to
notice. One source is compiled with the fault and linked with what else the tests consist of, all in
a temporary directory. Prints what is wrong with an entry, and fails when there is anything.
"""

import concurrent.futures
import json
import os
import pathlib
import shlex
import subprocess
import sys
import tempfile

SOURCES = pathlib.Path(__file__).resolve().parents[2]
SECONDS_FOR_A_TEST = 120

# They halve the time.
UNOPTIMISED = ["-O0", "-g0"]
LINKER = ["-fuse-ld=lld"]


class Complaint(Exception):
    """What is wrong with an entry of the table."""


def output_of(command, folder):
    """What the command prints; None when it succeeds."""
    # A cache of objects has no use for these.
    environment = {**os.environ, "CCACHE_DISABLE": "1"}
    try:
        ran = subprocess.run(command, cwd=folder, env=environment, stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT, text=True, errors="replace", check=False,
                             timeout=SECONDS_FOR_A_TEST)
    except subprocess.TimeoutExpired:
        return f"no end within {SECONDS_FOR_A_TEST} seconds"
    return ran.stdout if ran.returncode != 0 else None


class Build:
    def __init__(self, folder):
        self.folder = pathlib.Path(folder).resolve()
        self.tests = {test["name"].removeprefix("macos."): test["command"]
                      for test in self.shown_tests() if "command" in test}
        programs = {command[0] for command in self.tests.values()}
        self.commands = {program: self.commands_of(program) for program in programs
                         if pathlib.Path(program).is_relative_to(self.folder)}

    def shown_tests(self):
        # From a folder of its own: showing tests empties the log of a run in the build's.
        with tempfile.TemporaryDirectory() as folder:
            pathlib.Path(folder, "CTestTestfile.cmake").write_text(f'subdirs("{self.folder}")\n')
            shown = self.answer("ctest", "--show-only=json-v1", "-R", r"^macos\.", cwd=folder)
        return json.loads(shown)["tests"]

    def answer(self, *command, cwd=None):
        return subprocess.run(command, cwd=cwd or self.folder, stdout=subprocess.PIPE, text=True,
                              check=True).stdout

    def commands_of(self, program):
        """How the program is compiled and, by the last one, linked: lists of words."""
        name = pathlib.Path(program).relative_to(self.folder)
        lines = self.answer("ninja", "-t", "commands", str(name)).splitlines()
        return [shlex.split(line) for line in lines]

    def complaint_about_test(self, test):
        """Of a test without any fault; None when it passes."""
        if test not in self.tests:
            return f"{test}: no such test"
        with tempfile.TemporaryDirectory() as folder:
            output = output_of(self.tests[test], folder)
        return None if output is None else f"{test}: fails without a fault\n{output}"

    def complaint_about_fault(self, fault):
        """None when it is caught."""
        tests = [test for test in fault["caught_by"] if test in self.tests]
        try:
            with tempfile.TemporaryDirectory() as folder:
                if any(self.catches(test, fault, folder) for test in tests):
                    return None
            return f"{fault['what']}: missed by {', '.join(fault['caught_by'])}"
        except Complaint as complaint:
            return f"{fault['what']}: {complaint}"

    def catches(self, test, fault, folder):
        program, *arguments = self.tests[test]
        faulty = pathlib.Path(folder, pathlib.Path(program).name)
        if not faulty.exists():
            self.make_faulty(faulty, self.commands[program], fault)
        return output_of([faulty, *arguments], folder) is not None

    def make_faulty(self, faulty, commands, fault):
        """Makes the program `faulty` by these commands, with another text of one source."""
        source = SOURCES / fault["file"]
        changed = faulty.with_name(source.name)
        changed.write_text(text_with(fault, source.read_text(encoding="utf-8")), encoding="utf-8")
        compiling = next((words for words in commands if words[-2:] == ["-c", str(source)]), None)
        if compiling is None:
            raise Complaint(f"{fault['file']} is no source of {faulty.name}")
        made = result_of(compiling)
        own = changed.with_name(changed.name + ".o")
        self.run([*renamed(compiling, {made: own, made + ".d": f"{own}.d", str(source): changed}),
                  *UNOPTIMISED])
        linking = [word for word in commands[-1] if word not in (":", "&&")]
        self.run(renamed(linking, {made: own, result_of(linking): faulty}) + LINKER)

    def run(self, command):
        output = output_of(command, self.folder)
        if output is not None:
            raise Complaint(f"does not compile\n{output}")


def result_of(words):
    return words[words.index("-o") + 1]


def renamed(words, names):
    return [names.get(word, word) for word in words]


def text_with(fault, text):
    occurrences = text.count(fault["old"])
    if occurrences != 1:
        raise Complaint(f"what it changes occurs {occurrences} times in {fault['file']}")
    return text.replace(fault["old"], fault["new"])


def main(folder, table):
    build = Build(folder)
    faults = json.loads(pathlib.Path(table).read_text(encoding="utf-8"))
    tests = sorted({test for fault in faults for test in fault["caught_by"]})
    with concurrent.futures.ThreadPoolExecutor(len(os.sched_getaffinity(0))) as pool:
        complaints = [*pool.map(build.complaint_about_test, tests),
                      *pool.map(build.complaint_about_fault, faults)]
    complaints = [complaint for complaint in complaints if complaint is not None]
    for complaint in complaints:
        print(complaint)
    print(f"{len(faults)} faults, {len(complaints)} complaints")
    return 1 if complaints else 0


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))

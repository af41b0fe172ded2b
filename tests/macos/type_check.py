#!/usr/bin/python3
"""Type-checks Objective-C++ sources for macOS on Linux, against our SDK declarations.

usage: type_check.py PROJECT SOURCE...

Each source is checked for every architecture with warnings as errors. Exits with 1 when the
compiler finds anything.
"""

import pathlib
import subprocess
import sys

import apple_target

WARNINGS = ["-Wall", "-Wextra", "-Wshadow", "-Wold-style-cast", "-Wnon-virtual-dtor",
            "-Woverloaded-virtual", "-Wextra-semi", "-Werror"]


def compiler_complaints(project, source, architecture):
    """What the compiler prints about one source; empty when it is content."""
    declarations = pathlib.Path(__file__).parent / "sdk"
    command = [
        apple_target.LLVM / "bin/clang++", "-fsyntax-only", *apple_target.flags(architecture),
        *WARNINGS, "-I", declarations, "-I", project, source,
    ]
    checked = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                             check=False)
    if checked.returncode != 0 and not checked.stdout:
        return f"{source}: the compiler failed with status {checked.returncode}"
    return checked.stdout


def main(project, sources):
    complaints = [compiler_complaints(project, source, architecture)
                  for source in sources for architecture in apple_target.ARCHITECTURES]
    if any(complaints):
        sys.exit("".join(complaints))


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2:])

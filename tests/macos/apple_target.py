"""How Objective-C++ for macOS is read on Linux: clang 16 for Apple's targets, with the C++ headers
of libc++ 16 and the C headers of musl, which are the closest to Apple's that Debian has."""

import pathlib

LLVM = pathlib.Path("/usr/lib/llvm-16")
ARCHITECTURES = ("arm64", "x86_64")


def flags(architecture):
    """Compiler flags without those for warnings and for our own folders."""
    return [
        "-target", f"{architecture}-apple-macosx13.0", "-x", "objective-c++", "-std=c++20",
        "-fobjc-arc", "-fblocks", "-nostdinc++", "-nostdlibinc",
        # On macOS the C library shows everything of POSIX without being asked.
        "-D_GNU_SOURCE",
        "-isystem", str(LLVM / "include/c++/v1"), "-isystem", "/usr/include/x86_64-linux-musl",
    ]

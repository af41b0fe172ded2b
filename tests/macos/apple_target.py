"""How Objective-C++ for macOS is read on Linux: clang 16 for Apple's targets, with the C++ headers
of libc++ 16 and the C headers of musl, which are the closest to Apple's that Debian has."""

import pathlib

LLVM = pathlib.Path("/usr/lib/llvm-16")
CXX_HEADERS = LLVM / "include/c++/v1"
C_HEADERS = pathlib.Path("/usr/include/x86_64-linux-musl")
ARCHITECTURES = ("arm64", "x86_64")

# For reading declarations; toolchain.cmake has those for compiling.
FLAGS = [
    "-target", "arm64-apple-macosx13.0", "-x", "objective-c++", "-std=c++20", "-fobjc-arc",
    "-fblocks", "-nostdinc++", "-nostdlibinc", "-D_GNU_SOURCE",
    "-isystem", str(CXX_HEADERS), "-isystem", str(C_HEADERS),
]

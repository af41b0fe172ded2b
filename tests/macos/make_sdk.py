#!/usr/bin/python3
"""Makes a folder that a compiler and a linker for macOS take for an SDK.

usage: make_sdk.py DECLARATIONS SYSTEM_SYMBOLS SDK

Headers are links to our declarations and to those of another C library. Each framework's text stub
offers the classes, functions and variables that are declared in its folder and nothing else, so that
what nobody has declared stays undefined. SYSTEM_SYMBOLS is a JSON object that names what else each
library offers, by the reason for which our objects refer to it; what libc++ offers is read from
Debian's.
"""

import json
import pathlib
import shutil
import subprocess
import sys

import apple_target
from sdk_declarations import declared_symbols

# Folders of declarations that are no frameworks, with the library that has what they declare.
LIBRARIES_OF_FOLDERS = {"dispatch": "libSystem", "objc": "libobjc"}
CXX_LIBRARIES = ("libc++.so.1", "libc++abi.so.1")


def link_headers(folder, sdk):
    """Puts headers where the compiler looks for them below `sdk`."""
    include = sdk / "usr/include"
    include.mkdir(parents=True)
    for header in apple_target.C_HEADERS.iterdir():
        (include / header.name).symlink_to(header)
    for headers in folder.iterdir():
        if headers.name in LIBRARIES_OF_FOLDERS:
            (include / headers.name).symlink_to(headers)
        else:
            framework = sdk / f"System/Library/Frameworks/{headers.name}.framework"
            framework.mkdir(parents=True)
            (framework / "Headers").symlink_to(headers)


def link_cxx_headers(sdk):
    """Debian's, but that they say which system has what, as Apple's do."""
    headers = sdk / "usr/include/c++/v1"
    headers.mkdir(parents=True)
    for header in apple_target.CXX_HEADERS.iterdir():
        if header.name != "__config_site":
            (headers / header.name).symlink_to(header)
    choices = (apple_target.CXX_HEADERS / "__config_site").read_text(encoding="utf-8")
    site = headers / "__config_site"
    site.write_text(choices.replace("#define _LIBCPP_HAS_NO_VENDOR_AVAILABILITY_ANNOTATIONS", ""),
                    encoding="utf-8")
    # As old as the original: everything includes it, and would be compiled anew.
    shutil.copystat(apple_target.CXX_HEADERS / "__config_site", site)


def exports_of_cxx_library():
    """The names that libc++ defines, as Apple's targets spell them."""
    listed = subprocess.run(
        [apple_target.LLVM / "bin/llvm-nm", "--dynamic", "--defined-only", "--format=just-symbols",
         *(apple_target.LLVM / "lib" / library for library in CXX_LIBRARIES)],
        stdout=subprocess.PIPE, text=True, check=True)
    return {f"_{name}" for name in listed.stdout.split() if name.startswith("_")}


def quoted(names):
    return ", ".join(f"'{name}'" for name in sorted(names))


def stub(install_name, classes, symbols):
    """A library as the linker reads it: text-based stub, version 4."""
    targets = ", ".join(f"{name}-macos" for name in apple_target.ARCHITECTURES)
    return (f"--- !tapi-tbd\ntbd-version: 4\ntargets: [ {targets} ]\n"
            f"install-name: '{install_name}'\nexports:\n  - targets: [ {targets} ]\n"
            f"    symbols: [ {quoted(symbols)} ]\n    objc-classes: [ {quoted(classes)} ]\n...\n")


def write_stubs(folder, system_symbols, sdk):
    libraries = {name: {symbol for symbols in reasons.values() for symbol in symbols}
                 for name, reasons in system_symbols.items()}
    libraries["libc++"] |= exports_of_cxx_library()
    for name, (classes, symbols) in declared_symbols(folder).items():
        if library := LIBRARIES_OF_FOLDERS.get(name):
            libraries[library] |= symbols
            continue
        where = f"System/Library/Frameworks/{name}.framework/{name}"
        symbols = symbols | libraries.pop(name, set())
        (sdk / f"{where}.tbd").write_text(stub(f"/{where}", classes, symbols), encoding="utf-8")
    (sdk / "usr/lib").mkdir()
    for name, symbols in libraries.items():
        where = f"usr/lib/{name}"
        (sdk / f"{where}.tbd").write_text(stub(f"/{where}.dylib", [], symbols), encoding="utf-8")


def link_tools(sdk):
    """What the compiler calls by the name that it has on macOS."""
    (sdk / "usr/bin").mkdir()
    (sdk / "usr/bin/lipo").symlink_to(apple_target.LLVM / "bin/llvm-lipo")


def main(declarations, system_symbols, target):
    folder = pathlib.Path(declarations).resolve()
    sdk = pathlib.Path(target)
    shutil.rmtree(sdk, ignore_errors=True)
    link_headers(folder, sdk)
    link_cxx_headers(sdk)
    write_stubs(folder, json.loads(pathlib.Path(system_symbols).read_text(encoding="utf-8")), sdk)
    link_tools(sdk)


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(*sys.argv[1:])

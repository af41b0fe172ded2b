#!/usr/bin/python3
"""Looks at a bundle for macOS: the executable's architectures, oldest system and libraries, what the
bundle says of itself, and its icon.

usage: check_bundle.py BUNDLE VERSION

Exits with 1 and one line for each thing that is not as it should be.
"""

import pathlib
import plistlib
import re
import subprocess
import sys

import apple_target

OLDEST_SYSTEM = "13.0"
FRAMEWORKS = {"AppKit", "ApplicationServices", "CoreFoundation", "CoreGraphics", "CoreImage",
              "CoreMedia", "CoreVideo", "Foundation", "QuartzCore", "ScreenCaptureKit"}
LIBRARIES = {"libSystem", "libc++", "libobjc"}


def information(version):
    """What Info.plist has to say."""
    return {
        "CFBundleDevelopmentRegion": "en",
        "CFBundleExecutable": "Vistrel",
        "CFBundleIconFile": "vistrel",
        "CFBundleIdentifier": "com.tollbeck.vistrel",
        "CFBundleInfoDictionaryVersion": "6.0",
        "CFBundleName": "Vistrel",
        "CFBundlePackageType": "APPL",
        "CFBundleShortVersionString": version,
        "CFBundleVersion": version,
        "LSApplicationCategoryType": "public.app-category.utilities",
        "LSMinimumSystemVersion": OLDEST_SYSTEM,
        "NSHighResolutionCapable": True,
        "NSHumanReadableCopyright": "Copyright © 2026 Tollbeck",
        "NSPrincipalClass": "NSApplication",
    }


def output_of(tool, *arguments):
    return subprocess.run([apple_target.LLVM / "bin" / tool, *arguments], stdout=subprocess.PIPE,
                          text=True, check=True).stdout


def wrong_information(found, version):
    expected = information(version)
    for key in sorted(found.keys() | expected.keys()):
        if found.get(key) != expected.get(key):
            yield f"Info.plist: {key} is {found.get(key)!r}, not {expected.get(key)!r}"


def wrong_executable(executable):
    """What is wrong with the program itself, architecture by architecture."""
    architectures = set(output_of("llvm-lipo", "-archs", executable).split())
    if architectures != set(apple_target.ARCHITECTURES):
        yield f"{executable.name} is for {sorted(architectures)}"
    for architecture in sorted(architectures):
        oldest = re.search(r"LC_BUILD_VERSION\n(?:.*\n){1,3}?\s*minos (\S+)",
                           output_of("llvm-otool", "-arch", architecture, "-l", executable))
        if not oldest or oldest.group(1) != OLDEST_SYSTEM:
            yield f"{architecture}: oldest system is {oldest and oldest.group(1)}"
        linked = {pathlib.Path(line.split()[0]).stem for line in
                  output_of("llvm-otool", "-arch", architecture, "-L", executable).splitlines()
                  if line.startswith("\t")}
        if linked != FRAMEWORKS | LIBRARIES:
            yield (f"{architecture}: links {sorted(linked - FRAMEWORKS - LIBRARIES)} beside what is "
                   f"expected, and not {sorted((FRAMEWORKS | LIBRARIES) - linked)}")


def complaints(bundle, version):
    contents = pathlib.Path(bundle) / "Contents"
    files = {str(file.relative_to(contents)) for file in contents.rglob("*") if file.is_file()}
    expected = {"Info.plist", "MacOS/Vistrel", "Resources/vistrel.icns"}
    if files != expected:
        yield f"holds {sorted(files - expected)} too much and not {sorted(expected - files)}"
        return
    yield from wrong_information(plistlib.loads((contents / "Info.plist").read_bytes()), version)
    yield from wrong_executable(contents / "MacOS/Vistrel")
    if (contents / "Resources/vistrel.icns").read_bytes()[:4] != b"icns":
        yield "the icon is none"


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    if found := list(complaints(*sys.argv[1:])):
        sys.exit("\n".join(found))
